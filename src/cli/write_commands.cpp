// The commands that write into a cartridge: write-ram, flash. What is in it is kept first, and what
// was written is read back.
#include "cli/commands.h"

#include "cart/setting_tables.h"
#include "cli/cartridge_look.h"
#include "cli/cli_listener.h"
#include "cli/shell_word.h"
#include "cli/telling.h"
#include "device/device_link.h"
#include "trust/checked_write.h"
#include "trust/flash_check.h"
#include "trust/judgement_words.h"
#include "trust/kept_backup.h"
#include "trust/pending_file.h"
#include "trust/save_check.h"
#include "trust/words.h"

namespace
{

// As an option's value; empty for a GBA job.
QString mapperLabel(const CartridgeJob &job)
{
    const std::optional<int> mapper = mapperOf(job);
    return mapper ? labelOf(kMappers, *mapper) : QString();
}

QString optionsOf(const CartridgeJob &job)
{
    if (isGbaJob(job.operate))
        return QStringLiteral("--system gba --save-type %1 --ram-size %2 --ignore-blank")
            .arg(labelOf(kGbaSaveTypes, job.saveType))
            .arg(job.ramSize);
    const QString mapper = QStringLiteral("--system gb --mapper ") + mapperLabel(job);
    return isFlashJob(job.operate)
               ? mapper + QStringLiteral(" --no-backup")
               : mapper + QStringLiteral(" --ram-size %1 --ignore-blank").arg(job.ramSize);
}

// What the user can do with the backup. All is said, because the header may be gone or another's,
// and what is in the cartridge now is not worth a backup.
QString wayBack(const CartridgeJob &job, const KeptBackup &backup)
{
    if (backup.path.isEmpty())
        return QStringLiteral("There is no backup.");
    return QStringLiteral("What the cartridge held before is in\n  %1\nTo put it back:\n  "
                          "gbdriver-cli %2 %3 --no-auto %4")
        .arg(backup.path,
             isFlashJob(job.operate) ? QLatin1String("flash") : QLatin1String("write-ram"),
             shellWord(backup.path), optionsOf(job));
}

void tellWritten(int size, const KeptBackup &backup, Reporter &reporter)
{
    reporter.event("verdict", {{QStringLiteral("verdict"), QStringLiteral("written")},
                               {QStringLiteral("size"), size},
                               {QStringLiteral("backup"), backup.path}});
    reporter.answer(QStringLiteral("written: %1 bytes, read back and equal").arg(size));
    if (!backup.path.isEmpty())
        reporter.answer(QStringLiteral("backup: ") + backup.path);
}

void tellFailedWrite(const CheckedWrite &write, const CartridgeJob &job, const KeptBackup &backup,
                     Reporter &reporter)
{
    switch (write.outcome.trouble) {
    case Trouble::JobFailed:
        tellTrouble(write.outcome, reporter);
        // After a refusal, which comes before the first byte, the backup was for nothing.
        if (!isUnwritten(write.outcome.state))
            reporter.problem(QStringLiteral("The write did not come to its end. ") +
                             wayBack(job, backup));
        break;
    case Trouble::NotReadBack:
        reporter.problem(
            judgedText(JudgementKind::Failed,
                       whyText(write.outcome) + QLatin1Char('\n') + wayBack(job, backup)));
        break;
    case Trouble::Mismatch:
        reporter.problem(
            judgedText(JudgementKind::Failed,
                       mismatchText(write.mismatch) + QLatin1Char('\n') + wayBack(job, backup)));
        break;
    default:
        tellTrouble(write.outcome, reporter);
    }
}

// Names the file when the write itself begins: until then the user may still stop.
class WriteListener : public CliListener
{
public:
    WriteListener(Reporter &reporter, const QString &path)
        : CliListener(reporter), m_fileLine(QStringLiteral("Write file :") + path),
          m_reporter(reporter)
    {
    }

    void onPhase(Phase phase, int totalBytes) override
    {
        if (phase == Phase::Write)
            m_reporter.log(m_fileLine);
        CliListener::onPhase(phase, totalBytes);
    }

private:
    const QString m_fileLine;
    Reporter &m_reporter;
};

// Writes the content, which came from the user's file, and tells how that went.
ExitCode writeContent(const CartridgeJob &writeJob, const CartridgeJob &readJob,
                      const QString &path, const QByteArray &content, const KeptBackup &backup,
                      Reporter &reporter)
{
    WriteListener listener(reporter, path);
    const CheckedWrite write =
        writeAndCheck(writeJob, readJob, content, backup.outcome.state, listener);
    if (write.outcome.isDone())
        tellWritten(content.size(), backup, reporter);
    else
        tellFailedWrite(write, writeJob, backup, reporter);
    return exitCodeOf(write.outcome);
}

ExitCode tellBackup(const KeptBackup &backup, Reporter &reporter)
{
    if (backup.isErased)
        reporter.log(QStringLiteral("The flash chip is erased: there is nothing to back up."));
    else if (!backup.path.isEmpty())
        reporter.log(QStringLiteral("Backup: ") + backup.path);
    return tellTrouble(backup.outcome, reporter);
}

// --- write-ram -----------------------------------------------------------------------------------

CartridgeState stateAfterLook(const CliOptions &options)
{
    return options.looks ? CartridgeState::LookedAt : CartridgeState::Untouched;
}

// The file, and whether it is a save of this cartridge.
ExitCode takeSaveFile(const CliOptions &options, int saveSize, Reporter &reporter,
                      QByteArray *bytes)
{
    const FileTrouble trouble = readUserFile(options.path, bytes);
    if (!trouble.isNone())
        return tellProblem(ExitCode::FileError, fileTroubleText(trouble), stateAfterLook(options),
                           reporter);
    if (bytes->size() == saveSize)
        return ExitCode::Done;
    const QString sizes =
        QStringLiteral("%1 has %2 bytes, the save of the cartridge has %3.")
            .arg(options.path, QString::number(bytes->size()), QString::number(saveSize));
    if (options.ignoresSize && !bytes->isEmpty()) {
        reporter.log(sizes + QStringLiteral(" Only what fits is written (--ignore-size)."));
        return ExitCode::Done;
    }
    return tellProblem(
        ExitCode::Refused,
        sizes + QStringLiteral(" It is not a save of this game, or --ram-size or --save-type is "
                               "wrong. --ignore-size writes what fits."),
        stateAfterLook(options), reporter);
}

// What the cartridge holds, as far as it is needed: all of it for a backup; without one the part
// that a shorter file leaves as it is.
KeptBackup backUpSave(const CliOptions &options, const CartridgeLook &look, const CartridgeJob &job,
                      int fileSize, Reporter &reporter)
{
    CliListener listener(reporter);
    const CartridgeJob readJob = saveReadingJob(job);
    if (!options.makesBackup)
        return fileSize < job.ramSize ? readTwice(readJob, listener) : KeptBackup();
    const bool acceptsBlank = options.ignoresBlank || isNamedSave(look.values, look.named);
    return keepSaveBackup({readJob, options.backupFolder, look.title, acceptsBlank, false}, job,
                          listener);
}

// --- flash ---------------------------------------------------------------------------------------

// `state`: NotBegun once the chip was asked.
ExitCode refuseFlash(FlashFault fault, int bytes, int allowedBytes, CartridgeState state,
                     Reporter &reporter)
{
    QString text = flashFaultText(fault, bytes, allowedBytes);
    if (fault == FlashFault::NoFlashChip)
        text += QStringLiteral(" If yours is wired otherwise, give --mapper.");
    else if (fault == FlashFault::BackupTooSmall)
        text += QStringLiteral(" Leave --rom-size out, see that --mapper is the board's, or give "
                               "--ignore-contradiction if you know the chip.");
    else if (fault == FlashFault::BackupRepeats)
        text += QStringLiteral(" Give the --mapper of the board, or --ignore-contradiction if you "
                               "know the chip.");
    else if (fault == FlashFault::BeyondChip)
        text += QStringLiteral(" If the chip is larger than it says, give --ignore-size.");
    return tellProblem(ExitCode::Refused, text, state, reporter);
}

// Whether this file can be flashed through this mapper.
ExitCode checkFlashFile(const QByteArray &file, const CartridgeValues &values, Reporter &reporter)
{
    const FlashFault fault = flashFileFault(file.size(), values);
    const FlashLimit *limit = flashLimitOf(values);
    switch (fault) {
    case FlashFault::None:
        return ExitCode::Done;
    case FlashFault::ShortTail:
        return refuseFlash(fault, file.size() % limit->bankBytes, kShortestFlashTail,
                           CartridgeState::NotWritten, reporter);
    default:
        return refuseFlash(fault, file.size(), limit == nullptr ? 0 : limit->writtenBytes,
                           CartridgeState::NotWritten, reporter);
    }
}

// Asks the chip, and tells what it says. The job learns the chip's width and size.
ExitCode askChip(Reporter &reporter, CartridgeJob *job, FlashChipAnswer *chip)
{
    const ProbedChip probed = probeFlashChipTwice();
    *chip = probed.chip;
    job->flashWidth = chip->isWide ? 1 : 0;
    job->chipSize = static_cast<int>(chip->sizeBytes);
    if (probed.end != ProbeEnd::Asked) {
        Outcome failed;
        failed.trouble =
            probed.end == ProbeEnd::Unclear ? Trouble::ChipIsUnclear : Trouble::JobFailed;
        failed.job.end = probed.fault;
        failed.job.driveError = QString::fromLocal8Bit(lastDriveError().c_str());
        failed.state = probed.end == ProbeEnd::NotAsked ? CartridgeState::NotWritten
                                                        : CartridgeState::NotBegun;
        return tellTrouble(failed, reporter);
    }
    reporter.log(chip->isWide ? QStringLiteral("Flash chip is 16bit width")
                              : QStringLiteral("Flash chip is 8bit width"));
    if (chip->sizeBytes != 0)
        reporter.log(QStringLiteral("Flash chip size is :%1KB").arg(chip->sizeBytes / 1024));
    else
        reporter.log(QStringLiteral("The chip does not say how large it is; what the mapper shows "
                                    "of it is kept."));
    return ExitCode::Done;
}

// The file and the user's --rom-size beside what the chip says.
ExitCode checkFlashSizes(const CliOptions &options, int fileSize, const FlashChipAnswer &chip,
                         int backupBytes, int bytesToKeep, Reporter &reporter)
{
    if (!options.ignoresSize && flashChipFault(fileSize, chip) != FlashFault::None)
        return refuseFlash(FlashFault::BeyondChip, fileSize, static_cast<int>(chip.sizeBytes),
                           CartridgeState::NotBegun, reporter);
    return !options.ignoresContradiction && options.makesBackup &&
                   flashBackupFault(backupBytes, bytesToKeep) != FlashFault::None
               ? refuseFlash(FlashFault::BackupTooSmall, backupBytes, bytesToKeep,
                             CartridgeState::NotBegun, reporter)
               : ExitCode::Done;
}

// What was read of the chip beside what it says of itself.
ExitCode checkFlashBackup(const CliOptions &options, const QByteArray &backup,
                          const FlashChipAnswer &chip, Reporter &reporter)
{
    if (options.ignoresContradiction || flashContentFault(backup, chip) == FlashFault::None)
        return ExitCode::Done;
    const QByteArray content = backup.left(static_cast<int>(chip.sizeBytes));
    return refuseFlash(FlashFault::BackupRepeats, repeatedBytesOf(content), content.size(),
                       CartridgeState::NotBegun, reporter);
}

// `job` has been completed and its file checked.
ExitCode flash(const CliOptions &options, const CartridgeLook &look, CartridgeJob job,
               const QByteArray &file, Reporter &reporter)
{
    FlashChipAnswer chip;
    ExitCode code = askChip(reporter, &job, &chip);
    if (code != ExitCode::Done)
        return code;
    const FlashLimit &limit = *flashLimitOf(look.values);
    const int bytesToKeep = flashBytesToKeep(chip, limit);
    const int backupBytes = options.values.romSize.value_or(qMin(bytesToKeep, limit.readBytes));
    code = checkFlashSizes(options, file.size(), chip, backupBytes, bytesToKeep, reporter);
    if (code != ExitCode::Done)
        return code;
    KeptBackup backup;
    CliListener listener(reporter);
    if (options.makesBackup)
        backup = keepBackup({romReadingJob(job, backupBytes), options.backupFolder, look.title,
                             false, chip.sizeBytes == 0},
                            listener);
    // The question to the chip was written to the bus.
    backup.outcome.state = afterBoth(CartridgeState::Switched, backup.outcome.state);
    code = tellBackup(backup, reporter);
    if (code == ExitCode::Done)
        code = checkFlashBackup(options, backup.bytes, chip, reporter);
    if (code != ExitCode::Done)
        return code;
    reporter.log(
        QStringLiteral("The erase of a large chip takes minutes. If it does not come to an "
                       "end, there is no flash chip or it is broken: Ctrl-C ends the wait, "
                       "and what the chip held may then be lost."));
    return writeContent(job, romReadingJob(job, romSizeOf(file.size())), options.path, file, backup,
                        reporter);
}

} // namespace

ExitCode runWriteRam(const CliOptions &options, Reporter &reporter)
{
    const CartridgeLook look = lookAtCartridge(options, CartridgeTask::WriteSave, reporter);
    if (look.code != ExitCode::Done)
        return look.code;
    CartridgeJob job;
    QByteArray file;
    ExitCode code = makeLookedAtJob(options, CartridgeTask::WriteSave, look, reporter, &job);
    if (code == ExitCode::Done)
        code = takeSaveFile(options, job.ramSize, reporter, &file);
    if (code != ExitCode::Done)
        return code;
    if (isBlankSave(file))
        reporter.log(blankFileText(options.path));
    const KeptBackup backup = backUpSave(options, look, job, file.size(), reporter);
    code = tellBackup(backup, reporter);
    if (code != ExitCode::Done)
        return code;
    return writeContent(job, saveReadingJob(job), options.path,
                        newSaveContent(file, backup.bytes, job.ramSize), backup, reporter);
}

ExitCode runFlash(const CliOptions &options, Reporter &reporter)
{
    QByteArray file;
    const FileTrouble trouble = readUserFile(options.path, &file);
    if (!trouble.isNone())
        return tellProblem(ExitCode::FileError, fileTroubleText(trouble), CartridgeState::Untouched,
                           reporter);
    const CartridgeLook look = lookAtCartridge(options, CartridgeTask::Flash, reporter);
    if (look.code != ExitCode::Done)
        return look.code;
    CartridgeJob job;
    ExitCode code = makeLookedAtJob(options, CartridgeTask::Flash, look, reporter, &job);
    if (code == ExitCode::Done)
        code = checkFlashFile(file, look.values, reporter);
    return code == ExitCode::Done ? flash(options, look, job, file, reporter) : code;
}
