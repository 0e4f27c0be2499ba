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

FileFault nameFault(const QString &path, ExistingFile existing)
{
    const QFileInfo info(path);
    if (localPath(path).isEmpty())
        return FileFault::NameNotRepresentable;
    if (info.isDir())
        return FileFault::IsFolder;
    if (info.exists() && !info.isFile())
        return FileFault::NotOrdinary;
    if (!info.absoluteDir().exists())
        return FileFault::NoFolder;
    return existing == ExistingFile::Keep && info.exists() ? FileFault::Exists : FileFault::None;
}

} // namespace

PendingFile::PendingFile(const QString &finalPath, ExistingFile existing)
    : m_finalPath(finalPath), m_existing(existing)
{
    const FileFault fault = nameFault(finalPath, existing);
    if (fault != FileFault::None) {
        m_trouble = {fault, finalPath, {}};
        return;
    }
    QTemporaryFile reserved(finalPath + QStringLiteral(".XXXXXX.part"));
    reserved.setAutoRemove(false);
    if (reserved.open())
        m_temporaryPath = reserved.fileName();
    else
        m_trouble = {FileFault::NotMade, finalPath, reserved.errorString()};
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
        m_trouble = check(bytes);
    else
        m_trouble = {FileFault::NotWritten, m_temporaryPath,
                     QString::fromLocal8Bit(lastDriveError().c_str())};
    return m_trouble.isNone();
}

// A cartridge may be overwritten next, so that nobody's word is taken for what is in its backup.
FileTrouble PendingFile::check(const QByteArray &bytes) const
{
    QByteArray found;
    const FileTrouble trouble = readUserFile(m_temporaryPath, &found);
    if (!trouble.isNone() || found == bytes)
        return trouble;
    return {FileFault::NotHeld, m_temporaryPath, {}};
}

bool PendingFile::commit(const QString &otherPath)
{
    const QString path = otherPath.isEmpty() ? m_finalPath : otherPath;
    m_trouble = renameFile(m_temporaryPath, path, m_existing == ExistingFile::Replace);
    if (m_trouble.isNone())
        m_temporaryPath.clear();
    return m_trouble.isNone();
}

FileTrouble readUserFile(const QString &path, QByteArray *bytes)
{
    QFile file(path);
    const QFileInfo info(path);
    if (info.isDir())
        return {FileFault::ReadsFolder, path, {}};
    // Looked at before it is opened: a pipe that nobody writes into holds whoever opens it.
    if (info.exists() && !info.isFile())
        return {FileFault::ReadsNoFile, path, {}};
    if (!file.open(QIODevice::ReadOnly))
        return {FileFault::NotRead, path, file.errorString()};
    if (file.size() > kLargestFile)
        return {FileFault::TooLarge, path, {}};
    const QByteArray content = file.readAll();
    if (file.error() != QFile::NoError)
        return {FileFault::NotRead, path, file.errorString()};
    *bytes = content;
    return {};
}
