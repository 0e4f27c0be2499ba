// What stands in a folder of mapper scripts: which operations each defines, and which are broken.
#include "trial/script_finding.h"

#include "device/device_link.h"
#include "drive_shelf.h"
#include "script_folder.h"
#include "test_class.h"
#include "trial/script_look.h"

#include <QtTest>

#include <algorithm>

using namespace virtual_reader;

namespace
{

ScriptFinding findingOf(const ScriptFolder &folder, const QString &file)
{
    for (const ScriptFinding &finding : examineScripts(folder.path())) {
        if (finding.file == file)
            return finding;
    }
    return ScriptFinding();
}

} // namespace

class ScriptFindingTest : public QObject
{
    Q_OBJECT

private slots:
    void shippedScriptsAreSound();
    void operationsAreThoseThatAreDefined_data();
    void operationsAreThoseThatAreDefined();
    void brokenHelperBreaksTheScriptsThatLoadIt();
    void scriptsAreSortedOut();
    void topLevelCannotReachTheReader_data();
    void topLevelCannotReachTheReader();
};

void ScriptFindingTest::shippedScriptsAreSound()
{
    const QVector<ScriptFinding> findings = examineScripts(SHIPPED_SCRIPTS);
    QStringList names;
    for (const ScriptFinding &finding : findings) {
        names << finding.file;
        QVERIFY2(finding.state == ScriptState::Sound, qPrintable(finding.file + finding.problem));
    }
    QCOMPARE(names,
             QStringList({"gb_mbc0.nut", "gb_mbc1.nut", "gb_mbc2.nut", "gb_mbc3.nut", "gb_mbc5.nut",
                          "gb_mbc7.nut", "gb_tama5.nut", "gba.nut", "common.nut", "flash.nut"}));
    QCOMPARE(std::count_if(findings.begin(), findings.end(),
                           [](const ScriptFinding &row) { return row.role == ScriptRole::Helper; }),
             2);
}

void ScriptFindingTest::operationsAreThoseThatAreDefined_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("operations");
    QTest::newRow("none") << QByteArray("x <- 1;") << "";
    QTest::newRow("dump") << QByteArray("function cpu_dump(a, b, c) {}") << "dump";
    QTest::newRow("half of flash") << QByteArray("function cpu_flash(a, b, c) {}") << "";
    QTest::newRow("flash") << QByteArray("cpu_flash <- 1; cpu_erase <- 1;") << "flash";
    QTest::newRow("saves") << QByteArray("save_dump <- 1; save_write <- 1;")
                           << "read-ram, write-ram";
    QTest::newRow("refuses to flash")
        << QByteArray("cpu_dump <- 1; cpu_flash <- 1; cpu_erase <- 1;\n"
                      "if (\"rom_write\" in getroottable()) throw \"no\";")
        << "dump";
}

void ScriptFindingTest::operationsAreThoseThatAreDefined()
{
    QFETCH(QByteArray, script);
    ScriptFolder folder;
    folder.write("gb_mbc1.nut", script);
    const ScriptFinding finding = findingOf(folder, "gb_mbc1.nut");
    QTEST(finding.operations.join(", "), "operations");
    QVERIFY(finding.state == ScriptState::Sound);
    QCOMPARE(finding.problem, QString());
}

void ScriptFindingTest::brokenHelperBreaksTheScriptsThatLoadIt()
{
    ScriptFolder folder;
    folder.write("common.nut", "x <- ;\n");
    const ScriptFinding helper = findingOf(folder, "common.nut");
    QVERIFY(helper.state == ScriptState::NotCompiled);
    QVERIFY(helper.problem.contains("common.nut line = (1)"));
    QVERIFY(!helper.isFault());
    const ScriptFinding user = findingOf(folder, "gb_mbc2.nut");
    QVERIFY(user.state == ScriptState::Threw);
    QVERIFY2(user.problem.contains(": error expression expected]"), qPrintable(user.problem));
    QVERIFY(user.isFault());
}

// A script that the program names is missed, or broken; one of the user's own is neither.
void ScriptFindingTest::scriptsAreSortedOut()
{
    ScriptFolder folder;
    folder.write("gb_mbc0.nut", "cpu_dump <- 1; throw \"not today\";");
    folder.write("gb_mbc3.nut", "function cpu_dump(dev {\n");
    folder.remove("gb_tama5.nut");
    folder.write("mine.nut", "function cpu_dump(dev {\n");
    folder.write("other.nut", "cpu_dump <- 1; save_dump <- 1;");
    const struct {
        const char *file;
        ScriptRole role;
        ScriptState state;
        const char *usedBy;
        const char *operations;
        const char *problem; // part of it
        bool isFault;
    } rows[] = {
        {"gb_mbc0.nut", ScriptRole::Mapper, ScriptState::Threw, "NONE", "", "not today", true},
        {"gb_mbc3.nut", ScriptRole::Mapper, ScriptState::NotCompiled, "MBC3", "", "line = (1)",
         true},
        {"gb_tama5.nut", ScriptRole::Mapper, ScriptState::Missing, "TAMA5", "", "", true},
        {"mine.nut", ScriptRole::Helper, ScriptState::NotCompiled, "", "", "line = (1)", false},
        {"other.nut", ScriptRole::Other, ScriptState::Sound, "", "dump, read-ram", "", false},
        {"common.nut", ScriptRole::Helper, ScriptState::Sound, "", "", "", false}};
    for (const auto &row : rows) {
        const ScriptFinding finding = findingOf(folder, row.file);
        QCOMPARE(finding.file, QString(row.file));
        QVERIFY2(finding.role == row.role, row.file);
        QVERIFY2(finding.state == row.state, row.file);
        QCOMPARE(finding.usedBy, QString(row.usedBy));
        QCOMPARE(finding.operations.join(", "), QString(row.operations));
        QVERIFY2(finding.problem.contains(row.problem), qPrintable(finding.problem));
        QCOMPARE(finding.problem.isEmpty(), *row.problem == 0);
        QCOMPARE(finding.isFault(), row.isFault);
    }
}

void ScriptFindingTest::topLevelCannotReachTheReader_data()
{
    QTest::addColumn<QByteArray>("call");
    QTest::newRow("write") << QByteArray("cpu_write(0, 0x2000, 1);");
    QTest::newRow("read") << QByteArray("cpu_read(0, 0, 16);");
}

void ScriptFindingTest::topLevelCannotReachTheReader()
{
    QFETCH(QByteArray, call);
    DriveShelf shelf;
    const FaultyDrive &reader = shelf.addReader('E');
    setDriveBackend(&shelf);
    ScriptFolder folder;
    folder.write("gb_mbc0.nut", "cpu_dump <- 1; " + call);
    QStringList log;
    FileUse files;
    const ScriptLook look =
        lookAtScript(folder.filePath("gb_mbc0.nut"), scriptOperations(false).first(), &files, &log);
    setDriveBackend(nullptr);
    QVERIFY(look == ScriptLook::Threw);
    QVERIFY(log.join(QString()).contains("the top level of a script cannot use the cartridge"));
    QVERIFY(!shelf.wasWritten());
    QCOMPARE(reader.callCount(DriveCall::OpenForRead), 0U);
}

GBDRIVER_TEST(ScriptFindingTest, core)
#include "script_finding_test.moc"
