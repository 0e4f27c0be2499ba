#include "trust/outcome.h"

CartridgeState stateAfter(const CartridgeJob &job, const JobResult &result)
{
    switch (result.end) {
    case JobEnd::NoReader:
    case JobEnd::NoMode:
    case JobEnd::NoMemory:
    case JobEnd::NoScript:
    case JobEnd::InputNotOpened:
    case JobEnd::InputNotRead:
    case JobEnd::Refused:
        return CartridgeState::Untouched;
    case JobEnd::Cancelled:
        return CartridgeState::PartlyErased;
    case JobEnd::Done:
    case JobEnd::ScriptFailed:
    case JobEnd::OutputNotWritten:
        break;
    }
    if (!result.hasTouchedCartridge)
        return CartridgeState::Untouched;
    if (!isWriteJob(job.operate))
        return CartridgeState::OnlyRead;
    return result.isWhole() ? CartridgeState::Written : CartridgeState::PartlyWritten;
}
