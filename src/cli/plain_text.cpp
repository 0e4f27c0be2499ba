#include "cli/plain_text.h"

#include <QCoreApplication>
#include <QDir>
#include <QRegularExpression>

namespace
{

// A script's path may have gone through another encoding and may hold blanks: it goes with all that
// stands before it.
QString fromScriptName(const QString &line)
{
    static const QRegularExpression kPath(QStringLiteral("^.*[/\\\\](?=[^/\\\\]*\\.nut)"));
    return QString(line).remove(kPath).trimmed();
}

} // namespace

QString tellingLine(const QStringList &log)
{
    // Libraries differ in how they spell the word.
    static const QRegularExpression kError(QStringLiteral("ERROR HAS OCCUR| : error "));
    QString last;
    for (const QString &line : log) {
        if (line.contains(kError))
            return fromScriptName(line.trimmed());
        if (!line.trimmed().isEmpty())
            last = line.trimmed();
    }
    return fromScriptName(last);
}

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
