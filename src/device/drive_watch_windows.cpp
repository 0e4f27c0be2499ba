#include "device/drive_watch.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>

#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <dbt.h>

namespace
{
// Arrival and removal are of volumes; the third comes for devices of any kind, and is the only one
// for some card readers.
class DeviceNotices : public QAbstractNativeEventFilter
{
public:
    explicit DeviceNotices(QTimer *settling) : m_settling(settling)
    {
        QCoreApplication::instance()->installNativeEventFilter(this);
    }

    bool nativeEventFilter(const QByteArray & /*eventType*/, void *message,
                           long * /*result*/) override
    {
        const auto *received = static_cast<const MSG *>(message);
        if (received->message == WM_DEVICECHANGE && isAboutDrives(received->wParam))
            m_settling->start();
        return false; // others may want to hear it too
    }

private:
    static bool isAboutDrives(WPARAM event)
    {
        return event == DBT_DEVICEARRIVAL || event == DBT_DEVICEREMOVECOMPLETE ||
               event == DBT_DEVNODES_CHANGED;
    }

    QTimer *m_settling;
};
} // namespace

std::shared_ptr<void> DriveWatch::listen(QTimer *settling)
{
    return std::make_shared<DeviceNotices>(settling);
}
