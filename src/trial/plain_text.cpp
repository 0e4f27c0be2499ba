#include "trial/plain_text.h"

#include <QCoreApplication>
#include <QDir>

QString withoutPaths(const QString &text, const QString &folder)
{
    const QString places[] = {QDir(folder).absolutePath(), QDir::tempPath(), QDir::homePath()};
    QString plain = text;
    for (const QString &place : places) {
        if (place.size() < 2)
            continue;
        plain.replace(place, QStringLiteral("..."));
        plain.replace(QDir::toNativeSeparators(place), QStringLiteral("..."));
    }
    return plain;
}

QString folderText(const QString &folder)
{
    const QDir given(folder);
    if (given == QDir(QCoreApplication::applicationDirPath() + QStringLiteral("/mapper")))
        return QStringLiteral("mapper, beside the program");
    return given == QDir::home() ? QStringLiteral("the home folder") : given.dirName();
}
