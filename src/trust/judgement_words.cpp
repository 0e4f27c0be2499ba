#include "trust/judgement_words.h"

#include "trust/words.h"
#include "worker/job_words.h"

#include <QCoreApplication>

#include <array>

namespace
{

struct Judgement {
    Q_DECLARE_TR_FUNCTIONS(Judgement)
};

QString incompleteText(const Outcome &outcome)
{
    const JobResult &job = outcome.job;
    const QString reason = job.driveError.isEmpty() ? job.failedOperation : job.driveError;
    const QString count =
        (outcome.phase == Phase::Write ? Judgement::tr("%1 of %2 bytes were written")
                                       : Judgement::tr("%1 of %2 bytes arrived"))
            .arg(job.movedBytes)
            .arg(job.wantedBytes);
    return withStop(reason.isEmpty() ? count : Judgement::tr("%1: %2").arg(count, reason));
}

QString failureText(const Outcome &outcome)
{
    if (judgementOf(outcome) == JudgementKind::Incomplete)
        return incompleteText(outcome);
    if (!outcome.job.scriptError.isEmpty())
        return withStop(reasonOf(outcome.job));
    if (outcome.job.end == JobEnd::Refused) // the only job that no script is asked for
        return flashFaultText(FlashFault::GbaRom, 0, 0);
    const QString failure = outcome.job.end == JobEnd::OutputNotWritten
                                ? Judgement::tr("The file could not be written.")
                                : jobFailureText(outcome.job.end, outcome.detail);
    const QString &error = outcome.job.driveError;
    return error.isEmpty() ? failure : sentences(failure, withStop(error));
}

QString writtenText(const JudgedJob &judged)
{
    if (judged.fileBytes <= judged.bytes)
        return (judged.isCompared ? Judgement::tr("%1 bytes, read back and equal")
                                  : Judgement::tr("%1 bytes; nothing was read back and compared"))
            .arg(judged.bytes);
    return (judged.isCompared
                ? Judgement::tr("only the first %1 of %2 bytes of the file, read back and equal")
                : Judgement::tr("only the first %1 of %2 bytes of the file; nothing was read back "
                                "and compared"))
        .arg(judged.bytes)
        .arg(judged.fileBytes);
}

QString textOf(const JudgedJob &judged)
{
    if (judged.kind == JudgementKind::Written)
        return writtenText(judged);
    if (judged.outcome.trouble == Trouble::Mismatch)
        return mismatchText(judged.mismatch);
    return judgementText(judged.outcome);
}

} // namespace

QString judgedText(JudgementKind kind, const QString &text)
{
    // In the order of JudgementKind.
    constexpr std::array<const char *, 10> kLines = {
        QT_TRANSLATE_NOOP("Judgement", "verified: %1"),
        QT_TRANSLATE_NOOP("Judgement", "consistent: %1"),
        QT_TRANSLATE_NOOP("Judgement", "unverified: %1"),
        QT_TRANSLATE_NOOP("Judgement", "unstable: %1"),
        QT_TRANSLATE_NOOP("Judgement", "suspicious: %1"),
        QT_TRANSLATE_NOOP("Judgement", "written: %1"),
        QT_TRANSLATE_NOOP("Judgement", "incomplete: %1"),
        QT_TRANSLATE_NOOP("Judgement", "failed: %1"),
        QT_TRANSLATE_NOOP("Judgement", "refused: %1"),
        QT_TRANSLATE_NOOP("Judgement", "stopped: %1")};
    return Judgement::tr(kLines[static_cast<std::size_t>(kind)]).arg(text);
}

QString whyText(const Outcome &outcome)
{
    if (outcome.trouble == Trouble::JobFailed)
        return failureText(outcome);
    if (outcome.trouble != Trouble::NotReadBack)
        return troubleText(outcome);
    Outcome read = outcome;
    read.trouble = Trouble::JobFailed;
    return sentences(troubleText(outcome), failureText(read));
}

QString judgementText(const Outcome &outcome)
{
    return sentences(whyText(outcome), stateText(outcome.state));
}

QString judgementLine(const JudgedJob &judged)
{
    if (isVerdict(judged.kind))
        return summaryOf(judged.verdict);
    return judgedText(judged.kind, textOf(judged));
}

QString guardText(const WriteGuard &guard)
{
    switch (guard.fault) {
    case GuardFault::None:
        break;
    case GuardFault::Trouble:
    case GuardFault::Target:
        return whyText(guard.outcome);
    case GuardFault::OtherSystem:
        return Judgement::tr("The cartridge is of another system than the settings say.");
    case GuardFault::Danger:
        return dangerText(guard.danger);
    case GuardFault::Contradiction:
        return contradictionText(guard.contradiction);
    case GuardFault::Flash:
        return flashFaultText(guard.flash, guard.bytes, guard.allowedBytes);
    case GuardFault::BeyondBus:
        return Judgement::tr("The cartridge bus reaches 32 MiB (256 Mb); no more of a GBA ROM can "
                             "be read.");
    case GuardFault::NoChip:
        return Judgement::tr("No flash chip answers and every byte is FF: so reads an empty slot, "
                             "and nobody would notice that nothing is written.");
    }
    return QString();
}
