// What the system says when the program has to end: a log-out of a terminal, kill, Ctrl-C in the
// terminal that started the window.
#pragma once

#include <functional>
#include <memory>

// Calls `end` on the thread that made it, from its event loop, whenever such a signal arrives, as
// often as one does; nothing is ended by force. Also keeps the program alive when nobody reads its
// messages any more.
//
// Thread: GUI thread; one object at a time.
class EndSignals
{
public:
    explicit EndSignals(std::function<void()> end);
    ~EndSignals();
    EndSignals(const EndSignals &) = delete;
    EndSignals &operator=(const EndSignals &) = delete;

private:
    struct Watch;
    std::unique_ptr<Watch> m_watch;
};
