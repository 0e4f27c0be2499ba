#include "cli/cli_flash.h"

#include "device/device_link.h"
#include "device/device_ops.h"
#include "worker/flash_chip_probe.h"

#include <QFileInfo>

bool probeForFlashJob(CliJob *job, const std::function<void(const QString &)> &line)
{
    const ReaderSession session;
    if (findDevice(0, nullptr) == 0 || selectGbMode() == 0)
        return true;
    const FlashChip chip = probeFlashChip();
    job->flashWidth = chip.isWide ? 1 : 0;
    line(chip.isWide ? QStringLiteral("Flash chip is 16bit width")
                     : QStringLiteral("Flash chip is 8bit width"));
    if (chip.sizeBytes != 0)
        line(QStringLiteral("Flash chip size is :%1KB").arg(chip.sizeBytes / 1024));
    const qint64 fileSize = QFileInfo(job->fileName).size();
    if (chip.sizeBytes == 0 || fileSize <= chip.sizeBytes)
        return true;
    line(QStringLiteral(
             "The file has %1 bytes, more than the chip. Choose another file. Nothing was "
             "erased or written.")
             .arg(fileSize));
    return false;
}
