#include "trust/backup_store.h"

#include "device/local_path.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>

namespace
{

// Bytes; with date, number and suffix behind it below the 255 that file systems take.
constexpr int kLongestTitle = 180;

// Of a file, in bytes, and what " (2)" and so on may need of it.
constexpr int kLongestName = 255;
const QString kNumberRoom = QStringLiteral(" (99)");

// Shortens the title proper, and not what stands in brackets behind it: region and revision tell
// one file from another.
QString shortened(const QString &title)
{
    const int bracket = title.indexOf(QStringLiteral(" ("));
    QString name = title.left(bracket);
    const QString rest = bracket < 0 ? QString() : title.mid(bracket).left(kLongestTitle / 2);
    while (!name.isEmpty() && (name + rest).toUtf8().size() > kLongestTitle)
        name.chop(1);
    return name + rest;
}

bool isUsable(QChar character)
{
    return character.isPrint() && !QStringLiteral("<>:\"/\\|?*").contains(character) &&
           !localPath(QString(character)).isEmpty();
}

} // namespace

QString defaultBackupFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/gbdriver/backups");
}

QString safeFileName(const QString &title)
{
    QString name = shortened(title.simplified());
    for (QChar &character : name) {
        if (!isUsable(character))
            character = QLatin1Char('_');
    }
    while (name.endsWith(QLatin1Char('.')) || name.endsWith(QLatin1Char(' ')))
        name.chop(1);
    static const QRegularExpression device(
        QStringLiteral("^(con|prn|aux|nul|com\\d|lpt\\d)(\\.|$)"),
        QRegularExpression::CaseInsensitiveOption);
    if (device.match(name).hasMatch() || name.startsWith(QLatin1Char('.')) ||
        name.startsWith(QLatin1Char('-')))
        name.prepend(QLatin1Char('_'));
    return name.isEmpty() ? QStringLiteral("cartridge") : name;
}

QString freePath(const QString &folder, const QString &name, const QString &suffix)
{
    const QString stem = QDir(folder).filePath(name);
    QString path = stem + suffix;
    for (int number = 2; QFileInfo::exists(path); ++number)
        path = QStringLiteral("%1 (%2)%3").arg(stem).arg(number).arg(suffix);
    return path;
}

QString datedPath(const QString &folder, const QString &title, const QDateTime &time,
                  const QString &suffix)
{
    // No colons: file systems of Windows do not take them.
    const QString date = time.toString(QStringLiteral("yyyy-MM-dd HH-mm-ss"));
    return freePath(folder, safeFileName(title) + QLatin1Char(' ') + date, suffix);
}

namespace
{

// `mark` behind the name, which loses its end where both together are too long for a file system.
QString marked(const QString &path, const QString &mark)
{
    const QFileInfo info(path);
    QString name = info.fileName();
    while (!name.isEmpty() && (name + mark).toLocal8Bit().size() > kLongestName)
        name.chop(1);
    return name == info.fileName() ? path + mark : QDir(info.path()).filePath(name + mark);
}

QString freeMarked(const QString &path, const QString &mark)
{
    const QString name = marked(path, mark);
    if (!QFileInfo::exists(name))
        return name;
    const QFileInfo info(marked(path, kNumberRoom + mark));
    const QString stem = info.fileName();
    return freePath(info.path(), stem.left(stem.size() - kNumberRoom.size() - mark.size()), mark);
}

} // namespace

QString unverifiedPath(const QString &path)
{
    return freeMarked(path, QStringLiteral(".unverified"));
}

QString keptReadPath(const QString &path, VerdictKind kind, bool replaces)
{
    QString mark;
    if (kind == VerdictKind::Unstable)
        mark = QStringLiteral(".unstable");
    else if (kind == VerdictKind::Suspicious && QFileInfo::exists(path))
        mark = QStringLiteral(".suspicious");
    if (mark.isEmpty())
        return path;
    return replaces ? marked(path, mark) : freeMarked(path, mark);
}
