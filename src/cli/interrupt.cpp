#include "cli/interrupt.h"

#include <atomic>
#include <csignal>
#include <utility>

namespace
{

constexpr unsigned long kPollMs = 50;

// Lock-free, so that a signal handler may write them and any thread read them.
std::atomic<int> interrupts{0};
std::atomic<AtWork> atWork{AtWork::OnNothing};
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<AtWork>::is_always_lock_free);

extern "C" void onInterrupt(int signal);

// How many interrupts are only noticed.
bool isNextOnlyNoticed()
{
    const AtWork work = atWork;
    return work == AtWork::OnWrite || interrupts < (work == AtWork::OnRead ? 2 : 1);
}

void arm(int signal)
{
    std::signal(signal, isNextOnlyNoticed() ? onInterrupt : SIG_DFL);
}

extern "C" void onInterrupt(int signal)
{
    ++interrupts;
    arm(signal);
}

} // namespace

void watchForInterrupt()
{
    interrupts = 0;
    setAtWork(AtWork::OnNothing);
    for (const int signal : ignoredSignals())
        std::signal(signal, SIG_IGN);
}

bool wasInterrupted()
{
    return interrupts != 0;
}

bool wasInterruptedAgain()
{
    return interrupts > 1;
}

bool nextInterruptEnds()
{
    return !isNextOnlyNoticed();
}

void setAtWork(AtWork work)
{
    atWork = work;
    for (const int signal : stopSignals())
        arm(signal);
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
