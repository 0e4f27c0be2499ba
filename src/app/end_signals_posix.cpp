#include "app/end_signals.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace
{

constexpr std::array<int, 3> kEndSignals = {SIGINT, SIGTERM, SIGHUP};

// A handler may do little more than write a byte. The other end wakes the event loop.
int wakeUpEnd = -1;

extern "C" void onEndSignal(int /*signal*/)
{
    const int before = errno;
    const char byte = 0;
    // A pipe that is full has woken the loop already.
    [[maybe_unused]] const ssize_t count = ::write(wakeUpEnd, &byte, 1);
    errno = before;
}

// Calls that wait for the reader are not disturbed.
void handle(int signal, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    ::sigaction(signal, &action, nullptr);
}

} // namespace

struct EndSignals::Watch {
    std::array<int, 2> pipe = {-1, -1};
    std::unique_ptr<QSocketNotifier> notifier;
};

EndSignals::EndSignals(std::function<void()> end) : m_watch(std::make_unique<Watch>())
{
    handle(SIGPIPE, SIG_IGN);
    if (::pipe2(m_watch->pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return; // the signals end the program at once, as they always did
    wakeUpEnd = m_watch->pipe[1];
    m_watch->notifier = std::make_unique<QSocketNotifier>(m_watch->pipe[0], QSocketNotifier::Read);
    QObject::connect(m_watch->notifier.get(), &QSocketNotifier::activated, m_watch->notifier.get(),
                     [this, call = std::move(end)] {
                         std::array<char, 64> bytes = {};
                         while (::read(m_watch->pipe[0], bytes.data(), bytes.size()) > 0) {
                         }
                         call();
                     });
    for (const int signal : kEndSignals)
        handle(signal, onEndSignal);
}

EndSignals::~EndSignals()
{
    if (m_watch->notifier == nullptr)
        return;
    for (const int signal : kEndSignals)
        handle(signal, SIG_DFL);
    m_watch->notifier.reset();
    for (const int descriptor : m_watch->pipe)
        ::close(descriptor);
}
