#include "files.h"

#include <QDir>
#include <QFile>

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void putFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

QString UserFolder::addFile(const QString &name, const QByteArray &bytes) const
{
    putFile(path(name), bytes);
    return path(name);
}

QStringList UserFolder::fileNames() const
{
    return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
}
