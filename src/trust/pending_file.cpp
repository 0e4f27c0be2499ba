#include "trust/pending_file.h"

#include "device/device_link.h"
#include "device/local_path.h"
#include "trust/file_rename.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

namespace
{

// Files are never larger than the largest cartridge by much; what is, is no dump and no save.
constexpr qint64 kLargestFile = 256 * 1024 * 1024;

QString nameFault(const QString &path)
{
    const QFileInfo info(path);
    if (localPath(path).isEmpty())
        return QStringLiteral("the system cannot hold this name in its 8-bit encoding");
    if (info.isDir())
        return QStringLiteral("it is a folder");
    if (info.exists() && !info.isFile())
        return QStringLiteral("it is no ordinary file");
    return info.absoluteDir().exists() ? QString() : QStringLiteral("the folder does not exist");
}

} // namespace

PendingFile::PendingFile(const QString &finalPath, ExistingFile existing)
    : m_finalPath(finalPath), m_existing(existing)
{
    const QString prefix = QStringLiteral("Cannot write %1: ").arg(finalPath);
    const QString fault = nameFault(finalPath);
    if (!fault.isEmpty()) {
        m_problem = prefix + fault + QLatin1Char('.');
        return;
    }
    m_isTaken = existing == ExistingFile::Keep && QFileInfo::exists(finalPath);
    if (m_isTaken) {
        m_problem = prefix + QStringLiteral("it exists already.");
        return;
    }
    QTemporaryFile reserved(finalPath + QStringLiteral(".XXXXXX.part"));
    reserved.setAutoRemove(false);
    if (reserved.open())
        m_temporaryPath = reserved.fileName();
    else
        m_problem = prefix + reserved.errorString() + QLatin1Char('.');
}

PendingFile::~PendingFile()
{
    if (!m_temporaryPath.isEmpty())
        QFile::remove(m_temporaryPath);
}

bool PendingFile::write(const QByteArray &bytes)
{
    const auto size = static_cast<std::uint32_t>(bytes.size());
    clearLastDriveError();
    if (writeFileWhole(localPath(m_temporaryPath).constData(), bytes.constData(), size) == size &&
        lastDriveError().empty())
        return holds(bytes);
    m_problem = QStringLiteral("Cannot write %1: %2")
                    .arg(m_temporaryPath, QString::fromLocal8Bit(lastDriveError().c_str()));
    return false;
}

// A cartridge may be overwritten next, so that nobody's word is taken for what is in its backup.
bool PendingFile::holds(const QByteArray &bytes)
{
    QByteArray found;
    if (!readUserFile(m_temporaryPath, &found, &m_problem))
        return false;
    if (found == bytes)
        return true;
    m_problem =
        QStringLiteral("%1 does not hold what was written to it; the disk is not to be trusted.")
            .arg(m_temporaryPath);
    return false;
}

bool PendingFile::commit(const QString &otherPath)
{
    const QString path = otherPath.isEmpty() ? m_finalPath : otherPath;
    if (!renameFile(m_temporaryPath, path, m_existing == ExistingFile::Replace, &m_problem))
        return false;
    m_temporaryPath.clear();
    return true;
}

bool readUserFile(const QString &path, QByteArray *bytes, QString *problem)
{
    QFile file(path);
    if (QFileInfo(path).isDir())
        *problem = QStringLiteral("Cannot read %1: it is a folder.").arg(path);
    else if (!file.open(QIODevice::ReadOnly))
        *problem = QStringLiteral("Cannot read %1: %2.").arg(path, file.errorString());
    else if (file.size() > kLargestFile)
        *problem = QStringLiteral("Cannot read %1: it is too large for a cartridge.").arg(path);
    else {
        *bytes = file.readAll();
        if (file.error() == QFile::NoError)
            return true;
        *problem = QStringLiteral("Cannot read %1: %2.").arg(path, file.errorString());
    }
    return false;
}
