// The command "selftest": right scripts pass, spoiled ones are noticed, nobody is named.
#include "cli/commands.h"

#include "report_capture.h"
#include "script_folder.h"
#include "test_class.h"
#include "trial/self_test_jobs.h"
#include "trust/file_sha1.h"

#include <QtTest>

class SelfTestTest : public QObject
{
    Q_OBJECT

private slots:
    void shippedScriptsPass();
    void spoiledScriptFailsItsRowsAlone();
    void missingScriptsFailEveryRow();
    void jsonDescribesTheSystem();
    void noFolderOfTheUserIsNamed();

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

void SelfTestTest::missingScriptsFailEveryRow()
{
    const QTemporaryDir folder;
    ReportCapture capture(OutputStyle::Text);
    QCOMPARE(runSelfTest(capture.reporter(), folder.path()), ExitCode::DataMismatch);
    QCOMPARE(capture.answers().count("FAILED"), int(kSelfTestRows.size()));
    QVERIFY(capture.answers().contains("FAILED: failed: dump core script error\n"));
    // A script that is missing is noticed before a reader that is not there.
    QCOMPARE(capture.answers().count("FAILED: failed for another reason: dump core script error\n"),
             3);
    QVERIFY(capture.answers().contains("\n0 of 22 as they should be, in "));
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

GBDRIVER_TEST(SelfTestTest, core)
#include "self_test_test.moc"
