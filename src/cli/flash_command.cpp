#include "cli/flash_command.h"

#include "cart/setting_tables.h"
#include "cli/cartridge_look.h"
#include "cli/cli_flash.h"
#include "cli/kept_backup.h"
#include "cli/pending_file.h"
#include "cli/repeated_read.h"
#include "cli/write_check.h"
#include "worker/famicom_thread.h"

#include <QDateTime>

namespace
{

constexpr int kKibi = 1024;
constexpr int kSmallestRom = 32 * kKibi;

// The most that a mapper brings to a flash chip, as its script has it. Behind an MBC1 more would
// switch banks while it is written.
struct FlashLimit {
    int mapper; // row of kMappers
    int writtenBytes;
    int readBytes;
    int bankBytes; // what is programmed in one go
};

constexpr FlashLimit kLimits[] = {{0, 32 * kKibi, 32 * kKibi, 32 * kKibi},
                                  {1, 512 * kKibi, 2048 * kKibi, 16 * kKibi},
                                  {3, 4096 * kKibi, 4096 * kKibi, 16 * kKibi},
                                  {4, 8192 * kKibi, 8192 * kKibi, 16 * kKibi}};

// Fewer bytes than this the reader can not decipher.
constexpr int kShortestTail = 8;

const FlashLimit *limitOf(const CartridgeValues &values)
{
    for (const FlashLimit &row : kLimits) {
        if (values.system != kSystemGba && values.mapper == row.mapper)
            return &row;
    }
    return nullptr;
}

// Why the file can not be written; empty if it can. A refusal by the script would come only when
// the program already waits for an erase.
QString fileFault(const QByteArray &file, const CartridgeValues &values)
{
    if (values.system == kSystemGba)
        return QStringLiteral("The reader has no command that writes a GBA ROM.");
    const FlashLimit *limit = limitOf(values);
    if (limit == nullptr)
        return QStringLiteral("Cartridges with this mapper have no flash chip that can be written. "
                              "If yours is wired otherwise, give --mapper.");
    if (file.isEmpty())
        return QStringLiteral("The file is empty.");
    if (file.size() > limit->writtenBytes)
        return QStringLiteral("The file has %1 bytes; with this mapper a flash chip takes %2.")
            .arg(file.size())
            .arg(limit->writtenBytes);
    const int tail = file.size() % limit->bankBytes;
    if (tail > 0 && tail < kShortestTail)
        return QStringLiteral("The last bank of the file has %1 bytes; %2 are the fewest that the "
                              "reader can program. Pad the file.")
            .arg(tail)
            .arg(kShortestTail);
    return {};
}

int powerOfTwoFrom(int bytes)
{
    int size = kSmallestRom;
    while (size < bytes)
        size *= 2;
    return size;
}

CliJob readingJob(const CliJob &flashJob, int bytes)
{
    CliJob job = flashJob;
    job.operate = GB_READ_ROM;
    job.romSize = bytes;
    return job;
}

// All that the erase will destroy: the chip as it says itself, else all that the mapper reaches.
int bytesToKeep(const FlashChip &chip, const FlashLimit &limit)
{
    const bool isKnown = chip.sizeBytes != 0 && chip.sizeBytes < std::uint32_t(limit.readBytes);
    return isKnown ? int(chip.sizeBytes) : limit.readBytes;
}

// The file and the user's --rom-size beside what the chip says. Returns: why nothing is written;
// empty if all is well.
QString sizeFault(const CliOptions &options, int fileSize, const FlashChip &chip, int bytesToKeep)
{
    if (options.forces)
        return {};
    if (chip.sizeBytes != 0 && std::uint32_t(fileSize) > chip.sizeBytes)
        return QStringLiteral("The file has %1 bytes, the flash chip %2.")
            .arg(fileSize)
            .arg(chip.sizeBytes);
    if (options.makesBackup && options.values.romSize && *options.values.romSize < bytesToKeep)
        return QStringLiteral(
                   "The chip is erased as a whole, and a backup of %1 bytes may be only a "
                   "part of it: up to %2 can be in it. Leave --rom-size out, or give "
                   "--force if you know the chip.")
            .arg(*options.values.romSize)
            .arg(bytesToKeep);
    return {};
}

ExitCode refuse(const QString &fault, Reporter &reporter)
{
    reporter.problem(fault + QStringLiteral(" Nothing was written; the cartridge is as it was."));
    return ExitCode::Refused;
}

} // namespace

ExitCode runFlash(const CliOptions &options, Reporter &reporter)
{
    QByteArray file;
    QString problem;
    if (!readUserFile(options.path, &file, &problem)) {
        reporter.problem(problem + QStringLiteral(" The cartridge was not touched."));
        return ExitCode::FileError;
    }
    const CartridgeLook look = lookAtCartridge(options, reporter);
    if (look.code != ExitCode::Done)
        return look.code;
    CliJob job;
    const ExitCode code = completeLookedAtJob(options, look, options.path, reporter, &job);
    if (code != ExitCode::Done)
        return code;
    const QString fault = fileFault(file, look.values);
    if (!fault.isEmpty())
        return refuse(fault, reporter);
    const std::optional<FlashChip> asked =
        probeForFlashJob(&job, [&](const QString &line) { reporter.log(line); });
    if (!asked) {
        reporter.problem(
            QStringLiteral("The flash chip says something else when it is asked again. Clean the "
                           "contacts, push the cartridge in again. Nothing was written; the "
                           "cartridge is as it was."));
        return ExitCode::DataMismatch;
    }
    const FlashChip &chip = *asked;
    const int toKeep = bytesToKeep(chip, *limitOf(look.values));
    const QString misfit = sizeFault(options, file.size(), chip, toKeep);
    if (!misfit.isEmpty())
        return refuse(misfit, reporter);
    KeptBackup backup;
    if (options.makesBackup)
        backup = keepBackup({readingJob(job, options.values.romSize.value_or(toKeep)),
                             options.backupFolder, look.title, false, chip.sizeBytes == 0},
                            reporter);
    if (backup.code != ExitCode::Done)
        return backup.code;
    reporter.log(
        QStringLiteral("The erase of a large chip takes minutes. If it does not come to an "
                       "end, there is no flash chip or it is broken: Ctrl-C ends the wait, "
                       "and what the chip held may then be lost."));
    return writeAndCheck(job, readingJob(job, powerOfTwoFrom(file.size())), file, backup, reporter);
}
