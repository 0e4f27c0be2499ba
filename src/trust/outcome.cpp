#include "trust/outcome.h"

bool isOnlyRead(CartridgeState state)
{
    return state == CartridgeState::OnlyRead || state == CartridgeState::Switched;
}

bool isUnwritten(CartridgeState state)
{
    return state == CartridgeState::NotWritten || state == CartridgeState::NotBegun;
}

CartridgeState afterBoth(CartridgeState first, CartridgeState second)
{
    const bool isSwitched = first == CartridgeState::Switched ||
                            second == CartridgeState::Switched ||
                            second == CartridgeState::NotBegun;
    if (isUnwritten(second))
        return isSwitched ? CartridgeState::NotBegun : CartridgeState::NotWritten;
    if (isSwitched)
        return CartridgeState::Switched;
    return isOnlyRead(first) ? first : second;
}

CartridgeState unwritten(CartridgeState before)
{
    const bool isSwitched =
        before == CartridgeState::Switched || before == CartridgeState::NotBegun;
    return isSwitched ? CartridgeState::NotBegun : CartridgeState::NotWritten;
}

CartridgeState stateAfter(const CartridgeJob &job, const JobResult &result)
{
    switch (result.end) {
    case JobEnd::NoReader:
    case JobEnd::NoMode:
    case JobEnd::ReaderInUse:
    case JobEnd::NotTheReader:
    case JobEnd::NoMemory:
    case JobEnd::NoScript:
    case JobEnd::InputNotOpened:
    case JobEnd::InputNotRead:
    case JobEnd::Refused:
        return CartridgeState::Untouched;
    case JobEnd::Cancelled:
    case JobEnd::EraseFailed:
        return CartridgeState::PartlyErased;
    case JobEnd::Done:
    case JobEnd::ScriptFailed:
    case JobEnd::ScriptError:
    case JobEnd::ScriptStopped:
    case JobEnd::Left:
    case JobEnd::OutputNotWritten:
        break;
    }
    if (!result.hasTouchedCartridge)
        return CartridgeState::Untouched;
    if (!isWriteJob(job.operate))
        return result.hasWrittenToBus ? CartridgeState::Switched : CartridgeState::OnlyRead;
    return result.isWhole() ? CartridgeState::Written : CartridgeState::PartlyWritten;
}
