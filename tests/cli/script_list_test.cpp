// The command "scripts": what each mapper script defines, and which are broken.
#include "cli/script_list.h"

#include "cli/file_sha1.h"
#include "cli/script_finding.h"
#include "cli/script_look.h"
#include "device/device_link.h"
#include "drive_shelf.h"
#include "report_capture.h"
#include "script_folder.h"
#include "test_class.h"

#include <QJsonArray>
#include <QtTest>

#include <algorithm>

using namespace virtual_reader;

namespace
{

const QByteArray kBroken = "function cpu_dump(dev {\n";

ScriptFinding findingOf(const ScriptFolder &folder, const QString &file)
{
    for (const ScriptFinding &finding : examineScripts(folder.path())) {
        if (finding.file == file)
            return finding;
    }
    return ScriptFinding();
}

} // namespace

class ScriptListTest : public QObject
{
    Q_OBJECT

private slots:
    void shippedScriptsAreSound();
    void operationsAreThoseThatAreDefined_data();
    void operationsAreThoseThatAreDefined();
    void scriptIsListedWithItsHash();
    void brokenScriptShowsTheCompilersMessage();
    void missingScriptIsAFault();
    void missingFolderMissesEveryScript();
    void brokenHelperBreaksTheScriptsThatLoadIt();
    void scriptThatOnlyThrowsIsAFault();
    void brokenScriptOfTheUserIsNoFault();
    void scriptThatNobodyChoosesIsNamed();
    void topLevelCannotReachTheReader_data();
    void topLevelCannotReachTheReader();
    void jsonHasOneObjectAScript();
    void sha1IsOfTheBytes();
};

void ScriptListTest::shippedScriptsAreSound()
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
    ReportCapture capture(OutputStyle::Text);
    QCOMPARE(runScripts(capture.reporter(), SHIPPED_SCRIPTS), ExitCode::Done);
    QCOMPARE(capture.messages(), QString());
}

void ScriptListTest::operationsAreThoseThatAreDefined_data()
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

void ScriptListTest::operationsAreThoseThatAreDefined()
{
    QFETCH(QByteArray, script);
    ScriptFolder folder;
    folder.write("gb_mbc1.nut", script);
    const ScriptFinding finding = findingOf(folder, "gb_mbc1.nut");
    QTEST(finding.operations.join(", "), "operations");
    QVERIFY(finding.state == ScriptState::Sound);
    QCOMPARE(finding.problem, QString());
}

void ScriptListTest::scriptIsListedWithItsHash()
{
    ScriptFolder folder;
    folder.write("gb_mbc7.nut", "cpu_dump <- 1;");
    folder.write("gba.nut", "save_dump <- 1;");
    ReportCapture capture(OutputStyle::Text);
    QCOMPARE(runScripts(capture.reporter(), folder.path()), ExitCode::Done);
    QVERIFY(capture.answers().contains("gb_mbc7.nut: mapper MBC7\n   dump\n   SHA-1 " +
                                       fileSha1(folder.filePath("gb_mbc7.nut")) + "\n"));
    QVERIFY(capture.answers().contains("gba.nut: GBA\n   read-ram\n   SHA-1 "));
    QVERIFY(capture.answers().contains("\ncommon.nut: helper, with no operation of its own\n"
                                       "   SHA-1 "));
}

void ScriptListTest::brokenScriptShowsTheCompilersMessage()
{
    ScriptFolder folder;
    folder.write("gb_mbc3.nut", kBroken);
    ReportCapture capture(OutputStyle::Text);
    QCOMPARE(runScripts(capture.reporter(), folder.path()), ExitCode::FileError);
    const QRegularExpression line("gb_mbc3.nut: mapper MBC3\n   DOES NOT COMPILE: "
                                  "[^\n]*gb_mbc3.nut line = \\(1\\) column = \\(\\d+\\) : error");
    QVERIFY2(capture.answers().contains(line), qPrintable(capture.answers()));
    QVERIFY(capture.messages().startsWith("Cartridges that need gb_mbc3.nut cannot be used.\n"));
}

void ScriptListTest::missingScriptIsAFault()
{
    ScriptFolder folder;
    folder.remove("gb_tama5.nut");
    folder.remove("gba.nut");
    ReportCapture capture(OutputStyle::Text);
    QCOMPARE(runScripts(capture.reporter(), folder.path()), ExitCode::FileError);
    QVERIFY(capture.answers().contains("gb_tama5.nut: mapper TAMA5\n   MISSING\n"
                                       "gba.nut: GBA\n   MISSING\n"));
    QVERIFY(capture.messages().startsWith("Cartridges that need gb_tama5.nut, gba.nut cannot"));
}

void ScriptListTest::missingFolderMissesEveryScript()
{
    const QTemporaryDir folder;
    ReportCapture capture(OutputStyle::Text);
    QCOMPARE(runScripts(capture.reporter(), folder.filePath("none")), ExitCode::FileError);
    QCOMPARE(capture.answers().count("MISSING"), 8);
    QVERIFY(capture.messages().contains(QDir::toNativeSeparators(folder.filePath("none"))));
}

void ScriptListTest::brokenHelperBreaksTheScriptsThatLoadIt()
{
    ScriptFolder folder;
    folder.write("common.nut", "x <- ;\n");
    const ScriptFinding helper = findingOf(folder, "common.nut");
    QVERIFY(helper.state == ScriptState::NotCompiled);
    QVERIFY(helper.problem.contains("common.nut line = (1)"));
    QVERIFY(!helper.isFault());
    const ScriptFinding user = findingOf(folder, "gb_mbc2.nut");
    QVERIFY(user.state == ScriptState::Threw);
    QVERIFY2(user.problem.contains("[expression expected]"), qPrintable(user.problem));
    QVERIFY(user.isFault());
}

void ScriptListTest::scriptThatOnlyThrowsIsAFault()
{
    ScriptFolder folder;
    folder.write("gb_mbc0.nut", "cpu_dump <- 1; throw \"not today\";");
    ReportCapture capture(OutputStyle::Text);
    QCOMPARE(runScripts(capture.reporter(), folder.path()), ExitCode::FileError);
    const QRegularExpression line("gb_mbc0.nut: mapper NONE\n   DOES NOT LOAD: "
                                  "[^\n]*\\[not today\\]\n");
    QVERIFY2(capture.answers().contains(line), qPrintable(capture.answers()));
}

void ScriptListTest::brokenScriptOfTheUserIsNoFault()
{
    ScriptFolder folder;
    folder.write("mine.nut", kBroken);
    ReportCapture capture(OutputStyle::Text);
    QCOMPARE(runScripts(capture.reporter(), folder.path()), ExitCode::Done);
    QVERIFY(capture.answers().contains(QRegularExpression("\nmine.nut: .*\n   DOES NOT COMPILE")));
}

void ScriptListTest::scriptThatNobodyChoosesIsNamed()
{
    ScriptFolder folder;
    folder.write("mine.nut", "cpu_dump <- 1; save_dump <- 1;");
    ReportCapture capture(OutputStyle::Text);
    QCOMPARE(runScripts(capture.reporter(), folder.path()), ExitCode::Done);
    QVERIFY(capture.answers().contains("\nmine.nut: not used: no mapper names it\n"
                                       "   dump, read-ram\n"));
}

void ScriptListTest::topLevelCannotReachTheReader_data()
{
    QTest::addColumn<QByteArray>("call");
    QTest::newRow("write") << QByteArray("cpu_write(0, 0x2000, 1);");
    QTest::newRow("read") << QByteArray("cpu_read(0, 0, 16);");
}

void ScriptListTest::topLevelCannotReachTheReader()
{
    QFETCH(QByteArray, call);
    DriveShelf shelf;
    const FaultyDrive &reader = shelf.addReader('E');
    setDriveBackend(&shelf);
    ScriptFolder folder;
    folder.write("gb_mbc0.nut", "cpu_dump <- 1; " + call);
    QStringList log;
    const ScriptLook look =
        lookAtScript(folder.filePath("gb_mbc0.nut"), scriptOperations(false).first(), &log);
    setDriveBackend(nullptr);
    QVERIFY(look == ScriptLook::Threw);
    QVERIFY(log.join(QString()).contains("the top level of a script cannot use the cartridge"));
    QVERIFY(!shelf.wasWritten());
    QCOMPARE(reader.callCount(DriveCall::OpenForRead), 0U);
}

void ScriptListTest::jsonHasOneObjectAScript()
{
    ScriptFolder folder;
    folder.write("gb_mbc1.nut", kBroken);
    folder.remove("gb_mbc2.nut");
    ReportCapture capture(OutputStyle::Json);
    QCOMPARE(runScripts(capture.reporter(), folder.path()), ExitCode::FileError);
    const QVector<QJsonObject> objects = capture.objects();
    QCOMPARE(objects.size(), 11); // and the problem
    QCOMPARE(objects[0],
             QJsonObject({{"event", "detected"},
                          {"what", "script"},
                          {"file", "gb_mbc0.nut"},
                          {"role", "mapper"},
                          {"state", "sound"},
                          {"usedBy", "NONE"},
                          {"operations", QJsonArray({"dump", "flash", "read-ram", "write-ram"})},
                          {"sha1", fileSha1(folder.filePath("gb_mbc0.nut"))}}));
    QCOMPARE(objects[1]["state"].toString(), QString("not-compiled"));
    QVERIFY(objects[1]["problem"].toString().contains("line = (1)"));
    QCOMPARE(objects[2]["state"].toString(), QString("missing"));
    QVERIFY(!objects[2].contains("sha1"));
    QCOMPARE(objects[8]["role"].toString(), QString("helper"));
    QCOMPARE(objects[10]["level"].toString(), QString("error"));
}

void ScriptListTest::sha1IsOfTheBytes()
{
    ScriptFolder folder;
    folder.write("a.nut", "abc"); // the example of FIPS 180-4
    QCOMPARE(fileSha1(folder.filePath("a.nut")),
             QString("a9993e364706816aba3e25717850c26c9cd0d89d"));
    folder.write("a.nut", "");
    QCOMPARE(fileSha1(folder.filePath("a.nut")),
             QString("da39a3ee5e6b4b0d3255bfef95601890afd80709"));
    QCOMPARE(fileSha1(folder.filePath("none.nut")), QString());
    QCOMPARE(fileSha1(folder.path()), QString());
}

GBDRIVER_TEST(ScriptListTest, core)
#include "script_list_test.moc"
