#include "device/local_path.h"

QByteArray localPath(const QString &path)
{
    const QByteArray local = path.toLocal8Bit();
    return QString::fromLocal8Bit(local) == path ? local : QByteArray();
}
