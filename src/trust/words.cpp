#include "trust/words.h"

#include "worker/job_words.h"

#include <array>

QString stateText(CartridgeState state)
{
    switch (state) {
    case CartridgeState::Untouched:
        return QStringLiteral("The cartridge was not touched.");
    case CartridgeState::LookedAt:
        return QStringLiteral("The cartridge was only looked at.");
    case CartridgeState::OnlyRead:
        return QStringLiteral("The cartridge was only read.");
    case CartridgeState::NotRead:
        return QStringLiteral("Nothing was read.");
    case CartridgeState::NotWritten:
        return QStringLiteral("Nothing was written; the cartridge is as it was.");
    case CartridgeState::PartlyWritten:
        return QStringLiteral("The cartridge may be partly written.");
    case CartridgeState::PartlyErased:
        return QStringLiteral("What the chip held may be lost.");
    case CartridgeState::Written:
        return QStringLiteral("The cartridge was written.");
    }
    return QString();
}

const char *wordOf(Phase phase)
{
    constexpr std::array<const char *, 5> kWords = {"read", "compare", "backup", "write", "check"};
    return kWords[static_cast<std::size_t>(phase)];
}

const char *wordOf(VerdictKind kind)
{
    constexpr std::array<const char *, 5> kWords = {"verified", "consistent", "unverified",
                                                    "unstable", "suspicious"};
    return kWords[static_cast<std::size_t>(kind)];
}

QString reasonText(const Reason &reason)
{
    switch (reason.kind) {
    case ReasonKind::NoBytes:
        return QStringLiteral("there are no bytes");
    case ReasonKind::AllBytesEqual:
        return QStringLiteral("all bytes are equal: an empty slot or no contact");
    case ReasonKind::NoLogo:
        return QStringLiteral("there is no boot logo in the header");
    case ReasonKind::HeaderChecksumWrong:
        return QStringLiteral("the header's checksum is wrong");
    case ReasonKind::GlobalChecksumWrong:
        return QStringLiteral("the checksum over the whole ROM is wrong");
    case ReasonKind::Mirrored:
        return QStringLiteral("everything from byte %1 repeats what is before").arg(reason.number);
    case ReasonKind::OpenBus:
        return QStringLiteral("from byte %1 no memory answers").arg(reason.number);
    case ReasonKind::OtherSize:
        return QStringLiteral("the header speaks of %1 bytes, these are %2")
            .arg(reason.number)
            .arg(reason.otherNumber);
    case ReasonKind::NotKnown:
        return QStringLiteral("not a known dump");
    case ReasonKind::NoChecksum:
        return QStringLiteral("such a ROM has no checksum over all of its bytes");
    case ReasonKind::NeverSeenRead:
        return QStringLiteral("nobody saw it read twice");
    case ReasonKind::ReadOnce:
        return QStringLiteral("read only once");
    case ReasonKind::ReadsDiffer:
        return QStringLiteral("reads differ in ") + reason.blocks;
    case ReasonKind::ChecksumsRight:
        return QStringLiteral("logo, header checksum and checksum over the whole ROM are right");
    case ReasonKind::EqualReads:
        return QStringLiteral("%1 equal reads").arg(reason.number);
    case ReasonKind::SaveIsBlank:
        return QStringLiteral("all bytes are equal: an empty save, no contact, or the wrong kind "
                              "of save memory");
    case ReasonKind::SaveRepeats:
        return QStringLiteral("everything from byte %1 repeats what is before: two copies, or a "
                              "smaller save memory")
            .arg(reason.number);
    }
    return QString();
}

QStringList reasonTexts(const Verdict &verdict)
{
    QStringList texts;
    for (const Reason &reason : verdict.reasons)
        texts << reasonText(reason);
    return texts;
}

QString summaryOf(const Verdict &verdict)
{
    const QString reasons = verdict.kind == VerdictKind::Verified
                                ? QStringLiteral("%1 (%2)").arg(verdict.title, verdict.source)
                                : reasonTexts(verdict).join(QStringLiteral("; "));
    return QLatin1String(wordOf(verdict.kind)) + QStringLiteral(": ") + reasons;
}

QString dangerText(Danger danger)
{
    switch (danger) {
    case Danger::None:
        break;
    case Danger::Mbc6Save:
        return QStringLiteral("The save of an MBC6 cannot be read or written: no script knows this "
                              "mapper.");
    case Danger::Mbc7Save:
        return QStringLiteral("The save of an MBC7 cannot be read or written: it lies in a serial "
                              "EEPROM that moves one bit at a time, and the reader has no command "
                              "for that.");
    case Danger::Tama5Save:
        return QStringLiteral("The save of a TAMA5 cannot be read or written: it lies behind "
                              "registers, and the bytes of another save would destroy it.");
    }
    return QString();
}

QString doubtText(Doubt doubt)
{
    switch (doubt) {
    case Doubt::Tama5AsMbc5:
        return QStringLiteral("The header names the mapper TAMA5, which shows one bank again and "
                              "again to a job for MBC5");
    case Doubt::Mbc6AsMbc5:
        return QStringLiteral("The header names the mapper MBC6, which no script can read");
    case Doubt::UnknownRomSize:
        return QStringLiteral("The header has no known ROM size, so only 32 KiB are read");
    }
    return QString();
}

QString flashFaultText(FlashFault fault, int bytes, int allowedBytes)
{
    switch (fault) {
    case FlashFault::None:
        break;
    case FlashFault::GbaRom:
        return QStringLiteral("The reader has no command that writes a GBA ROM.");
    case FlashFault::NoFlashChip:
        return QStringLiteral("Cartridges with this mapper have no flash chip that can be "
                              "written.");
    case FlashFault::EmptyFile:
        return QStringLiteral("The file is empty.");
    case FlashFault::BeyondMapper:
        return QStringLiteral("The file has %1 bytes; with this mapper a flash chip takes %2.")
            .arg(bytes)
            .arg(allowedBytes);
    case FlashFault::ShortTail:
        return QStringLiteral("The last bank of the file has %1 bytes; %2 are the fewest that the "
                              "reader can program. Pad the file.")
            .arg(bytes)
            .arg(allowedBytes);
    case FlashFault::BeyondChip:
        return QStringLiteral("The file has %1 bytes, the flash chip %2.")
            .arg(bytes)
            .arg(allowedBytes);
    case FlashFault::BackupTooSmall:
        return QStringLiteral("The chip is erased as a whole, and a backup of %1 bytes may be only "
                              "a part of it: up to %2 can be in it.")
            .arg(bytes)
            .arg(allowedBytes);
    case FlashFault::BackupRepeats:
        return QStringLiteral(
                   "The chip has %2 bytes, and what is read of it repeats its first %1: so "
                   "it reads behind another mapper than the one that was chosen, and a "
                   "backup would be a part of it.")
            .arg(bytes)
            .arg(allowedBytes);
    }
    return QString();
}

QString jobFailureText(JobEnd end, const QString &scriptPath)
{
    switch (end) {
    case JobEnd::NoReader:
        return QStringLiteral("No reader was found.");
    case JobEnd::NoMode:
        return QStringLiteral("The reader does not answer.");
    case JobEnd::NoMemory:
        return QStringLiteral("There is not enough memory.");
    case JobEnd::NoScript:
        return QStringLiteral("There is no mapper script \"%1\". Install the mapper folder beside "
                              "the program.")
            .arg(scriptPath);
    case JobEnd::InputNotOpened:
        return QStringLiteral("The file cannot be opened.");
    case JobEnd::InputNotRead:
        return QStringLiteral("The file is too short.");
    case JobEnd::Refused:
        return QString();
    case JobEnd::Cancelled:
        return QStringLiteral("Stopped while the chip was being erased.");
    case JobEnd::Done:
    case JobEnd::ScriptFailed:
    case JobEnd::OutputNotWritten:
        break;
    }
    return QStringLiteral("The transfer failed.");
}

QStringList failureLines(const JobResult &result)
{
    QStringList lines;
    const bool hasRun = result.end == JobEnd::Done || result.end == JobEnd::ScriptFailed;
    const bool hasReason = !result.scriptError.isEmpty() || !jobEndLine(result.end).isEmpty();
    if (!hasRun && hasReason)
        lines << reasonOf(result);
    if (result.end == JobEnd::Done && !result.failedOperation.isEmpty())
        lines << result.failedOperation; // nothing else tells of an error that the script caught
    if (!result.driveError.isEmpty())
        lines << result.driveError;
    if (hasRun && result.movedBytes != result.wantedBytes)
        lines << QStringLiteral("Only %1 of %2 bytes were transferred.")
                     .arg(result.movedBytes)
                     .arg(result.wantedBytes);
    return lines;
}

QString fileTroubleText(const FileTrouble &trouble)
{
    const QString path = trouble.path;
    switch (trouble.fault) {
    case FileFault::None:
        break;
    case FileFault::NameNotRepresentable:
        return QStringLiteral("Cannot write %1: the system cannot hold this name in its 8-bit "
                              "encoding.")
            .arg(path);
    case FileFault::IsFolder:
        return QStringLiteral("Cannot write %1: it is a folder.").arg(path);
    case FileFault::NotOrdinary:
        return QStringLiteral("Cannot write %1: it is no ordinary file.").arg(path);
    case FileFault::NoFolder:
        return QStringLiteral("Cannot write %1: the folder does not exist.").arg(path);
    case FileFault::Exists:
        return QStringLiteral("Cannot write %1: it exists already.").arg(path);
    case FileFault::NotMade:
    case FileFault::NotRenamed:
        return QStringLiteral("Cannot write %1: %2.").arg(path, trouble.systemText);
    case FileFault::NotWritten:
        return QStringLiteral("Cannot write %1: %2").arg(path, trouble.systemText);
    case FileFault::NotHeld:
        return QStringLiteral("%1 does not hold what was written to it; the disk is not to be "
                              "trusted.")
            .arg(path);
    case FileFault::ReadsNoFile:
        return QStringLiteral("Cannot read %1: it is no ordinary file.").arg(path);
    case FileFault::ReadsFolder:
        return QStringLiteral("Cannot read %1: it is a folder.").arg(path);
    case FileFault::TooLarge:
        return QStringLiteral("Cannot read %1: it is too large for a cartridge.").arg(path);
    case FileFault::NotRead:
        return QStringLiteral("Cannot read %1: %2.").arg(path, trouble.systemText);
    }
    return QString();
}

QString troubleText(const Outcome &outcome)
{
    switch (outcome.trouble) {
    case Trouble::None:
        break;
    case Trouble::JobFailed:
        return jobFailureText(outcome.job.end, outcome.detail);
    case Trouble::Stopped:
        return outcome.state == CartridgeState::NotWritten
                   ? QStringLiteral("Asked to stop before the write.")
                   : QStringLiteral(
                         "Asked to stop before two reads were compared. What was read is not "
                         "kept.");
    case Trouble::ReadsDiffer:
        return QStringLiteral("Two reads of the cartridge differ (%1), so there can be no backup "
                              "of it. Clean the contacts, push the cartridge in again.")
            .arg(outcome.detail);
    case Trouble::SaveIsBlank:
        return QStringLiteral("All bytes of the save are equal. So reads an empty save, but also a "
                              "wrong type or size of save memory and a bad contact, and then the "
                              "write would destroy a save of which there is no backup.");
    case Trouble::SaveIsLarger:
        return QStringLiteral("The save chip holds 128 KiB, and the write would erase all of it.");
    case Trouble::ChipIsUnclear:
        return QStringLiteral("The flash chip says something else when it is asked again. Clean "
                              "the contacts, push the cartridge in again.");
    case Trouble::NoFolder:
        return QStringLiteral("Cannot make the folder %1 for the backup.").arg(outcome.detail);
    case Trouble::NoFile:
        return fileTroubleText(outcome.file);
    case Trouble::NotReadBack:
        return QStringLiteral("It was written, but it could not be read back, so nobody knows "
                              "whether it is right.");
    case Trouble::Mismatch:
        return QStringLiteral("The cartridge does not hold what was written.");
    }
    return QString();
}

QString mismatchText(const WriteMismatch &mismatch)
{
    QString text = QStringLiteral("The cartridge does not hold what was written: %1 differ (%2).")
                       .arg(describeBytes(mismatch.bytes, mismatch.size), mismatch.blocks);
    for (const WriteMismatch::Place &place : mismatch.first)
        text += QStringLiteral("\n  0x%1: %2 instead of %3")
                    .arg(place.offset, 4, 16, QLatin1Char('0'))
                    .arg(QString::asprintf("%02X", unsigned{place.found}),
                         QString::asprintf("%02X", unsigned{place.wanted}));
    return text;
}
