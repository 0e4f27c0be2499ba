#include "trust/words.h"

#include "trust/judgement_words.h"
#include "worker/job_words.h"

#include <QCoreApplication>

#include <array>

namespace
{

struct Words {
    Q_DECLARE_TR_FUNCTIONS(Words)
};

} // namespace

QString stateText(CartridgeState state)
{
    switch (state) {
    case CartridgeState::Untouched:
        return Words::tr("The cartridge was not touched.");
    case CartridgeState::LookedAt:
        return Words::tr("The cartridge was only looked at.");
    case CartridgeState::OnlyRead:
        return Words::tr("The cartridge was only read.");
    case CartridgeState::Switched:
        return Words::tr("The cartridge was read, which also writes to its bus.");
    case CartridgeState::NotRead:
        return Words::tr("Nothing was read.");
    case CartridgeState::NotWritten:
        return Words::tr("Nothing was written; the cartridge is as it was.");
    case CartridgeState::NotBegun:
        return Words::tr("The write was not begun; the cartridge was read, which also writes "
                         "to its bus.");
    case CartridgeState::PartlyWritten:
        return Words::tr("The cartridge may be partly written.");
    case CartridgeState::PartlyErased:
        return Words::tr("What the chip held may be lost.");
    case CartridgeState::Written:
        return Words::tr("The cartridge was written.");
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
        return Words::tr("there are no bytes");
    case ReasonKind::AllBytesEqual:
        return Words::tr("all bytes are equal: an empty slot or no contact");
    case ReasonKind::NoLogo:
        return Words::tr("there is no boot logo in the header");
    case ReasonKind::HeaderChecksumWrong:
        return Words::tr("the header's checksum is wrong");
    case ReasonKind::GlobalChecksumWrong:
        return Words::tr("the checksum over the whole ROM is wrong");
    case ReasonKind::Mirrored:
        return Words::tr("everything from byte %1 repeats what is before").arg(reason.number);
    case ReasonKind::OpenBus:
        return Words::tr("from byte %1 no memory answers").arg(reason.number);
    case ReasonKind::OtherSize:
        return Words::tr("the header speaks of %1 bytes, these are %2")
            .arg(reason.number)
            .arg(reason.otherNumber);
    case ReasonKind::NotKnown:
        return Words::tr("not a known dump");
    case ReasonKind::NoChecksum:
        return Words::tr("such a ROM has no checksum over all of its bytes");
    case ReasonKind::NeverSeenRead:
        return Words::tr("nobody saw it read twice");
    case ReasonKind::ReadOnce:
        return Words::tr("read only once");
    case ReasonKind::ReadsDiffer:
        return Words::tr("reads differ in %1").arg(reason.blocks);
    case ReasonKind::ChecksumsRight:
        return Words::tr("logo, header checksum and checksum over the whole ROM are right");
    case ReasonKind::OrderNotSeen:
        return Words::tr("the checksum is a sum and does not see swapped banks");
    case ReasonKind::EqualReads:
        return Words::tr("%1 equal reads").arg(reason.number);
    case ReasonKind::SaveIsBlank:
        return Words::tr("all bytes are equal: an empty save, no contact, or the wrong kind "
                         "of save memory");
    case ReasonKind::SaveRepeats:
        return Words::tr("everything from byte %1 repeats what is before: two copies, or a "
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

QString groundsOf(const Verdict &verdict)
{
    if (verdict.kind == VerdictKind::Verified)
        return Words::tr("%1 (%2)").arg(verdict.title, verdict.source);
    const QStringList reasons = reasonTexts(verdict);
    QString text = reasons.value(0);
    for (const QString &reason : reasons.mid(1))
        text = Words::tr("%1; %2").arg(text, reason);
    return text;
}

QString summaryOf(const Verdict &verdict)
{
    return judgedText(judgementOf(verdict.kind), groundsOf(verdict));
}

QString withStop(const QString &text)
{
    const bool hasStop = text.endsWith(QLatin1Char('.')) || text.endsWith(QChar(0x3002));
    return hasStop ? text : Words::tr("%1.").arg(text);
}

QString sentences(const QString &first, const QString &second)
{
    return Words::tr("%1 %2").arg(first, second);
}

QString jobFailureText(JobEnd end, const QString &scriptPath)
{
    switch (end) {
    case JobEnd::NoReader:
        return Words::tr("No reader was found.");
    case JobEnd::NoMode:
        return Words::tr("The reader does not answer.");
    case JobEnd::ReaderInUse:
        return Words::tr("Another program uses the reader.");
    case JobEnd::NotTheReader:
        return Words::tr("The drive that was taken for the reader is none.");
    case JobEnd::NoMemory:
        return Words::tr("There is not enough memory.");
    case JobEnd::NoScript:
        return Words::tr("There is no mapper script \"%1\". Install the mapper folder beside "
                         "the program.")
            .arg(scriptPath);
    case JobEnd::InputNotOpened:
        return Words::tr("The file cannot be opened.");
    case JobEnd::InputNotRead:
        return Words::tr("The file is too short.");
    case JobEnd::Refused:
        return QString();
    case JobEnd::Cancelled:
        return Words::tr("Stopped while the chip was being erased.");
    case JobEnd::EraseFailed:
        return Words::tr("The chip was not seen to be erased.");
    case JobEnd::ScriptError:
        return Words::tr("The mapper script is wrong; mend it, or install the program anew.");
    case JobEnd::ScriptStopped:
        return Words::tr("Stopped, because the mapper script did nothing.");
    case JobEnd::Left:
        return Words::tr("Stopped before everything was read.");
    case JobEnd::Done:
    case JobEnd::ScriptFailed:
    case JobEnd::OutputNotWritten:
        break;
    }
    return Words::tr("The transfer failed.");
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
        lines << Words::tr("Only %1 of %2 bytes were transferred.")
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
        text =
            Words::tr("Cannot write %1: fewer bytes were written than there are").arg(trouble.path);
    return withStop(text);
}

} // namespace

QString fileTroubleText(const FileTrouble &trouble)
{
    const QString path = trouble.path;
    switch (trouble.fault) {
    case FileFault::None:
        break;
    case FileFault::NameNotRepresentable:
        return Words::tr("Cannot write %1: the system cannot hold this name in its 8-bit "
                         "encoding.")
            .arg(path);
    case FileFault::IsFolder:
        return Words::tr("Cannot write %1: it is a folder.").arg(path);
    case FileFault::NoFolder:
        return Words::tr("Cannot write %1: the folder does not exist.").arg(path);
    case FileFault::Exists:
        return Words::tr("Cannot write %1: it exists already.").arg(path);
    case FileFault::NotMade:
    case FileFault::NotRenamed:
    case FileFault::NotWritten:
        return sentence(trouble);
    case FileFault::NotHeld:
        return Words::tr("%1 does not hold what was written to it; the disk is not to be "
                         "trusted.")
            .arg(path);
    case FileFault::ReadsFolder:
        return Words::tr("Cannot read %1: it is a folder.").arg(path);
    case FileFault::ReadsNoFile:
        return Words::tr("Cannot read %1: it is no ordinary file.").arg(path);
    case FileFault::TooLarge:
        return Words::tr("Cannot read %1: it is too large for a cartridge.").arg(path);
    case FileFault::NotRead:
        return Words::tr("Cannot read %1: %2.").arg(path, trouble.systemText);
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
                   ? Words::tr("Asked to stop before the write.")
                   : Words::tr("Asked to stop before two reads were compared.");
    case Trouble::ReadsDiffer:
        return Words::tr("Two reads of the cartridge differ (%1), so there can be no backup "
                         "of it. Clean the contacts, push the cartridge in again.")
            .arg(outcome.detail);
    case Trouble::SaveIsBlank:
        return Words::tr("All bytes of the save are equal. So reads an empty save, but also a "
                         "wrong type or size of save memory and a bad contact, and then the "
                         "write would destroy a save of which there is no backup.");
    case Trouble::SaveIsLarger:
        return Words::tr("The save chip holds 128 KiB, and the write would erase all of it.");
    case Trouble::ChipIsUnclear:
        return Words::tr("The flash chip says something else when it is asked again. Clean "
                         "the contacts, push the cartridge in again.");
    case Trouble::NoFolder:
        return Words::tr("Cannot make the folder %1 for the backup.").arg(outcome.detail);
    case Trouble::NoFile:
        return fileTroubleText(outcome.file);
    case Trouble::NotReadBack:
        return Words::tr("It was written, but it could not be read back, so nobody knows "
                         "whether it is right.");
    case Trouble::Mismatch:
        return Words::tr("The cartridge does not hold what was written.");
    }
    return QString();
}

QString mismatchText(const WriteMismatch &mismatch)
{
    QString text = Words::tr("The cartridge does not hold what was written: %1 differ (%2).")
                       .arg(describeBytes(mismatch.bytes, mismatch.size), mismatch.blocks);
    for (const WriteMismatch::Place &place : mismatch.first)
        text +=
            QStringLiteral("\n  ") + Words::tr("0x%1: %2 instead of %3")
                                         .arg(QString::asprintf("%04x", unsigned(place.offset)),
                                              QString::asprintf("%02X", unsigned{place.found}),
                                              QString::asprintf("%02X", unsigned{place.wanted}));
    return text;
}
