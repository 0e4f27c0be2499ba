// What arrives on standard output and standard error in each style.
#include "cli/reporter.h"

#include "cli/telling.h"
#include "output_file.h"
#include "report_capture.h"
#include "test_class.h"

#include <QCoreApplication>
#include <QtTest>

#include <cstdio>
#include <memory>

namespace
{

constexpr int kKibi = 1024;
const QString kLetters = QString::fromUtf8("Übung 日本");

// Everything that a command can say, once.
void sayAll(Reporter &reporter)
{
    reporter.log("Using:");
    reporter.event("detected", {{"what", "cartridge"}});
    reporter.startPhase("read", 4 * kKibi);
    reporter.progress(0);
    reporter.progress(4 * kKibi);
    reporter.log("Dump rom finish.\n");
    reporter.log("");
    reporter.endPhase();
    reporter.problem("It failed.");
    reporter.answer("the answer");
    reporter.end(ExitCode::TransferFailed);
}

} // namespace

Q_DECLARE_METATYPE(ExitCode)

class ReporterTest : public QObject
{
    Q_OBJECT

private slots:
    void textHasAnswersApartFromEverythingElse()
    {
        ReportCapture capture(OutputStyle::Text);
        sayAll(capture.reporter());
        QCOMPARE(capture.answers(), QString("the answer\n"));
        const QStringList lines = capture.messages().split('\n');
        QCOMPARE(lines.size(), 7);
        QCOMPARE(lines[0], QString("Using:"));
        QVERIFY2(lines[1].startsWith("read    [") && lines[1].contains("  0%"),
                 qPrintable(lines[1]));
        QVERIFY2(lines[2].startsWith("read    [") && lines[2].contains("100%"),
                 qPrintable(lines[2]));
        QCOMPARE(lines.mid(3), (QStringList{"Dump rom finish.", "", "It failed.", ""}));
    }

    void quietHasAnswersAndProblems()
    {
        ReportCapture capture(OutputStyle::Quiet);
        sayAll(capture.reporter());
        QCOMPARE(capture.answers(), QString("the answer\n"));
        QCOMPARE(capture.messages(), QString("It failed.\n"));
    }

    void jsonHasOneObjectALineAndNothingElse()
    {
        ReportCapture capture(OutputStyle::Json);
        sayAll(capture.reporter());
        QCOMPARE(capture.messages(), QString());
        const auto log = [](const char *level, const char *line) {
            return QJsonObject{{"event", "log"}, {"level", level}, {"line", line}};
        };
        const auto progress = [](int done) {
            return QJsonObject{
                {"event", "progress"}, {"phase", "read"}, {"done", done}, {"total", 4 * kKibi}};
        };
        const QVector<QJsonObject> expected = {
            log("info", "Using:"),
            {{"event", "detected"}, {"what", "cartridge"}},
            progress(0),
            progress(4 * kKibi),
            log("info", "Dump rom finish."),
            log("error", "It failed."),
            {{"event", "end"},
             {"exitCode", 5},
             {"status", "transfer-failed"},
             {"meaning", "a transfer to or from the cartridge failed"}}};
        const QVector<QJsonObject> found = capture.objects();
        QCOMPARE(found.size(), expected.size());
        for (int i = 0; i < found.size(); ++i)
            QVERIFY2(found[i] == expected[i],
                     QJsonDocument(found[i]).toJson(QJsonDocument::Compact).constData());
    }

    void jsonTellsAtMostEveryPercent()
    {
        ReportCapture capture(OutputStyle::Json);
        capture.reporter().startPhase("backup", 1000 * kKibi);
        for (int done = 0; done <= 1000; ++done)
            capture.reporter().progress(qint64(done) * kKibi);
        capture.reporter().endPhase();
        const QVector<QJsonObject> objects = capture.objects();
        QCOMPARE(objects.size(), 101);
        QCOMPARE(objects.last()["done"].toInt(), 1000 * kKibi);
        QCOMPARE(objects.last()["phase"].toString(), QString("backup"));
    }

    // Each phase begins at its own start.
    void everyPhaseTellsItsFirstPercent()
    {
        ReportCapture capture(OutputStyle::Json);
        for (const char *phase : {"read", "compare"}) {
            capture.reporter().startPhase(phase, 100);
            capture.reporter().progress(0);
        }
        const QVector<QJsonObject> objects = capture.objects();
        QCOMPARE(objects.size(), 2);
        QCOMPARE(objects[1]["phase"].toString(), QString("compare"));
    }

    void jsonIsUtf8()
    {
        ReportCapture capture(OutputStyle::Json);
        capture.reporter().log(kLetters + " \"quoted\"\nand more");
        QCOMPARE(capture.objects().value(0)["line"].toString(), kLetters + " \"quoted\"\nand more");
    }

    // A stream that was opened for reading takes no text, as a full disk does.
    void answerThatCannotBeWrittenIsAFailure_data()
    {
        QTest::addColumn<bool>("isJson");
        QTest::addColumn<ExitCode>("code");
        QTest::addColumn<ExitCode>("end");
        for (const bool isJson : {false, true}) {
            const auto row = [isJson](const char *name) -> QTestData & {
                return QTest::addRow("%s%s", name, isJson ? ", JSON" : "");
            };
            row("done") << isJson << ExitCode::Done << ExitCode::FileError;
            row("unverified") << isJson << ExitCode::Unverified << ExitCode::FileError;
            row("mismatch") << isJson << ExitCode::DataMismatch << ExitCode::DataMismatch;
        }
    }
    void answerThatCannotBeWrittenIsAFailure()
    {
        QFETCH(bool, isJson);
        QFETCH(ExitCode, code);
        const std::unique_ptr<std::FILE, int (*)(std::FILE *)> readOnly(
            std::fopen(qPrintable(QCoreApplication::applicationFilePath()), "rb"), std::fclose);
        QVERIFY(readOnly != nullptr);
        const OutputFile messages;
        OutputTarget target;
        target.style = isJson ? OutputStyle::Json : OutputStyle::Text;
        target.answers = readOnly.get();
        target.messages = messages.stream();
        Reporter reporter(target);
        reporter.answer("the answer");
        QTEST(reporter.end(code), "end");
        QVERIFY2(messages.text().startsWith("The answer could not be written: "),
                 qPrintable(messages.text()));
    }

    // Whatever a title or a file name holds, only the program's own codes reach a terminal.
    void controlsOfOthersAreShown()
    {
        const QString title = QString("X\033]0;title\007") + QChar(0x9B) + "2J";
        for (const OutputStyle style : {OutputStyle::Text, OutputStyle::Json}) {
            ReportCapture capture(style);
            capture.reporter().log(title);
            capture.reporter().startPhase("read", 1);
            capture.reporter().log(title);
            capture.reporter().problem(title);
            capture.reporter().answer(title);
            capture.reporter().end(ExitCode::Done);
            const QString all = capture.answers() + capture.messages();
            QVERIFY2(!all.contains('\033') && !all.contains('\007') && !all.contains(QChar(0x9B)),
                     qPrintable(all));
            if (style == OutputStyle::Json)
                QCOMPARE(capture.objects().value(0)["line"].toString(), title);
            else
                QCOMPARE(all.count("X\\x1B]0;title\\x07\\x9B2J\n"), 4);
        }
    }

    void problemStandsBelowTheBar()
    {
        const OutputFile messages;
        OutputTarget target;
        target.messages = messages.stream();
        target.isTerminal = true;
        Reporter reporter(target);
        reporter.startPhase("read", 100);
        reporter.progress(50);
        reporter.problem("It failed.");
        reporter.endPhase();
        QVERIFY2(messages.text().startsWith("\rread    ["), qPrintable(messages.text()));
        QVERIFY2(messages.text().endsWith("\033[K\nIt failed.\n"), qPrintable(messages.text()));
    }

    void verdictIsColouredOnRequest_data()
    {
        QTest::addColumn<bool>("hasColor");
        QTest::addColumn<QString>("line");
        QTest::newRow("colour") << true << "\033[31munstable: reads differ in bank 3\033[0m";
        QTest::newRow("plain") << false << "unstable: reads differ in bank 3";
    }
    void verdictIsColouredOnRequest()
    {
        QFETCH(bool, hasColor);
        const OutputFile answers;
        OutputTarget target;
        target.answers = answers.stream();
        target.hasColor = hasColor;
        Reporter reporter(target);
        RomEvidence evidence;
        evidence.differences = "bank 3";
        tellVerdict(judgeRom(evidence), {"a.gb", 3, QByteArray(1, '\0'), 2}, reporter);
        QTEST(answers.text().section('\n', 0, 0), "line");
        QCOMPARE(answers.text().section('\n', 1), QString("a.gb: 3 bytes, SHA-1 00\n"));
    }
};

GBDRIVER_TEST(ReporterTest, core)
#include "reporter_test.moc"
