#include "cli/repeated_read.h"

#include "cli/interrupt.h"
#include "worker/famicom_thread.h"

namespace
{

constexpr std::uint32_t kGbaSaveBlockBytes = 4 * 1024;
const QString kMbc2Script = QStringLiteral("gb_mbc2.nut");

ExitCode tellStop(Reporter &reporter)
{
    reporter.problem(
        QStringLiteral("Stopped before two reads were compared. The cartridge is as it "
                       "was; what was read is not kept."));
    return ExitCode::Cancelled;
}

} // namespace

MemoryShape shapeOf(const CliJob &job)
{
    switch (job.operate) {
    case GBA_READ_ROM:
        return {kGbaBlockBytes, "64 KiB block"};
    case GBA_READ_RAM:
        return {kGbaSaveBlockBytes, "4 KiB block"};
    case GB_READ_RAM:
        return {kGbSaveBankBytes, "bank", job.scriptName == kMbc2Script ? '\x0F' : '\xFF'};
    default:
        return {kGbRomBankBytes, "bank"};
    }
}

QByteArray keptBits(const QByteArray &bytes, const MemoryShape &shape)
{
    QByteArray kept = bytes;
    if (shape.bits != '\xFF')
        for (char &byte : kept)
            byte = static_cast<char>(byte & shape.bits);
    return kept;
}

QString differencesOf(const QByteArray &left, const QByteArray &right, const MemoryShape &shape)
{
    const QByteArray a = keptBits(left, shape);
    const QByteArray b = keptBits(right, shape);
    if (a.size() != b.size())
        return QStringLiteral("their lengths: %1 and %2 bytes").arg(a.size()).arg(b.size());
    return describeBanks(differingBanks(reinterpret_cast<const std::uint8_t *>(a.constData()),
                                        reinterpret_cast<const std::uint8_t *>(b.constData()),
                                        static_cast<std::uint32_t>(a.size()), shape.blockBytes),
                         QLatin1String(shape.block));
}

ExitCode readAgain(const CliJob &job, const QByteArray &first, int times, Reporter &reporter,
                   QString *differences, int *made)
{
    int ignored = 0;
    int &reads = made == nullptr ? ignored : *made;
    differences->clear();
    for (reads = 0; reads < times && differences->isEmpty(); ++reads) {
        if (wasInterrupted())
            return tellStop(reporter);
        QByteArray again;
        const JobResult result =
            readToMemory(job, "compare", JobLog::ToldOnFailure, reporter, &again);
        if (result.code != ExitCode::Done)
            return result.code;
        if (wasInterrupted())
            return tellStop(reporter);
        *differences = differencesOf(first, again, shapeOf(job));
    }
    return ExitCode::Done;
}
