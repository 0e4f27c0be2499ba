#include "trust/judgement_words.h"

#include "trust/words.h"
#include "worker/job_words.h"

namespace
{

QString withStop(const QString &text)
{
    return text.endsWith(QLatin1Char('.')) ? text : text + QLatin1Char('.');
}

QString incompleteText(const Outcome &outcome)
{
    const JobResult &job = outcome.job;
    const QString reason = job.driveError.isEmpty() ? job.failedOperation : job.driveError;
    const QString count = QStringLiteral("%1 of %2 bytes %3")
                              .arg(job.movedBytes)
                              .arg(job.wantedBytes)
                              .arg(outcome.phase == Phase::Write ? QStringLiteral("were written")
                                                                 : QStringLiteral("arrived"));
    return withStop(reason.isEmpty() ? count : count + QStringLiteral(": ") + reason);
}

QString failureText(const Outcome &outcome)
{
    if (judgementOf(outcome) == JudgementKind::Incomplete)
        return incompleteText(outcome);
    if (!outcome.job.scriptError.isEmpty())
        return withStop(reasonOf(outcome.job));
    const QString error = outcome.job.driveError.isEmpty()
                              ? QString()
                              : QLatin1Char(' ') + withStop(outcome.job.driveError);
    if (outcome.job.end == JobEnd::Refused) // the only job that no script is asked for
        return flashFaultText(FlashFault::GbaRom, 0, 0);
    return outcome.job.end == JobEnd::OutputNotWritten
               ? QStringLiteral("The file could not be written.") + error
               : jobFailureText(outcome.job.end, outcome.detail) + error;
}

QString writtenText(const JudgedJob &judged)
{
    const QString part = judged.fileBytes > judged.bytes
                             ? QStringLiteral("only the first %1 of %2 bytes of the file")
                                   .arg(judged.bytes)
                                   .arg(judged.fileBytes)
                             : QStringLiteral("%1 bytes").arg(judged.bytes);
    return part + (judged.isCompared ? QStringLiteral(", read back and equal")
                                     : QStringLiteral("; nothing was read back and compared"));
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
    return QLatin1String(wordOf(kind)) + QStringLiteral(": ") + text;
}

QString whyText(const Outcome &outcome)
{
    if (outcome.trouble == Trouble::JobFailed)
        return failureText(outcome);
    if (outcome.trouble != Trouble::NotReadBack)
        return troubleText(outcome);
    Outcome read = outcome;
    read.trouble = Trouble::JobFailed;
    return troubleText(outcome) + QLatin1Char(' ') + failureText(read);
}

QString judgementText(const Outcome &outcome)
{
    return whyText(outcome) + QLatin1Char(' ') + stateText(outcome.state);
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
        return QStringLiteral("The cartridge is of another system than the settings say.");
    case GuardFault::Danger:
        return dangerText(guard.danger);
    case GuardFault::Contradiction:
        return contradictionText(guard.contradiction);
    case GuardFault::Flash:
        return flashFaultText(guard.flash, guard.bytes, guard.allowedBytes);
    case GuardFault::BeyondBus:
        return QStringLiteral("The cartridge bus reaches 32 MiB (256 Mb); no more of a GBA ROM can "
                              "be read.");
    case GuardFault::NoChip:
        return QStringLiteral("No flash chip answers and every byte is FF: so reads an empty slot, "
                              "and nobody would notice that nothing is written.");
    }
    return QString();
}
