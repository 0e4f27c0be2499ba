// Tells that drives have come or gone, because the system says so: no drive is looked at for it,
// and nothing is asked again and again.
//
// Linux: the kernel's notice that the table of mounts has changed. A folder that is declared as a
// drive and is no mount comes and goes unnoticed.
// Windows: the message that devices have changed, which the system sends to every window of the top
// level; a program without one hears nothing.
//
// Thread: the one that makes it, which runs an event loop; on Windows the main thread.
#pragma once

#include <QTimer>

#include <functional>
#include <memory>

class DriveWatch
{
public:
    // A stick that is plugged in is told of several times before its drive can be used.
    static constexpr int kSettleMs = 300;

    // Calls `onChange` from the event loop when there were notices and then none for `settleMs`.
    // A notice may concern no drive at all. Where the system gives no notices nothing is called.
    explicit DriveWatch(const std::function<void()> &onChange, int settleMs = kSettleMs);

private:
    // Of the platform: has `settling` started at every notice for as long as the result lives.
    static std::shared_ptr<void> listen(QTimer *settling);

    QTimer m_settling;
    std::shared_ptr<void> m_notices;
};
