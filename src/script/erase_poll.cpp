#include "script/erase_poll.h"

#include "device/device_commands.h"
#include "device/device_link.h"
#include "device/device_ops.h"
#include "script/job.h"

#include <QThread>

#include <algorithm>

namespace
{

constexpr unsigned long kPollIntervalMs = 1000;
constexpr std::uint8_t kErased = 0xFF;
constexpr int kMostFailures = 2; // in a row

constexpr int kMebibyte = 1024 * 1024;
constexpr int kLargestChip = 8 * kMebibyte;
constexpr int kSaveChip = 128 * 1024;
constexpr int kSecondsForAny = 300;
constexpr int kSecondsPerMebibyte = 128;

void sleepBetweenLooks(unsigned long timeMs)
{
    QThread::msleep(timeMs);
}

PollWaiter pollWaiter = sleepBetweenLooks;

// `look` reads the first byte of the chip. A look that failed has seen nothing: the reply to an
// older command may have shown itself.
template <typename Look> EraseWait pollUntilErased(JobListener &listener, int chipSize, Look look)
{
    const int longest = longestEraseSeconds(chipSize);
    int failures = 0;
    for (int seconds = 1;; ++seconds) {
        pollWaiter(kPollIntervalMs);
        const std::uint32_t errorsBefore = driveErrorCount();
        const std::uint8_t byte = look();
        failures = driveErrorCount() == errorsBefore ? 0 : failures + 1;
        if (byte == kErased && failures == 0)
            return {EraseEnd::Erased, longest};
        if (listener.isStopWanted())
            return {EraseEnd::Cancelled, longest};
        if (failures >= kMostFailures)
            return {EraseEnd::NoAnswer, longest};
        if (seconds >= longest)
            return {EraseEnd::TooLong, longest};
        listener.onEraseWait(seconds, longest);
    }
}

} // namespace

void setPollWaiter(PollWaiter waiter)
{
    pollWaiter = waiter == nullptr ? sleepBetweenLooks : waiter;
}

int longestEraseSeconds(int chipSize)
{
    return kSecondsForAny + static_cast<int>(qint64{kSecondsPerMebibyte} * chipSize / kMebibyte);
}

EraseWait waitForGbErase(JobListener &listener, const CartridgeJob &job)
{
    const int size = job.chipSize > 0 ? std::max(job.chipSize, job.romSize) : kLargestChip;
    return pollUntilErased(listener, size, [] {
        std::uint8_t byte = 0;
        deviceOps.gbRead(0, &byte, sizeof(byte));
        return byte;
    });
}

EraseWait waitForGbaSaveErase(JobListener &listener)
{
    return pollUntilErased(listener, kSaveChip, [] {
        std::uint8_t bytes[10] = {};
        gbaSramRead(0, bytes, sizeof(bytes));
        return bytes[0];
    });
}
