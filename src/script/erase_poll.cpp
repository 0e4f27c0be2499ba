#include "script/erase_poll.h"

#include "device/device_commands.h"
#include "device/device_link.h"
#include "device/device_ops.h"
#include "script/job.h"

#include <QThread>

namespace
{

constexpr unsigned long kPollIntervalMs = 1000;
constexpr std::uint8_t kErased = 0xFF;

void sleepBetweenLooks(unsigned long timeMs)
{
    QThread::msleep(timeMs);
}

PollWaiter pollWaiter = sleepBetweenLooks;

// `look` reads the first byte of the chip. A look that failed has seen nothing: the reply to an
// older command may have shown itself.
template <typename Look> bool pollUntilErased(JobListener &listener, Look look)
{
    for (;;) {
        pollWaiter(kPollIntervalMs);
        const std::uint32_t errorsBefore = driveErrorCount();
        if (look() == kErased && driveErrorCount() == errorsBefore)
            return true;
        if (listener.isStopWanted())
            return false;
    }
}

} // namespace

void setPollWaiter(PollWaiter waiter)
{
    pollWaiter = waiter == nullptr ? sleepBetweenLooks : waiter;
}

bool waitForGbErase(JobListener &listener)
{
    return pollUntilErased(listener, [] {
        std::uint8_t byte = 0;
        deviceOps.gbRead(0, &byte, sizeof(byte));
        return byte;
    });
}

bool waitForGbaSaveErase(JobListener &listener)
{
    return pollUntilErased(listener, [] {
        std::uint8_t bytes[10] = {};
        gbaSramRead(0, bytes, sizeof(bytes));
        return bytes[0];
    });
}
