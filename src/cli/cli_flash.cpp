#include "cli/cli_flash.h"

#include "device/device_link.h"
#include "device/device_ops.h"

std::optional<FlashChip> probeForFlashJob(CliJob *job,
                                          const std::function<void(const QString &)> &line)
{
    const ReaderSession session;
    if (findDevice(0, nullptr) == 0 || selectGbMode() == 0)
        return FlashChip{};
    const FlashChip chip = probeFlashChip();
    const FlashChip again = probeFlashChip();
    if (again.isWide != chip.isWide || again.sizeBytes != chip.sizeBytes)
        return std::nullopt;
    job->flashWidth = chip.isWide ? 1 : 0;
    line(chip.isWide ? QStringLiteral("Flash chip is 16bit width")
                     : QStringLiteral("Flash chip is 8bit width"));
    if (chip.sizeBytes != 0)
        line(QStringLiteral("Flash chip size is :%1KB").arg(chip.sizeBytes / 1024));
    return chip;
}
