#include "trust/left_behind.h"

#include "device/local_path.h"
#include "device/user_file.h"

#include <QDir>

QStringList temporariesIn(const QString &folder)
{
    QStringList paths;
    const QDir place(folder);
    for (const QString &name :
         place.entryList({QStringLiteral("*.part")}, QDir::Files | QDir::Hidden, QDir::Name)) {
        if (isTemporaryName(localPath(name).toStdString()))
            paths << place.filePath(name);
    }
    return paths;
}

QStringList leftBehindIn(const QString &folder)
{
    QStringList paths;
    for (const QString &path : temporariesIn(folder)) {
        if (useOfTemporary(localPath(path).toStdString()) == TemporaryUse::LeftBehind)
            paths << path;
    }
    return paths;
}
