#include "trust/pending_file.h"

#include "device/device_link.h"
#include "device/local_path.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace
{

// Files are never larger than the largest cartridge by much; what is, is no dump and no save.
constexpr qint64 kLargestFile = 256 * 1024 * 1024;

FileFault nameFault(const QString &path)
{
    const QFileInfo info(path);
    if (localPath(path).isEmpty())
        return FileFault::NameNotRepresentable;
    if (info.isDir())
        return FileFault::IsFolder;
    return info.absoluteDir().exists() ? FileFault::None : FileFault::NoFolder;
}

} // namespace

PendingFile::PendingFile(const QString &finalPath, ExistingFile existing)
    : m_path(finalPath), m_existing(existing)
{
    const FileFault fault = nameFault(finalPath);
    if (fault != FileFault::None) {
        m_trouble = {fault, finalPath, {}};
        return;
    }
    const bool isOpen = open(finalPath);
    const bool isKept = existing == ExistingFile::Keep && QFileInfo(finalPath).isFile();
    if (isKept && !(isOpen && isStream())) {
        m_file.reset();
        m_trouble = {FileFault::Exists, finalPath, {}};
    }
}

PendingFile::~PendingFile() = default;

bool PendingFile::open(const QString &path)
{
    const DriveStatus status = driveBackend().openForWrite(localPath(path).constData(), &m_file);
    return status.ok() || fail(FileFault::NotMade, status);
}

bool PendingFile::fail(FileFault fault, const DriveStatus &status)
{
    m_trouble = {fault, m_path, QString::fromLocal8Bit(status.message.c_str())};
    return false;
}

bool PendingFile::isStream() const
{
    return m_file != nullptr && !m_file->isWhole();
}

bool PendingFile::reserve(int bytes)
{
    const DriveStatus status = m_file->reserve(static_cast<std::uint32_t>(bytes));
    return status.ok() || fail(FileFault::NotWritten, status);
}

bool PendingFile::write(const QByteArray &bytes)
{
    m_bytes = bytes;
    m_trouble = {};
    if (isStream())
        return true;
    if (send(bytes))
        m_trouble = check(bytes);
    return m_trouble.isNone();
}

bool PendingFile::send(const QByteArray &bytes)
{
    const auto size = static_cast<std::uint32_t>(bytes.size());
    std::uint32_t count = 0;
    m_file->seek(0);
    const DriveStatus status = m_file->write(bytes.constData(), size, &count);
    return (status.ok() && count == size) || fail(FileFault::NotWritten, status);
}

// A cartridge may be overwritten next, so that nobody's word is taken for what is in its backup.
FileTrouble PendingFile::check(const QByteArray &bytes)
{
    QByteArray found(bytes.size() + 1, '\0');
    std::uint32_t count = 0;
    m_file->seek(0);
    const DriveStatus status =
        m_file->read(found.data(), static_cast<std::uint32_t>(found.size()), &count);
    found.truncate(static_cast<int>(count));
    if (status.ok() && found == bytes)
        return {};
    return {FileFault::NotHeld, m_path, {}};
}

bool PendingFile::commit(const QString &otherPath)
{
    if (!otherPath.isEmpty() && otherPath != m_path && !isStream()) {
        // Its folder may be another one: that of a link, and not that of the link's target.
        m_file.reset();
        m_path = otherPath;
        if (!open(otherPath) || !write(m_bytes))
            return false;
    }
    if (isStream() && !send(m_bytes))
        return false;
    const DriveStatus status =
        m_existing == ExistingFile::Replace ? m_file->close() : m_file->closeAsNew();
    m_file.reset();
    return status.ok() || fail(FileFault::NotRenamed, status);
}

FileTrouble troubleOfWriting(const QString &path, int bytes)
{
    PendingFile file(path, ExistingFile::Replace);
    if (file.trouble().isNone())
        (void)file.reserve(bytes);
    return file.trouble();
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
