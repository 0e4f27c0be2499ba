#include "device/linux_file.h"

#include "device/linux_calls.h"
#include "device/sector_window.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

enum class CachePolicy {
    Cached,
    Direct,   // O_DIRECT: every read is a transfer
    DropFirst // the whole file is dropped from the cache before every read
};

DriveStatus usedByAnother(const std::string &path)
{
    return {DriveErrorCode::InUse, "\"" + path + "\" is open in another program"};
}

class LinuxReadFile : public DriveFile
{
public:
    LinuxReadFile(FileDescriptor file, std::string path, CachePolicy policy)
        : m_file(std::move(file)), m_path(std::move(path)), m_policy(policy)
    {
    }

    void seek(std::uint32_t offset) override { m_offset = offset; }

    DriveStatus read(void *destination, std::uint32_t length, std::uint32_t *count) override
    {
        const SectorTransfer transfer = [this](void *target, std::uint64_t offset,
                                               std::uint32_t size, std::uint32_t *arrived) {
            return readAt(target, offset, size, arrived);
        };
        const Buffering buffering =
            m_policy == CachePolicy::Cached ? Buffering::Buffered : Buffering::Unbuffered;
        return readAtPosition(transfer, buffering, destination, length, &m_offset, count);
    }

    DriveStatus write(const void * /*source*/, std::uint32_t /*length*/,
                      std::uint32_t *count) override
    {
        *count = 0;
        return notOpenFor("writing", m_path);
    }

    DriveStatus size(std::uint32_t *size) override { return sizeOf(m_file.get(), m_path, size); }

    DriveStatus close() override
    {
        const int error = m_file.close();
        return error == 0 ? DriveStatus{} : statusFromErrno(error, "close", m_path);
    }

private:
    // One call, one transfer: a short count is the end of the file.
    DriveStatus readAt(void *destination, std::uint64_t offset, std::uint32_t length,
                       std::uint32_t *count)
    {
        if (m_policy == CachePolicy::DropFirst)
            (void)::posix_fadvise(m_file.get(), 0, 0, POSIX_FADV_DONTNEED);
        const ssize_t got = preadRetrying(m_file.get(), destination, length, offset);
        if (got < 0 && errno == EINVAL && m_policy == CachePolicy::Direct && giveUpDirect())
            return readAt(destination, offset, length, count);
        if (got < 0)
            return statusFromErrno(errno, "read", m_path);
        *count = static_cast<std::uint32_t>(got);
        return {};
    }

    // Some file systems accept O_DIRECT and refuse the read, as a disk with larger sectors does.
    bool giveUpDirect()
    {
        const int flags = ::fcntl(m_file.get(), F_GETFL);
        m_policy = CachePolicy::DropFirst;
        return flags >= 0 && ::fcntl(m_file.get(), F_SETFL, flags & ~O_DIRECT) == 0;
    }

    FileDescriptor m_file;
    std::string m_path;
    CachePolicy m_policy;
    std::uint32_t m_offset = 0;
};

// A pipe would wait for its writer, and only a later read refuses a folder.
DriveStatus ordinaryFileStatus(int descriptor, const std::string &path)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return statusFromErrno(errno, "open", path);
    if (S_ISDIR(status.st_mode))
        return statusFromErrno(EISDIR, "open", path);
    if (!S_ISREG(status.st_mode))
        return {DriveErrorCode::Refused, "Cannot open \"" + path + "\": it is no ordinary file"};
    return {};
}

} // namespace

FileDescriptor::FileDescriptor(FileDescriptor &&other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1))
{
}

FileDescriptor &FileDescriptor::operator=(FileDescriptor &&other) noexcept
{
    if (this != &other) {
        close();
        m_descriptor = std::exchange(other.m_descriptor, -1);
    }
    return *this;
}

int FileDescriptor::close()
{
    const int descriptor = std::exchange(m_descriptor, -1);
    // The descriptor is gone even if close() was interrupted.
    return descriptor < 0 || ::close(descriptor) == 0 || errno == EINTR ? 0 : errno;
}

DriveStatus statusFromErrno(int error, const char *operation, const std::string &path)
{
    DriveErrorCode code = DriveErrorCode::InputOutput;
    switch (error) {
    case ENOENT:
    case ENOTDIR:
        code = DriveErrorCode::NotFound;
        break;
    case EACCES:
    case EPERM:
    case EROFS:
    case EBUSY:
    case EISDIR:
        code = DriveErrorCode::Refused;
        break;
    case EWOULDBLOCK: // a lock is another program's
        code = DriveErrorCode::InUse;
        break;
    case ENODEV:
    case ENXIO:
    case ENOTCONN:
        code = DriveErrorCode::Gone;
        break;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        code = DriveErrorCode::Full;
        break;
    case EINVAL:
        code = DriveErrorCode::BadRequest;
        break;
    default:
        break;
    }
    return {code,
            std::string("Cannot ") + operation + " \"" + path + "\": " + std::strerror(error)};
}

DriveStatus openLinuxFileForRead(const std::string &path, Buffering buffering,
                                 std::unique_ptr<DriveFile> *file)
{
    constexpr int kReading = O_RDONLY | O_NONBLOCK; // which only a pipe notices
    CachePolicy policy = CachePolicy::Cached;
    int descriptor = -1;
    if (buffering == Buffering::Unbuffered) {
        policy = CachePolicy::Direct;
        descriptor = openRetrying(path, kReading | O_DIRECT);
        if (descriptor < 0 && errno == EINVAL) {
            policy = CachePolicy::DropFirst;
            descriptor = openRetrying(path, kReading);
        }
    } else {
        descriptor = openRetrying(path, kReading);
    }
    if (descriptor < 0)
        return statusFromErrno(errno, "open", path);
    FileDescriptor opened(descriptor);
    const DriveStatus status = ordinaryFileStatus(descriptor, path);
    if (status.ok())
        *file = std::make_unique<LinuxReadFile>(std::move(opened), path, policy);
    return status;
}

DriveStatus mayWriteLinuxFile(const std::string &path)
{
    const FileDescriptor file(openRetrying(path, O_WRONLY));
    if (!file.isOpen())
        return statusFromErrno(errno, "open", path);
    return lockForWriting(file.get()) ? DriveStatus{} : usedByAnother(path);
}

bool KeptFile::isStill(const std::string &path) const
{
    struct stat named = {};
    struct stat opened = {};
    return m_file.isOpen() && m_path == path && ::stat(path.c_str(), &named) == 0 &&
           ::fstat(m_file.get(), &opened) == 0 && named.st_dev == opened.st_dev &&
           named.st_ino == opened.st_ino;
}

DriveStatus KeptFile::open(const std::string &path)
{
    if (m_isInUse)
        return statusFromErrno(EBUSY, "open", path);
    if (isStill(path)) {
        m_isInUse = true;
        return {};
    }
    release();
    // Not truncated: that would move the file to other clusters with every command.
    m_file = FileDescriptor(openRetrying(path, O_WRONLY | O_CREAT, kNewFileMode));
    m_path = path;
    if (!m_file.isOpen())
        return fail(errno, "open");
    if (!lockForWriting(m_file.get())) {
        release();
        return usedByAnother(path);
    }
    m_isInUse = true;
    m_isEntrySynced = false;
    return {};
}

DriveStatus KeptFile::writeAt(const void *source, std::uint32_t length, std::uint32_t offset,
                              std::uint32_t *count)
{
    *count = 0;
    struct stat status = {};
    if (::fstat(m_file.get(), &status) != 0)
        return fail(errno, "look up the size of");
    const off_t end = static_cast<off_t>(offset) + static_cast<off_t>(length);
    if (status.st_size > end && ::ftruncate(m_file.get(), end) != 0)
        return fail(errno, "cut");
    const int error = pwriteAll(m_file.get(), source, length, offset, count);
    if (error != 0)
        return fail(error, "write");
    // With an unchanged size there is no metadata to write, and fdatasync moves the data alone.
    const bool isDataOnly = m_isEntrySynced && status.st_size == end;
    if ((isDataOnly ? ::fdatasync(m_file.get()) : ::fsync(m_file.get())) != 0)
        return fail(errno, "sync");
    m_isEntrySynced = true;
    return {};
}

DriveStatus KeptFile::size(std::uint32_t *size)
{
    return sizeOf(m_file.get(), m_path, size);
}

void KeptFile::release()
{
    (void)m_file.close();
    m_path.clear();
}

DriveStatus KeptFile::fail(int error, const char *operation)
{
    const DriveStatus status = statusFromErrno(error, operation, m_path);
    release();
    return status;
}
