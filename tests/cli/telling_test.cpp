// What was found, as the user of the command line gets it: answers, colours, events, exit codes.
#include "cli/telling.h"

#include "report_capture.h"
#include "test_class.h"

#include <QJsonArray>
#include <QtTest>

namespace
{

const ReadFile kFile = {"a.gb", 32768, QByteArray::fromHex("00ff"), 2};

// Two reasons for a doubt.
Verdict doubted(VerdictKind kind)
{
    return {kind, {}, {}, {{ReasonKind::NotKnown, 0, 0, {}}, {ReasonKind::Mirrored, 16384, 0, {}}}};
}

} // namespace

class TellingTest : public QObject
{
    Q_OBJECT

private slots:
    void verdictIsTheAnswer()
    {
        ReportCapture capture(OutputStyle::Quiet);
        tellVerdict(doubted(VerdictKind::Suspicious), kFile, capture.reporter());
        QCOMPARE(capture.answers(),
                 QString("suspicious: not a known dump; everything from byte 16384 repeats what is "
                         "before\na.gb: 32768 bytes, SHA-1 00ff\n"));
        QCOMPARE(capture.messages(), QString());
    }

    // The word, its colour and the exit code.
    void verdictIsColouredOnATerminal()
    {
        const struct {
            VerdictKind kind;
            const char *answer;
            ExitCode code;
        } rows[] = {{VerdictKind::Verified, "\033[32mverified: ", ExitCode::Done},
                    {VerdictKind::Consistent, "\033[32mconsistent: ", ExitCode::Done},
                    {VerdictKind::Unverified, "\033[33munverified: ", ExitCode::Unverified},
                    {VerdictKind::Unstable, "\033[31munstable: ", ExitCode::DataMismatch},
                    {VerdictKind::Suspicious, "\033[31msuspicious: ", ExitCode::DataMismatch}};
        for (const auto &row : rows) {
            OutputFile answers;
            OutputTarget target;
            target.answers = answers.stream();
            target.hasColor = true;
            Reporter reporter(target);
            tellVerdict({row.kind, {}, {}, {}}, {}, reporter);
            QVERIFY2(answers.text().startsWith(row.answer), row.answer);
            QCOMPARE(answers.text().count("\033[0m\n"), 1);
            QCOMPARE(exitCodeOf(row.kind), row.code);
        }
    }

    void verdictIsAnEvent()
    {
        ReportCapture capture(OutputStyle::Json);
        tellVerdict({VerdictKind::Verified, "A Game", "my table", {}}, kFile, capture.reporter());
        tellVerdict(doubted(VerdictKind::Unverified), kFile, capture.reporter());
        QJsonObject verified{{"event", "verdict"},
                             {"file", "a.gb"},
                             {"size", 32768},
                             {"sha1", "00ff"},
                             {"reads", 2}};
        QJsonObject unverified = verified;
        verified.insert("verdict", "verified");
        verified.insert("reasons", QJsonArray());
        verified.insert("title", "A Game");
        verified.insert("source", "my table");
        unverified.insert("verdict", "unverified");
        unverified.insert(
            "reasons",
            QJsonArray{"not a known dump", "everything from byte 16384 repeats what is before"});
        QCOMPARE(capture.objects(), (QVector<QJsonObject>{verified, unverified}));
    }
};

GBDRIVER_TEST(TellingTest, core)
#include "telling_test.moc"
