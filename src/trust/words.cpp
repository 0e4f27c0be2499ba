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
    case CartridgeState::Switched:
        return QStringLiteral("The cartridge was read, which also writes to its bus.");
    case CartridgeState::NotRead:
        return QStringLiteral("Nothing was read.");
    case CartridgeState::NotWritten:
        return QStringLiteral("Nothing was written; the cartridge is as it was.");
    case CartridgeState::NotBegun:
        return QStringLiteral("The write was not begun; the cartridge was read, which also writes "
                              "to its bus.");
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
    case ReasonKind::OrderNotSeen:
        return QStringLiteral("the checksum is a sum and does not see swapped banks");
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

QString jobFailureText(JobEnd end, const QString &scriptPath)
{
    switch (end) {
    case JobEnd::NoReader:
        return QStringLiteral("No reader was found.");
    case JobEnd::NoMode:
        return QStringLiteral("The reader does not answer.");
    case JobEnd::ReaderInUse:
        return QStringLiteral("Another program uses the reader.");
    case JobEnd::NotTheReader:
        return QStringLiteral("The drive that was taken for the reader is none.");
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
    case JobEnd::EraseFailed:
        return QStringLiteral("The chip was not seen to be erased.");
    case JobEnd::ScriptError:
        return QStringLiteral("The mapper script is wrong; mend it, or install the program anew.");
    case JobEnd::ScriptStopped:
        return QStringLiteral("Stopped, because the mapper script did nothing.");
    case JobEnd::Left:
        return QStringLiteral("Stopped before everything was read.");
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
    const bool hasRun = result.end == JobEnd::Done || result.end == JobEnd::ScriptFailed ||
                        result.end == JobEnd::Left;
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

namespace
{

// Some systems' texts bring a full stop, a backend that lies says nothing.
QString sentence(const FileTrouble &trouble)
{
    QString text = trouble.systemText.trimmed();
    if (text.isEmpty())
        text = QStringLiteral("Cannot write %1: fewer bytes were written than there are")
                   .arg(trouble.path);
    return text.endsWith(QLatin1Char('.')) ? text : text + QLatin1Char('.');
}

} // namespace

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
    case FileFault::NoFolder:
        return QStringLiteral("Cannot write %1: the folder does not exist.").arg(path);
    case FileFault::Exists:
        return QStringLiteral("Cannot write %1: it exists already.").arg(path);
    case FileFault::NotMade:
    case FileFault::NotRenamed:
    case FileFault::NotWritten:
        return sentence(trouble);
    case FileFault::NotHeld:
        return QStringLiteral("%1 does not hold what was written to it; the disk is not to be "
                              "trusted.")
            .arg(path);
    case FileFault::ReadsFolder:
        return QStringLiteral("Cannot read %1: it is a folder.").arg(path);
    case FileFault::ReadsNoFile:
        return QStringLiteral("Cannot read %1: it is no ordinary file.").arg(path);
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
        return isUnwritten(outcome.state)
                   ? QStringLiteral("Asked to stop before the write.")
                   : QStringLiteral("Asked to stop before two reads were compared.");
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
