#include "trust/file_sha1.h"

#include <QCryptographicHash>
#include <QFile>

QString fileSha1(const QString &path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha1);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file))
        return QString();
    return QString::fromLatin1(hash.result().toHex());
}
