#include "cli/interrupt.h"

#include <atomic>
#include <csignal>
#include <utility>

namespace
{

constexpr unsigned long kPollMs = 50;

// Lock-free, so that a signal handler may write it and any thread read it.
std::atomic<int> interrupted{0};
static_assert(std::atomic<int>::is_always_lock_free);

extern "C" void onInterrupt(int signal)
{
    interrupted = 1;
    std::signal(signal, SIG_DFL);
}

} // namespace

void watchForInterrupt()
{
    interrupted = 0;
    for (const int signal : stopSignals())
        std::signal(signal, onInterrupt);
    for (const int signal : ignoredSignals())
        std::signal(signal, SIG_IGN);
}

bool wasInterrupted()
{
    return interrupted != 0;
}

InterruptWatch::InterruptWatch(std::function<void()> tell) : m_tell(std::move(tell))
{
    start();
}

InterruptWatch::~InterruptWatch()
{
    {
        const QMutexLocker lock(&m_mutex);
        m_isEnded = true;
    }
    m_end.wakeAll();
    wait();
}

void InterruptWatch::run()
{
    QMutexLocker lock(&m_mutex);
    while (!m_isEnded && !wasInterrupted())
        m_end.wait(&m_mutex, kPollMs);
    const bool isTold = !m_isEnded;
    lock.unlock();
    if (isTold)
        m_tell();
}
