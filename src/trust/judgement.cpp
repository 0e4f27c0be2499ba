#include "trust/judgement.h"

#include <array>

namespace
{

JudgementKind judgementOfJob(const JobResult &result)
{
    switch (result.end) {
    case JobEnd::Refused:
        return JudgementKind::Refused;
    case JobEnd::Cancelled:
    case JobEnd::ScriptStopped:
    case JobEnd::Left:
        return JudgementKind::Stopped;
    case JobEnd::Done: // but not whole
        return JudgementKind::Incomplete;
    case JobEnd::ScriptFailed:
        return result.driveError.isEmpty() && result.failedOperation.isEmpty()
                   ? JudgementKind::Failed
                   : JudgementKind::Incomplete;
    case JobEnd::NoReader:
    case JobEnd::NoMode:
    case JobEnd::ReaderInUse:
    case JobEnd::NotTheReader:
    case JobEnd::NoMemory:
    case JobEnd::NoScript:
    case JobEnd::InputNotOpened:
    case JobEnd::InputNotRead:
    case JobEnd::OutputNotWritten:
    case JobEnd::ScriptError:
    case JobEnd::EraseFailed:
        break;
    }
    return JudgementKind::Failed;
}

} // namespace

JudgementKind judgementOf(VerdictKind kind)
{
    return static_cast<JudgementKind>(kind);
}

bool isVerdict(JudgementKind kind)
{
    return kind <= JudgementKind::Suspicious;
}

JudgementKind judgementOf(const Outcome &outcome)
{
    switch (outcome.trouble) {
    case Trouble::JobFailed:
        return judgementOfJob(outcome.job);
    case Trouble::Stopped:
        return JudgementKind::Stopped;
    case Trouble::ReadsDiffer:
    case Trouble::SaveIsBlank:
    case Trouble::SaveIsLarger:
    case Trouble::ChipIsUnclear:
    case Trouble::NoFolder:
        return JudgementKind::Refused;
    case Trouble::None:
    case Trouble::NoFile:
    case Trouble::NotReadBack:
    case Trouble::Mismatch:
        break;
    }
    return JudgementKind::Failed;
}

const char *wordOf(JudgementKind kind)
{
    constexpr std::array<const char *, 10> kWords = {
        "verified", "consistent", "unverified", "unstable", "suspicious",
        "written",  "incomplete", "failed",     "refused",  "stopped"};
    return kWords[static_cast<std::size_t>(kind)];
}
