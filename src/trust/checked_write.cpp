#include "trust/checked_write.h"

namespace
{

constexpr int kMostListed = 8;

QVector<WriteMismatch::Place> firstPlaces(const QByteArray &wanted, const QByteArray &found)
{
    QVector<WriteMismatch::Place> places;
    for (int at = 0; at < wanted.size() && places.size() < kMostListed; ++at) {
        if (wanted[at] != found[at])
            places << WriteMismatch::Place{at, static_cast<std::uint8_t>(found[at]),
                                           static_cast<std::uint8_t>(wanted[at])};
    }
    return places;
}

WriteMismatch mismatchOf(const QByteArray &wanted, const QByteArray &found,
                         const MemoryShape &shape)
{
    const QByteArray a = keptBits(wanted, shape);
    const QByteArray b = keptBits(found, shape);
    WriteMismatch mismatch;
    mismatch.size = static_cast<std::uint32_t>(a.size());
    mismatch.bytes =
        differingBytes(reinterpret_cast<const std::uint8_t *>(a.constData()),
                       reinterpret_cast<const std::uint8_t *>(b.constData()), mismatch.size);
    mismatch.blocks = differencesOf(wanted, found, shape);
    mismatch.first = firstPlaces(a, b);
    return mismatch;
}

} // namespace

CheckedWrite checkWritten(const CartridgeJob &readJob, const QByteArray &content,
                          TrustListener &listener)
{
    CheckedWrite write;
    QByteArray found;
    write.outcome = runPhase(readJob, {}, Phase::Check, listener, &found);
    write.outcome.state = CartridgeState::Written;
    if (!write.outcome.isDone()) {
        write.outcome.trouble = Trouble::NotReadBack;
        return write;
    }
    Q_ASSERT(found.size() >= content.size());
    found.truncate(content.size());
    write.mismatch = mismatchOf(content, found, shapeOf(readJob));
    if (write.mismatch.bytes.count != 0)
        write.outcome.trouble = Trouble::Mismatch;
    return write;
}

CheckedWrite writeAndCheck(const CartridgeJob &writeJob, const CartridgeJob &readJob,
                           const QByteArray &content, CartridgeState before,
                           TrustListener &listener)
{
    CheckedWrite write;
    if (listener.isStopWanted()) {
        write.outcome.trouble = Trouble::Stopped;
        write.outcome.state = unwritten(before);
        return write;
    }
    write.outcome = runPhase(writeJob, content, Phase::Write, listener);
    if (!write.outcome.isDone()) {
        if (write.outcome.state == CartridgeState::Untouched)
            write.outcome.state = unwritten(before);
        return write;
    }
    return checkWritten(readJob, content, listener);
}
