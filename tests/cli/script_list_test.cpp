// The command "scripts": what each mapper script defines, and which are broken.
#include "cli/commands.h"

#include "report_capture.h"
#include "script_folder.h"
#include "test_class.h"
#include "trust/file_sha1.h"

#include <QJsonArray>
#include <QtTest>

namespace
{

const QByteArray kBroken = "function cpu_dump(dev {\n";

} // namespace

class ScriptListTest : public QObject
{
    Q_OBJECT

private slots:
    void shippedScriptsAreSound();
    void scriptIsListedWithItsHash();
    void brokenScriptShowsTheCompilersMessage();
    void missingScriptIsAFault();
    void missingFolderMissesEveryScript();
    void scriptThatOnlyThrowsIsAFault();
    void brokenScriptOfTheUserIsNoFault();
    void scriptThatNobodyChoosesIsNamed();
    void jsonHasOneObjectAScript();
};

void ScriptListTest::shippedScriptsAreSound()
{
    ReportCapture capture(OutputStyle::Text);
    QCOMPARE(runScripts(capture.reporter(), SHIPPED_SCRIPTS), ExitCode::Done);
    QCOMPARE(capture.messages(), QString());
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

GBDRIVER_TEST(ScriptListTest, core)
#include "script_list_test.moc"
