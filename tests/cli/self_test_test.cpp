// The command "selftest": right scripts pass, spoiled ones are noticed, nobody is named.
#include "cli/self_test.h"

#include "cli/file_sha1.h"
#include "cli/self_test_jobs.h"
#include "report_capture.h"
#include "script_folder.h"
#include "test_class.h"

#include <QtTest>

namespace
{

// Runs the row of that name.
SelfTestResult runRow(const QString &name, const QString &folder)
{
    for (const SelfTestRow &row : kSelfTestRows) {
        if (name == row.name)
            return runSelfTestRow(row, folder);
    }
    qFatal("no such row");
}

} // namespace

class SelfTestTest : public QObject
{
    Q_OBJECT

private slots:
    void shippedScriptsPass();
    void spoiledScriptFailsItsRowsAlone();
    void spoiledJobIsNoticed_data();
    void spoiledJobIsNoticed();
    void missingScriptsFailEveryRow();
    void jsonDescribesTheSystem();
    void noFolderOfTheUserIsNamed();
    void everyRowHasANameOfItsOwn();

private:
    // Runs the self-test and sorts what it says by "part".
    ExitCode runToJson(const QString &folder)
    {
        ReportCapture capture(OutputStyle::Json);
        const ExitCode code = runSelfTest(capture.reporter(), folder);
        m_parts.clear();
        for (const QJsonObject &object : capture.objects()) {
            if (object["event"].toString() == "detected" && object["what"].toString() == "selftest")
                m_parts[object["part"].toString()] << object;
        }
        return code;
    }

    QMap<QString, QVector<QJsonObject>> m_parts;
};

void SelfTestTest::shippedScriptsPass()
{
    ReportCapture capture(OutputStyle::Text);
    QCOMPARE(runSelfTest(capture.reporter(), SHIPPED_SCRIPTS), ExitCode::Done);
    const QString text = capture.answers();
    QVERIFY(text.startsWith("Program    gbdriver-cli " GBDRIVER_VERSION "\nQt         "));
    QVERIFY(text.contains(QRegularExpression("\n  gb_mbc5.nut +[0-9a-f]{40}\n")));
    QCOMPARE(text.count("  pass\n"), int(kSelfTestRows.size()));
    QVERIFY(!text.contains("FAILED"));
    QVERIFY(text.contains(QRegularExpression("\n22 of 22 as they should be, in \\d+ ms\n$")));
    for (const QString &line : text.split('\n'))
        QVERIFY2(line.size() <= 80, qPrintable(line));
}

void SelfTestTest::spoiledJobIsNoticed_data()
{
    QTest::addColumn<QString>("row");
    QTest::addColumn<QString>("script");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("problem");
    QTest::newRow("zeros for a dump")
        << "dump, no mapper"
        << "gb_mbc0.nut" << QByteArray("function cpu_dump(d, s, _) {}")
        << "only 0 of 32768 bytes were moved";
    QTest::newRow("banks in the wrong order")
        << "dump, no mapper"
        << "gb_mbc0.nut"
        << QByteArray("function cpu_dump(d, s, _) {"
                      "cpu_read(d, 0x4000, 0x4000); cpu_read(d, 0, 0x4000); }")
        << "the dump is wrong in ";
    QTest::newRow("first bank twice")
        << "dump, GBA"
        << "gba.nut"
        << QByteArray("function cpu_dump(d, s, _) {"
                      "for (local i = 0; i < s; i += 0x100000) cpu_read(d, 0, 0x100000); }")
        << "the dump is wrong in ";
    QTest::newRow("save written to a closed RAM")
        << "save, MBC5"
        << "gb_mbc5.nut"
        << QByteArray("function save_write(d, s, _) {"
                      "for (local i = 0; i < s; i += 0x2000) ram_write(d, 0xA000, 0x2000); }")
        << "write: the save in the cartridge is wrong in ";
    QTest::newRow("save read from a closed RAM")
        << "save, GBA EEPROM"
        << "gba.nut"
        << QByteArray("function save_write(d, s, _) { ram_write(d, 0, s); }\n"
                      "function save_dump(d, s, _) {"
                      "for (local i = 0; i < s; i += 8) ram_read(d, 0, 8); }")
        << "read: the save file is wrong in ";
    QTest::newRow("chip that nobody erases")
        << "flash, 8-bit chip"
        << "gb_mbc5.nut"
        << QByteArray("function cpu_erase(d, s, _) {}\nfunction cpu_flash(d, s, _) {}")
        << "failed: The erase does not end.";
    QTest::newRow("chip of the other width")
        << "flash, 16-bit chip"
        << "gb_mbc5.nut"
        << QByteArray("function cpu_erase(d, s, _) {"
                      "cpu_write(d, 0xAAA, 0xAA, 0x555, 0x55, 0xAAA, 0x80,"
                      "0xAAA, 0xAA, 0x555, 0x55, 0xAAA, 0x10); }\n"
                      "function cpu_flash(d, s, _) { rom_flash_cfg(d, 0);"
                      "for (local i = 0; i < s; i += 0x4000) {"
                      "cpu_write(d, 0x2000, i / 0x4000); rom_write(d, 0x4000, 0x4000); } }")
        << "the flash chip is wrong in ";
    QTest::newRow("impossible size accepted")
        << "must fail: impossible size"
        << "gb_mbc5.nut" << QByteArray("function cpu_dump(d, s, _) {}") << "reported success";
    QTest::newRow("impossible size fails by accident")
        << "must fail: impossible size"
        << "gb_mbc5.nut" << QByteArray("function cpu_dump(d, s, _) { throw \"oops\"; }")
        << "failed for another reason: ";
    QTest::newRow("reader's end not noticed")
        << "must fail: reader pulled out"
        << "gb_mbc5.nut"
        << QByteArray("function cpu_dump(d, s, _) { for (local i = 0; i < 16; i++) {"
                      "try { cpu_read(d, 0, 0x4000); } catch (e) {} } }")
        << "reported success";
}

void SelfTestTest::spoiledJobIsNoticed()
{
    QFETCH(QString, row);
    QFETCH(QString, script);
    QFETCH(QByteArray, text);
    QFETCH(QString, problem);
    ScriptFolder folder;
    folder.write(script, text);
    const SelfTestResult result = runRow(row, folder.path());
    QVERIFY2(result.problem.startsWith(problem), qPrintable(result.problem));
}

void SelfTestTest::missingScriptsFailEveryRow()
{
    const QTemporaryDir folder;
    ReportCapture capture(OutputStyle::Text);
    QCOMPARE(runSelfTest(capture.reporter(), folder.path()), ExitCode::DataMismatch);
    // Without a reader no script is asked for.
    QCOMPARE(capture.answers().count("FAILED"), int(kSelfTestRows.size()) - 1);
    QVERIFY(capture.answers().contains("FAILED: failed: dump core script error\n"));
    QVERIFY(capture.answers().contains("\n1 of 22 as they should be, in "));
}

void SelfTestTest::spoiledScriptFailsItsRowsAlone()
{
    ScriptFolder folder;
    folder.write("gb_mbc3.nut", "function cpu_dump(d, s, _) {}\n" // zeros
                                "function save_dump(d, s, _) {}\n"
                                "function save_write(d, s, _) {}\n");
    QCOMPARE(runToJson(folder.path()), ExitCode::DataMismatch);
    QCOMPARE(m_parts["job"].size(), int(kSelfTestRows.size()));
    QMap<QString, QString> problems;
    for (const QJsonObject &job : m_parts["job"]) {
        QCOMPARE(job["passed"].toBool(), !job.contains("problem"));
        QVERIFY(job["bytes"].isDouble());
        QVERIFY(job["ms"].isDouble());
        if (job.contains("problem"))
            problems[job["name"].toString()] = job["problem"].toString();
    }
    QCOMPARE(problems.keys(), QStringList({"dump, MBC3", "save, MBC3"}));
    QCOMPARE(problems["dump, MBC3"], QString("only 0 of 2097152 bytes were moved"));
    QCOMPARE(problems["save, MBC3"], QString("write: only 0 of 65536 bytes were moved"));
    QCOMPARE(m_parts["total"].first()["failed"].toInt(), 2);
    QCOMPARE(m_parts["total"].first()["jobs"].toInt(), int(kSelfTestRows.size()));
}

void SelfTestTest::jsonDescribesTheSystem()
{
    ScriptFolder folder;
    for (const QString &file : QDir(folder.path()).entryList({"gb*.nut"}))
        folder.remove(file);
    QCOMPARE(runToJson(folder.path()), ExitCode::DataMismatch);
    QCOMPARE(m_parts.keys(), QStringList({"job", "script", "system", "total"}));
    const QJsonObject system = m_parts["system"].first();
    for (const char *key : {"program", "qt", "os", "kernel", "cpu", "codec", "scripts"})
        QVERIFY2(!system[key].toString().isEmpty(), key);
    QStringList files;
    for (const QJsonObject &script : m_parts["script"]) {
        files << script["file"].toString();
        QCOMPARE(script["sha1"].toString(), fileSha1(folder.filePath(files.last())));
    }
    QCOMPARE(files, QStringList({"common.nut", "flash.nut"}));
}

void SelfTestTest::noFolderOfTheUserIsNamed()
{
    ScriptFolder folder("J\u00FCrgen Doe/private/mapper");
    for (const QString &file : QDir(folder.path()).entryList({"*.nut"}))
        folder.write(file, "function cpu_dump(dev {\n");
    ReportCapture capture(OutputStyle::Text);
    QCOMPARE(runSelfTest(capture.reporter(), folder.path()), ExitCode::DataMismatch);
    const QString text = capture.answers() + capture.messages();
    QVERIFY(text.contains("\nScripts    mapper\n"));
    for (const char *word : {"rgen", "Doe", "private", "/"})
        QVERIFY2(!QString(text).remove("GNU/Linux").contains(word), word);
}

void SelfTestTest::everyRowHasANameOfItsOwn()
{
    QSet<QString> names;
    for (const SelfTestRow &row : kSelfTestRows)
        names << row.name;
    QCOMPARE(names.size(), int(kSelfTestRows.size()));
}

GBDRIVER_TEST(SelfTestTest, core)
#include "self_test_test.moc"
