#include "device/drive_watch.h"

#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

namespace
{
// proc(5): a change of the table is an exceptional condition of a descriptor that is open on it.
// The kernel arms it anew when it has been told; nothing needs to be read.
class MountNotices
{
public:
    explicit MountNotices(QTimer *settling)
        : m_table(::open("/proc/self/mounts", O_RDONLY | O_CLOEXEC))
    {
        if (m_table == -1)
            return;
        m_notifier = std::make_unique<QSocketNotifier>(m_table, QSocketNotifier::Exception);
        // By name, because versions of Qt differ in the signal's overloads.
        QObject::connect(m_notifier.get(), SIGNAL(activated(int)), settling, SLOT(start()));
    }
    ~MountNotices()
    {
        m_notifier.reset();
        if (m_table != -1)
            ::close(m_table);
    }
    MountNotices(const MountNotices &) = delete;
    MountNotices &operator=(const MountNotices &) = delete;

private:
    int m_table;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
} // namespace

std::shared_ptr<void> DriveWatch::listen(QTimer *settling)
{
    return std::make_shared<MountNotices>(settling);
}
