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
int bytesToKeep(const CliOptions &options, const FlashChip &chip, const FlashLimit &limit)
{
    if (options.values.romSize)
        return *options.values.romSize;
    const bool isKnown = chip.sizeBytes != 0 && chip.sizeBytes < std::uint32_t(limit.readBytes);
    return isKnown ? int(chip.sizeBytes) : limit.readBytes;
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
    if (!fault.isEmpty()) {
        reporter.problem(fault +
                         QStringLiteral(" Nothing was written; the cartridge is as it was."));
        return ExitCode::Refused;
    }
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
    if (chip.sizeBytes != 0 && std::uint32_t(file.size()) > chip.sizeBytes && !options.forces) {
        reporter.problem(QStringLiteral("The file has %1 bytes, the flash chip %2. Nothing was "
                                        "written; the cartridge is as it was.")
                             .arg(file.size())
                             .arg(chip.sizeBytes));
        return ExitCode::Refused;
    }
    KeptBackup backup;
    if (options.makesBackup)
        backup = keepBackup(readingJob(job, bytesToKeep(options, chip, *limitOf(look.values))),
                            options.backupFolder, look.title, reporter);
    if (backup.code != ExitCode::Done)
        return backup.code;
    return writeAndCheck(job, readingJob(job, powerOfTwoFrom(file.size())), file, backup, reporter);
}
