#include "silent_mount.h"

namespace
{

constexpr int kMountMs = 30000;

} // namespace

SilentMount::~SilentMount()
{
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished(kMountMs))
        m_process.kill();
}

QString SilentMount::start(const QString &source)
{
    m_process.start(SILENT_MOUNT_PROGRAM,
                    {folder(), source.isEmpty() ? folder() + QStringLiteral("/disk") : source});
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(kMountMs))
            return QStringLiteral("The silent file system cannot be mounted (is FUSE there?): ") +
                   QString::fromLocal8Bit(m_process.readAllStandardError());
    }
    return QString();
}
