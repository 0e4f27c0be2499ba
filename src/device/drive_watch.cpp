#include "device/drive_watch.h"

DriveWatch::DriveWatch(const std::function<void()> &onChange, int settleMs)
    : m_notices(listen(&m_settling))
{
    m_settling.setSingleShot(true);
    m_settling.setInterval(settleMs);
    QObject::connect(&m_settling, &QTimer::timeout, &m_settling, onChange);
}
