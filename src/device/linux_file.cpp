#include "device/linux_file.h"

#include "device/sector_window.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr mode_t kNewFileMode = 0666;

enum class CachePolicy {
    Cached,
    Direct,   // O_DIRECT: every read is a transfer
    DropFirst // the whole file is dropped from the cache before every read
};

int openRetrying(const std::string &path, int flags)
{
    int descriptor = -1;
    do {
        descriptor = ::open(path.c_str(), flags | O_CLOEXEC, kNewFileMode);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

// Keeps a second program from writing the same file at the same time. File systems without locks
// are taken as they are. Returns: false if somebody else holds the file.
bool lockForWriting(int descriptor)
{
    return ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

ssize_t preadRetrying(int descriptor, void *destination, std::uint32_t length, std::uint64_t offset)
{
    ssize_t got = -1;
    do {
        got = ::pread(descriptor, destination, length, static_cast<off_t>(offset));
    } while (got < 0 && errno == EINTR);
    return got;
}

// Writes everything or fails; `*count` says how far it came. Returns: 0 or an error number.
int pwriteAll(int descriptor, const void *source, std::uint32_t length, std::uint64_t offset,
              std::uint32_t *count)
{
    const auto *bytes = static_cast<const std::uint8_t *>(source);
    *count = 0;
    while (*count < length) {
        const ssize_t put = ::pwrite(descriptor, bytes + *count, length - *count,
                                     static_cast<off_t>(offset + *count));
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0)
            return put < 0 ? errno : EIO;
        *count += static_cast<std::uint32_t>(put);
    }
    return 0;
}

DriveStatus sizeOf(int descriptor, const std::string &path, std::uint32_t *size)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return statusFromErrno(errno, "look up the size of", path);
    *size = static_cast<std::uint32_t>(status.st_size);
    return {};
}

DriveStatus notOpenFor(const char *purpose, const std::string &path)
{
    return {DriveErrorCode::BadRequest, "\"" + path + "\" is not open for " + purpose};
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

class UserWriteFile : public DriveFile
{
public:
    UserWriteFile(FileDescriptor file, std::string path)
        : m_file(std::move(file)), m_path(std::move(path))
    {
    }

    void seek(std::uint32_t offset) override { m_offset = offset; }

    DriveStatus read(void * /*destination*/, std::uint32_t /*length*/,
                     std::uint32_t *count) override
    {
        *count = 0;
        return notOpenFor("reading", m_path);
    }

    DriveStatus write(const void *source, std::uint32_t length, std::uint32_t *count) override
    {
        const int error = pwriteAll(m_file.get(), source, length, m_offset, count);
        m_offset += *count;
        if (error != 0)
            return statusFromErrno(error, "write", m_path);
        // A dump must be on the disk before the job calls it a success. Devices such as /dev/null
        // have nothing to sync and say EINVAL.
        if (::fsync(m_file.get()) != 0 && errno != EINVAL && errno != EROFS)
            return statusFromErrno(errno, "write", m_path);
        return {};
    }

    DriveStatus size(std::uint32_t *size) override { return sizeOf(m_file.get(), m_path, size); }

    DriveStatus close() override
    {
        const int error = m_file.close();
        return error == 0 ? DriveStatus{} : statusFromErrno(error, "close", m_path);
    }

private:
    FileDescriptor m_file;
    std::string m_path;
    std::uint32_t m_offset = 0;
};

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
    case EWOULDBLOCK:
        code = DriveErrorCode::Refused;
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
    CachePolicy policy = CachePolicy::Cached;
    int descriptor = -1;
    if (buffering == Buffering::Unbuffered) {
        policy = CachePolicy::Direct;
        descriptor = openRetrying(path, O_RDONLY | O_DIRECT);
        if (descriptor < 0 && errno == EINVAL) {
            policy = CachePolicy::DropFirst;
            descriptor = openRetrying(path, O_RDONLY);
        }
    } else {
        descriptor = openRetrying(path, O_RDONLY);
    }
    if (descriptor < 0)
        return statusFromErrno(errno, "open", path);
    *file = std::make_unique<LinuxReadFile>(FileDescriptor(descriptor), path, policy);
    return {};
}

DriveStatus openUserFileForWrite(const std::string &path, std::unique_ptr<DriveFile> *file)
{
    FileDescriptor descriptor(openRetrying(path, O_WRONLY | O_CREAT));
    if (!descriptor.isOpen())
        return statusFromErrno(errno, "open", path);
    if (!lockForWriting(descriptor.get()))
        return statusFromErrno(EWOULDBLOCK, "lock", path);
    // Cut only now: a file that another program is writing must not lose its content.
    struct stat status = {};
    const bool isRegular = ::fstat(descriptor.get(), &status) == 0 && S_ISREG(status.st_mode);
    if (isRegular && ::ftruncate(descriptor.get(), 0) != 0)
        return statusFromErrno(errno, "clear", path);
    *file = std::make_unique<UserWriteFile>(std::move(descriptor), path);
    return {};
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
    m_file = FileDescriptor(openRetrying(path, O_WRONLY | O_CREAT));
    m_path = path;
    if (!m_file.isOpen())
        return fail(errno, "open");
    if (!lockForWriting(m_file.get()))
        return fail(EWOULDBLOCK, "lock");
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
