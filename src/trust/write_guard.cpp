#include "trust/write_guard.h"

#include "cart/setting_tables.h"
#include "device/device_link.h"
#include "trust/pending_file.h"
#include "trust/save_check.h"

namespace
{

WriteGuard refuse(GuardFault fault)
{
    WriteGuard guard;
    guard.fault = fault;
    guard.outcome.state = CartridgeState::NotWritten;
    return guard;
}

WriteGuard refuse(const Outcome &outcome)
{
    WriteGuard guard = refuse(GuardFault::Trouble);
    guard.outcome = outcome;
    guard.outcome.state = unwritten(outcome.state);
    return guard;
}

WriteGuard refuseFlash(FlashFault fault, int bytes, int allowedBytes)
{
    WriteGuard guard = refuse(GuardFault::Flash);
    guard.flash = fault;
    guard.bytes = bytes;
    guard.allowedBytes = allowedBytes;
    return guard;
}

Outcome jobFailure(JobEnd end)
{
    Outcome outcome;
    outcome.trouble = Trouble::JobFailed;
    outcome.phase = Phase::Backup;
    outcome.job.end = end;
    outcome.job.driveError = QString::fromLocal8Bit(lastDriveError().c_str());
    return outcome;
}

CartridgeValues valuesOf(const CartridgeJob &job)
{
    CartridgeValues values;
    values.system = isGbaJob(job.operate) ? kSystemGba : kSystemGb;
    values.ramSize = job.ramSize;
    if (values.system == kSystemGba)
        values.saveType = job.saveType;
    else
        values.mapper = mapperOf(job);
    return values;
}

WriteGuard refuse(Contradiction contradiction)
{
    WriteGuard guard = refuse(GuardFault::Contradiction);
    guard.contradiction = contradiction;
    return guard;
}

// A GB save of another size is read with the same commands, so its backup is a true one.
bool mayPass(Contradiction contradiction, int system)
{
    return contradiction == Contradiction::None ||
           (contradiction == Contradiction::SaveSize && system == kSystemGb);
}

// Who cannot read the file says so when the job does.
bool isBlankFile(const WantedWrite &write)
{
    QByteArray file;
    return readUserFile(write.file, &file).isNone() && isBlankSave(file.left(write.job.ramSize));
}

WriteGuard kept(const KeptBackup &backup)
{
    WriteGuard guard = backup.outcome.isDone() ? WriteGuard() : refuse(backup.outcome);
    guard.backup = backup;
    return guard;
}

WriteGuard guardSave(const WantedWrite &write, const CartridgeReport &report,
                     TrustListener &listener)
{
    const CartridgeValues said = valuesOf(write.job);
    const CartridgeValues named = valuesNamed(report);
    const Contradiction contradiction = contradictionOf(CartridgeTask::WriteSave, said, named);
    if (!mayPass(contradiction, *said.system))
        return refuse(contradiction);
    WriteGuard guard = kept(keepSaveBackup(
        {saveReadingJob(write.job), write.folder, titleOf(report), isNamedSave(said, named), false},
        write.job, listener));
    guard.isFileBlank = guard.fault == GuardFault::None && isBlankFile(write);
    return guard;
}

// What the mapper and the chip allow.
WriteGuard checkFlash(const WantedWrite &write, int fileBytes, const FlashLimit *limit,
                      const ProbedChip &probed)
{
    const int mostBytes = limit == nullptr ? 0 : limit->writtenBytes;
    const FlashFault fileFault = flashFileFault(fileBytes, valuesOf(write.job));
    if (fileFault == FlashFault::ShortTail)
        return refuseFlash(fileFault, fileBytes % limit->bankBytes, kShortestFlashTail);
    if (fileFault != FlashFault::None)
        return refuseFlash(fileFault, fileBytes, mostBytes);
    if (probed.end == ProbeEnd::NotAsked)
        return refuse(jobFailure(probed.fault));
    Outcome unclear;
    unclear.trouble = Trouble::ChipIsUnclear;
    if (probed.end == ProbeEnd::Unclear || probed.chip.isWide != (write.job.flashWidth == 1))
        return refuse(unclear);
    if (flashChipFault(fileBytes, probed.chip) != FlashFault::None)
        return refuseFlash(FlashFault::BeyondChip, fileBytes,
                           static_cast<int>(probed.chip.sizeBytes));
    const int bytesToKeep = flashBytesToKeep(probed.chip, *limit);
    if (flashBackupFault(limit->readBytes, bytesToKeep) != FlashFault::None)
        return refuseFlash(FlashFault::BackupTooSmall, limit->readBytes, bytesToKeep);
    return {};
}

WriteGuard guardProbedFlash(const WantedWrite &write, const CartridgeReport &report,
                            const ProbedChip &probed, TrustListener &listener)
{
    Outcome unread;
    QByteArray file;
    unread.file = readUserFile(write.file, &file);
    if (!unread.file.isNone()) {
        unread.trouble = Trouble::NoFile;
        return refuse(unread);
    }
    const FlashLimit *limit = flashLimitOf(valuesOf(write.job));
    const WriteGuard checked = checkFlash(write, file.size(), limit, probed);
    if (checked.fault != GuardFault::None)
        return checked;
    const bool isSized = probed.chip.sizeBytes != 0;
    const KeptBackup backup =
        keepBackup({romReadingJob(write.job, flashBytesToKeep(probed.chip, *limit)), write.folder,
                    titleOf(report), false, !isSized},
                   listener);
    // So reads an erased chip that cannot be asked, but also an empty slot, where a write moves
    // every byte into the air and ends well.
    if (backup.outcome.isDone() && backup.isErased && !isSized && !write.isReadBack)
        return refuse(GuardFault::NoChip);
    WriteGuard guard = kept(backup);
    guard.keepsWhatIsShown = !isSized;
    if (backup.outcome.isDone() &&
        flashContentFault(backup.bytes, probed.chip) != FlashFault::None) {
        guard = refuseFlash(FlashFault::BackupRepeats, repeatedBytesOf(backup.bytes),
                            backup.bytes.size());
        guard.backup = backup;
    }
    return guard;
}

// The question to the chip is written to the bus.
WriteGuard guardFlash(const WantedWrite &write, const CartridgeReport &report,
                      TrustListener &listener)
{
    const ProbedChip probed = probeFlashChipTwice();
    WriteGuard guard = guardProbedFlash(write, report, probed, listener);
    if (probed.end != ProbeEnd::NotAsked) {
        guard.outcome.state = afterBoth(CartridgeState::Switched, guard.outcome.state);
        guard.backup.outcome.state =
            afterBoth(CartridgeState::Switched, guard.backup.outcome.state);
    }
    return guard;
}

// Whether there is a reader, and no cartridge of another system.
WriteGuard lookBefore(const CartridgeJob &job, CartridgeReport *report)
{
    *report = detectCartridge([](const QString &) {});
    const JobEnd fault = readerFaultOf(*report);
    if (fault != JobEnd::Done)
        return refuse(jobFailure(fault));
    const std::optional<int> system = valuesFound(*report).system;
    return system && system != valuesOf(job).system ? refuse(GuardFault::OtherSystem)
                                                    : WriteGuard();
}

} // namespace

WriteGuard guardWrite(const WantedWrite &write, TrustListener &listener)
{
    const bool isGba = isGbaJob(write.job.operate);
    if (isGba && isFlashJob(write.job.operate))
        return {};
    CartridgeReport report;
    WriteGuard guard = lookBefore(write.job, &report);
    if (guard.fault != GuardFault::None)
        return guard;
    guard.danger = dangerOf(report, CartridgeTask::WriteSave);
    if (movesSave(write.job.operate) && guard.danger != Danger::None) {
        guard.fault = GuardFault::Danger;
        guard.outcome.state = CartridgeState::NotWritten;
        return guard;
    }
    return movesSave(write.job.operate) ? guardSave(write, report, listener)
                                        : guardFlash(write, report, listener);
}

WriteGuard guardRead(const CartridgeJob &job)
{
    if (!writesWhereSavesAre(job))
        return {};
    CartridgeReport report;
    WriteGuard guard = lookBefore(job, &report);
    const CartridgeTask task =
        movesSave(job.operate) ? CartridgeTask::ReadSave : CartridgeTask::Dump;
    const Contradiction contradiction = contradictionOf(task, valuesOf(job), valuesNamed(report));
    if (guard.fault == GuardFault::None && contradiction != Contradiction::None)
        guard = refuse(contradiction);
    guard.outcome.state = CartridgeState::NotRead;
    return guard;
}
