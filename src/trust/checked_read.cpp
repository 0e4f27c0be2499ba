#include "trust/checked_read.h"

#include "worker/job_run.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFileInfo>

namespace
{

constexpr std::uint32_t kGbaSaveBlockBytes = 4 * 1024;
const QString kMbc2Script = QStringLiteral("gb_mbc2.nut");

// The user may stop between two jobs: nothing is half done there.
bool isStopped(TrustListener &listener, Outcome *outcome)
{
    if (!listener.isStopWanted())
        return false;
    outcome->trouble = Trouble::Stopped;
    return true;
}

} // namespace

MemoryShape shapeOf(const CartridgeJob &job)
{
    const bool isMbc2 = QFileInfo(job.scriptPath).fileName() == kMbc2Script;
    switch (job.operate) {
    case GBA_READ_ROM:
        return {kGbaBlockBytes, &k64KibBlockWords};
    case GBA_READ_RAM:
        return {kGbaSaveBlockBytes, &k4KibBlockWords};
    case GB_READ_RAM:
        return {kGbSaveBankBytes, &kBankWords, isMbc2 ? '\x0F' : '\xFF'};
    default:
        return {kGbRomBankBytes, &kBankWords};
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
        return QCoreApplication::translate("Words", "their lengths: %1 and %2 bytes")
            .arg(a.size())
            .arg(b.size());
    return describeBanks(differingBanks(reinterpret_cast<const std::uint8_t *>(a.constData()),
                                        reinterpret_cast<const std::uint8_t *>(b.constData()),
                                        static_cast<std::uint32_t>(a.size()), shape.blockBytes),
                         *shape.words);
}

Outcome runPhase(const CartridgeJob &job, const QByteArray &input, Phase phase,
                 TrustListener &listener, QByteArray *read)
{
    Outcome outcome;
    outcome.phase = phase;
    listener.onPhase(phase, isFlashJob(job.operate) ? input.size() : bytesToMove(job));
    outcome.job = runJob(job, input, listener);
    listener.onPhaseEnd(outcome.job);
    outcome.state = stateAfter(job, outcome.job);
    if (outcome.job.end == JobEnd::NoScript)
        outcome.detail = job.scriptPath;
    if (!outcome.job.isWhole())
        outcome.trouble = Trouble::JobFailed;
    else if (read != nullptr)
        *read = outcome.job.bytes;
    outcome.job.bytes.clear();
    return outcome;
}

CheckedRead readOnce(const CartridgeJob &job, Phase phase, TrustListener &listener)
{
    CheckedRead read;
    read.outcome = runPhase(job, {}, phase, listener, &read.bytes);
    read.reads = 1;
    if (read.outcome.isDone())
        read.sha1 = QCryptographicHash::hash(read.bytes, QCryptographicHash::Sha1);
    return read;
}

void readAgain(const CartridgeJob &job, int times, TrustListener &listener, CheckedRead *read)
{
    for (int made = 0; made < times && read->differences.isEmpty(); ++made) {
        if (isStopped(listener, &read->outcome))
            return;
        const CartridgeState before = read->outcome.state;
        QByteArray again;
        read->outcome = runPhase(job, {}, Phase::Compare, listener, &again);
        read->outcome.state = afterBoth(before, read->outcome.state);
        if (!read->outcome.isDone() || isStopped(listener, &read->outcome))
            return;
        ++read->reads;
        read->differences = differencesOf(read->bytes, again, shapeOf(job));
    }
}
