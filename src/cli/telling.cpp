#include "cli/telling.h"

#include "device/device_link.h"
#include "trust/judgement_words.h"
#include "trust/words.h"

#include <QJsonArray>

namespace
{

// Of a terminal.
const char *colorOf(VerdictKind kind)
{
    switch (kind) {
    case VerdictKind::Verified:
    case VerdictKind::Consistent:
        return "\033[32m"; // green
    case VerdictKind::Unverified:
        return "\033[33m"; // yellow
    case VerdictKind::Unstable:
    case VerdictKind::Suspicious:
        break;
    }
    return "\033[31m"; // red
}

// What the user can do about a reader that cannot be used.
QString readerWayOut(JobEnd fault)
{
    switch (fault) {
    case JobEnd::NoReader:
        return QStringLiteral(" Plug it in, let the system mount its drive and look at "
                              "\"gbdriver-cli drives\".");
    case JobEnd::ReaderInUse:
        return QStringLiteral(" Leave it plugged in, wait until the other one has ended and try "
                              "again.");
    case JobEnd::NotTheReader:
        return QStringLiteral(" Take that drive out, or name the reader's with --drive; "
                              "\"gbdriver-cli drives\" lists them.");
    default:
        return QStringLiteral(" Unplug it, plug it in again and see whether its drive can be read "
                              "and written.");
    }
}

bool isReaderFault(JobEnd end)
{
    return end == JobEnd::NoReader || end == JobEnd::NoMode || end == JobEnd::ReaderInUse ||
           end == JobEnd::NotTheReader;
}

QString readerAdvice(JobEnd fault)
{
    return jobFailureText(fault) + readerWayOut(fault);
}

ExitCode exitCodeOfJob(JobEnd end)
{
    switch (end) {
    case JobEnd::NoReader:
    case JobEnd::NotTheReader:
        return ExitCode::NoReader;
    case JobEnd::NoMode:
        return ExitCode::NoAnswer;
    case JobEnd::ReaderInUse:
        return ExitCode::InUse;
    case JobEnd::NoScript:
    case JobEnd::InputNotOpened:
    case JobEnd::InputNotRead:
    case JobEnd::OutputNotWritten:
        return ExitCode::FileError;
    case JobEnd::Refused:
        return ExitCode::Refused;
    case JobEnd::Cancelled:
    case JobEnd::ScriptStopped:
    case JobEnd::Left:
        return ExitCode::Cancelled;
    case JobEnd::ScriptError:
        return ExitCode::ScriptError;
    case JobEnd::Done: // but not whole
    case JobEnd::NoMemory:
    case JobEnd::ScriptFailed:
    case JobEnd::EraseFailed:
        break;
    }
    return ExitCode::TransferFailed;
}

// What the user can do, in terms of options; empty if the trouble's own words say it all.
QString wayOut(const Outcome &outcome)
{
    switch (outcome.trouble) {
    case Trouble::SaveIsBlank:
        return QStringLiteral(" See that --save-type and --ram-size are right; if the save "
                              "is empty, give --ignore-blank.");
    case Trouble::SaveIsLarger:
        return QStringLiteral(" Give --ram-size 128K.");
    case Trouble::NoFolder:
        return QStringLiteral(" Name another with --backup.");
    case Trouble::JobFailed:
        return exitCodeOf(outcome) == ExitCode::TransferFailed && isOnlyRead(outcome.state)
                   ? QStringLiteral(" Check plug and contacts and try again.")
                   : QString();
    default:
        return QString();
    }
}

QString jobAdvice(const Outcome &outcome)
{
    if (isReaderFault(outcome.job.end))
        return readerAdvice(outcome.job.end) +
               QStringLiteral(" This step sent nothing to the cartridge.") +
               (isUnwritten(outcome.state) ? QLatin1Char(' ') + stateText(outcome.state)
                                           : QString());
    return (troubleText(outcome) + QLatin1Char(' ') + stateText(outcome.state) + wayOut(outcome))
        .trimmed();
}

JudgementKind judgementOf(ExitCode code)
{
    if (code == ExitCode::Refused)
        return JudgementKind::Refused;
    return code == ExitCode::Cancelled ? JudgementKind::Stopped : JudgementKind::Failed;
}

// Of a script that failed, its reason comes first and alone.
QStringList jobLines(const Outcome &outcome)
{
    const JobEnd end = outcome.job.end;
    const bool hasRun = end == JobEnd::Done || end == JobEnd::ScriptFailed ||
                        end == JobEnd::Refused || end == JobEnd::ScriptError;
    const QStringList lines = hasRun ? QStringList{whyText(outcome)} : failureLines(outcome.job);
    return lines + QStringList{jobAdvice(outcome)};
}

} // namespace

ExitCode readerFault(const CartridgeReport &report)
{
    const JobEnd fault = readerFaultOf(report);
    return fault == JobEnd::Done ? ExitCode::Done : exitCodeOfJob(fault);
}

QString readerProblem(const CartridgeReport &report)
{
    const JobEnd fault = readerFaultOf(report);
    // A scan asks drives that are no readers, too; what they said does not matter.
    const QString driveError = QString::fromLocal8Bit(lastDriveError().c_str());
    return fault == JobEnd::NoReader || driveError.isEmpty()
               ? readerAdvice(fault)
               : readerAdvice(fault) + QLatin1Char('\n') + driveError;
}

ExitCode exitCodeOf(VerdictKind kind)
{
    switch (kind) {
    case VerdictKind::Verified:
    case VerdictKind::Consistent:
        return ExitCode::Done;
    case VerdictKind::Unverified:
        return ExitCode::Unverified;
    case VerdictKind::Unstable:
    case VerdictKind::Suspicious:
        break;
    }
    return ExitCode::DataMismatch;
}

ExitCode exitCodeOf(const Outcome &outcome)
{
    switch (outcome.trouble) {
    case Trouble::None:
        return ExitCode::Done;
    case Trouble::JobFailed:
    case Trouble::NotReadBack:
        return exitCodeOfJob(outcome.job.end);
    case Trouble::Stopped:
        return ExitCode::Cancelled;
    case Trouble::SaveIsBlank:
    case Trouble::SaveIsLarger:
        return ExitCode::Refused;
    case Trouble::NoFolder:
    case Trouble::NoFile:
        return ExitCode::FileError;
    case Trouble::ReadsDiffer:
    case Trouble::ChipIsUnclear:
    case Trouble::Mismatch:
        break;
    }
    return ExitCode::DataMismatch;
}

ExitCode tellTrouble(const Outcome &outcome, Reporter &reporter)
{
    const ExitCode code = exitCodeOf(outcome);
    if (outcome.trouble == Trouble::JobFailed)
        reporter.problem(
            judgedText(judgementOf(outcome), jobLines(outcome).join(QLatin1Char('\n'))));
    else if (outcome.trouble != Trouble::None)
        reporter.problem(judgedText(judgementOf(outcome), troubleText(outcome) + wayOut(outcome) +
                                                              QLatin1Char(' ') +
                                                              stateText(outcome.state)));
    return code;
}

ExitCode tellProblem(ExitCode code, const QString &problem, CartridgeState state,
                     Reporter &reporter)
{
    const QString text = problem + QLatin1Char(' ') + stateText(state);
    reporter.problem(code == ExitCode::Usage ? text : judgedText(judgementOf(code), text));
    return code;
}

void tellVerdict(const Verdict &verdict, const ReadFile &file, Reporter &reporter)
{
    const QString sha1 = QString::fromLatin1(file.sha1.toHex());
    QJsonObject object{
        {QStringLiteral("file"), file.path},
        {QStringLiteral("size"), file.size},
        {QStringLiteral("sha1"), sha1},
        {QStringLiteral("reads"), file.reads},
        {QStringLiteral("verdict"), QLatin1String(wordOf(verdict.kind))},
        {QStringLiteral("reasons"), QJsonArray::fromStringList(reasonTexts(verdict))}};
    if (verdict.kind == VerdictKind::Verified) {
        object.insert(QStringLiteral("title"), verdict.title);
        object.insert(QStringLiteral("source"), verdict.source);
    }
    reporter.event("verdict", object);

    reporter.answer(summaryOf(verdict), colorOf(verdict.kind));
    reporter.answer(
        QStringLiteral("%1: %2 bytes, SHA-1 %3").arg(file.path, QString::number(file.size), sha1));
}
