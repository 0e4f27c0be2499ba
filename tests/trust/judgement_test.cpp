// The one word for every end that a careful task can have.
#include "trust/judgement.h"

#include "test_class.h"

#include <QtTest>

Q_DECLARE_METATYPE(Outcome)

namespace
{

Outcome ended(Trouble trouble)
{
    Outcome outcome;
    outcome.trouble = trouble;
    return outcome;
}

Outcome jobEnded(JobEnd end, const QString &driveError = {})
{
    Outcome outcome = ended(Trouble::JobFailed);
    outcome.job.end = end;
    outcome.job.driveError = driveError;
    return outcome;
}

} // namespace

class JudgementTest : public QObject
{
    Q_OBJECT

private slots:
    void everyVerdictHasItsWord();
    void everyOutcomeHasItsWord_data();
    void everyOutcomeHasItsWord();
    void wordsDiffer();
};

void JudgementTest::everyVerdictHasItsWord()
{
    const struct {
        VerdictKind kind;
        const char *word;
    } rows[] = {{VerdictKind::Verified, "verified"},
                {VerdictKind::Consistent, "consistent"},
                {VerdictKind::Unverified, "unverified"},
                {VerdictKind::Unstable, "unstable"},
                {VerdictKind::Suspicious, "suspicious"}};
    for (const auto &row : rows)
        QCOMPARE(wordOf(judgementOf(row.kind)), row.word);
}

void JudgementTest::everyOutcomeHasItsWord_data()
{
    QTest::addColumn<Outcome>("outcome");
    QTest::addColumn<QByteArray>("word");
    const auto row = [](const char *name, const Outcome &outcome, const char *word) {
        QTest::newRow(name) << outcome << QByteArray(word);
    };
    row("stopped", ended(Trouble::Stopped), "stopped");
    row("reads differ", ended(Trouble::ReadsDiffer), "refused");
    row("blank save", ended(Trouble::SaveIsBlank), "refused");
    row("larger save", ended(Trouble::SaveIsLarger), "refused");
    row("unclear chip", ended(Trouble::ChipIsUnclear), "refused");
    row("no folder", ended(Trouble::NoFolder), "refused");
    row("no file", ended(Trouble::NoFile), "failed");
    row("not read back", ended(Trouble::NotReadBack), "failed");
    row("mismatch", ended(Trouble::Mismatch), "failed");
    row("job came short", jobEnded(JobEnd::Done), "incomplete");
    row("drive reported an error", jobEnded(JobEnd::Done, "gone"), "incomplete");
    row("no reader", jobEnded(JobEnd::NoReader), "failed");
    row("no mode", jobEnded(JobEnd::NoMode, "gone"), "failed");
    row("reader in use", jobEnded(JobEnd::ReaderInUse, "held"), "failed");
    row("a stick", jobEnded(JobEnd::NotTheReader, "no file"), "failed");
    row("no memory", jobEnded(JobEnd::NoMemory), "failed");
    row("no script", jobEnded(JobEnd::NoScript), "failed");
    row("input not opened", jobEnded(JobEnd::InputNotOpened, "gone"), "failed");
    row("input not read", jobEnded(JobEnd::InputNotRead), "failed");
    row("refused by the script", jobEnded(JobEnd::Refused), "refused");
    row("script failed by itself", jobEnded(JobEnd::ScriptFailed), "failed");
    row("script failed over the drive", jobEnded(JobEnd::ScriptFailed, "gone"), "incomplete");
    row("cancelled", jobEnded(JobEnd::Cancelled), "stopped");
    row("output not written", jobEnded(JobEnd::OutputNotWritten, "full"), "failed");
}

void JudgementTest::everyOutcomeHasItsWord()
{
    QFETCH(Outcome, outcome);
    QFETCH(QByteArray, word);
    QCOMPARE(QByteArray(wordOf(judgementOf(outcome))), word);
}

void JudgementTest::wordsDiffer()
{
    QSet<QByteArray> words;
    constexpr int kKinds = static_cast<int>(JudgementKind::Stopped) + 1;
    for (int kind = 0; kind < kKinds; ++kind)
        words << wordOf(static_cast<JudgementKind>(kind));
    QCOMPARE(words.size(), kKinds);
    QVERIFY(words.contains("written"));
}

GBDRIVER_TEST(JudgementTest, none)
#include "judgement_test.moc"
