// The end of the desktop session: a log-out, a shutdown.
#pragma once

#include <functional>
#include <memory>

// Calls `mayEnd` on the thread that made it, from its event loop, whenever the session is about to
// end. Where it returns false, the session is asked to go on; a user or a system may end it all the
// same.
//
// Thread: GUI thread; needs an application object that outlives it.
class SessionEnd
{
public:
    explicit SessionEnd(std::function<bool()> mayEnd);
    ~SessionEnd();
    SessionEnd(const SessionEnd &) = delete;
    SessionEnd &operator=(const SessionEnd &) = delete;

private:
    struct Watch;
    std::unique_ptr<Watch> m_watch;
};
