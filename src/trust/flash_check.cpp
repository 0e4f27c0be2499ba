#include "trust/flash_check.h"

#include "cart/dump_checks.h"
#include "cart/setting_tables.h"
#include "device/device_link.h"
#include "device/device_ops.h"
#include "worker/job_run.h"

namespace
{

constexpr int kKibi = 1024;
constexpr int kSmallestRom = 32 * kKibi;

constexpr FlashLimit kLimits[] = {{0, 32 * kKibi, 32 * kKibi, 32 * kKibi},
                                  {1, 512 * kKibi, 2048 * kKibi, 16 * kKibi},
                                  {3, 4096 * kKibi, 4096 * kKibi, 16 * kKibi},
                                  {4, 8192 * kKibi, 8192 * kKibi, 16 * kKibi}};

} // namespace

const FlashLimit *flashLimitOf(const CartridgeValues &values)
{
    for (const FlashLimit &row : kLimits) {
        if (values.system != kSystemGba && values.mapper == row.mapper)
            return &row;
    }
    return nullptr;
}

FlashFault flashFileFault(int fileBytes, const CartridgeValues &values)
{
    if (values.system == kSystemGba)
        return FlashFault::GbaRom;
    const FlashLimit *limit = flashLimitOf(values);
    if (limit == nullptr)
        return FlashFault::NoFlashChip;
    if (fileBytes == 0)
        return FlashFault::EmptyFile;
    if (fileBytes > limit->writtenBytes)
        return FlashFault::BeyondMapper;
    const int tail = fileBytes % limit->bankBytes;
    return tail > 0 && tail < kShortestFlashTail ? FlashFault::ShortTail : FlashFault::None;
}

FlashFault flashChipFault(int fileSize, const FlashChipAnswer &chip)
{
    const bool isBeyond =
        chip.sizeBytes != 0 && static_cast<std::uint32_t>(fileSize) > chip.sizeBytes;
    return isBeyond ? FlashFault::BeyondChip : FlashFault::None;
}

FlashFault flashBackupFault(int backupBytes, int bytesToKeep)
{
    return backupBytes < bytesToKeep ? FlashFault::BackupTooSmall : FlashFault::None;
}

int repeatedBytesOf(const QByteArray &bytes)
{
    return static_cast<int>(
        repeatedContentSize(reinterpret_cast<const std::uint8_t *>(bytes.constData()),
                            static_cast<std::uint32_t>(bytes.size())));
}

FlashFault flashContentFault(const QByteArray &backup, const FlashChipAnswer &chip)
{
    const bool isSized = chip.sizeBytes != 0;
    // Whoever reads more of it than there is sees all of it again.
    const QByteArray content = backup.left(static_cast<int>(chip.sizeBytes));
    const bool isErased = content.count('\xFF') == content.size();
    return isSized && !isErased && repeatedBytesOf(content) < content.size()
               ? FlashFault::BackupRepeats
               : FlashFault::None;
}

int flashBytesToKeep(const FlashChipAnswer &chip, const FlashLimit &limit)
{
    return chip.sizeBytes != 0 ? static_cast<int>(chip.sizeBytes) : limit.readBytes;
}

int romSizeOf(int fileBytes)
{
    int size = kSmallestRom;
    while (size < fileBytes)
        size *= 2;
    return size;
}

ProbedChip probeFlashChipTwice()
{
    const ReaderSession session;
    if (findDevice(0, nullptr) == 0)
        return {ProbeEnd::NotAsked, JobEnd::NoReader, {}};
    if (selectGbMode() == 0)
        return {ProbeEnd::NotAsked, modeFault(), {}};
    const FlashChipAnswer chip = probeFlashChip();
    const FlashChipAnswer again = probeFlashChip();
    // Had the last command of the query been lost, both reads for the backup would show the query
    // table: a script for a cartridge without a mapper writes nothing before it reads.
    endFlashQuery();
    if (again.isWide != chip.isWide || again.sizeBytes != chip.sizeBytes)
        return {ProbeEnd::Unclear, JobEnd::Done, {}};
    return {ProbeEnd::Asked, JobEnd::Done, chip};
}
