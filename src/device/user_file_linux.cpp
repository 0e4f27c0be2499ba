#include "device/user_file.h"

#include "device/linux_calls.h"
#include "device/linux_file.h"
#include "device/linux_write_target.h"
#include "device/whole_file_linux.h"

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace
{

// While it lives, a pipe that nobody reads any more is an error of the write and not the end of the
// program.
class PipeSignalHeld
{
public:
    PipeSignalHeld()
    {
        ::sigemptyset(&m_pipe);
        ::sigaddset(&m_pipe, SIGPIPE);
        ::pthread_sigmask(SIG_BLOCK, &m_pipe, &m_before);
    }
    ~PipeSignalHeld()
    {
        const timespec atOnce = {};
        (void)::sigtimedwait(&m_pipe, nullptr, &atOnce);
        ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    }
    PipeSignalHeld(const PipeSignalHeld &) = delete;
    PipeSignalHeld &operator=(const PipeSignalHeld &) = delete;

private:
    sigset_t m_pipe = {};
    sigset_t m_before = {};
};

// Pipes and devices: byte after byte, in the order of the writes. Opened with the first of them,
// because a pipe opens only when somebody reads it.
class StreamFile : public DriveFile
{
public:
    StreamFile(WriteTarget target, std::string path)
        : m_target(std::move(target)), m_path(std::move(path))
    {
    }

    void seek(std::uint32_t /*offset*/) override {}

    DriveStatus read(void * /*destination*/, std::uint32_t /*length*/,
                     std::uint32_t *count) override
    {
        *count = 0;
        return notOpenFor("reading", m_path);
    }

    DriveStatus write(const void *source, std::uint32_t length, std::uint32_t *count) override
    {
        *count = 0;
        const DriveStatus opened = open();
        if (!opened.ok())
            return opened;
        const PipeSignalHeld held;
        const auto *bytes = static_cast<const std::uint8_t *>(source);
        while (*count < length) {
            const ssize_t put = ::write(m_file.get(), bytes + *count, length - *count);
            if (put < 0 && errno == EINTR)
                continue;
            if (put <= 0)
                return statusFromErrno(put < 0 ? errno : EIO, "write", m_path);
            *count += static_cast<std::uint32_t>(put);
        }
        // What has nothing to sync says EINVAL.
        if (::fsync(m_file.get()) != 0 && errno != EINVAL && errno != EROFS)
            return statusFromErrno(errno, "write", m_path);
        return {};
    }

    DriveStatus size(std::uint32_t *size) override
    {
        const DriveStatus opened = open();
        return opened.ok() ? sizeOf(m_file.get(), m_path, size) : opened;
    }

    DriveStatus close() override
    {
        const int error = m_file.close();
        return error == 0 ? DriveStatus{} : statusFromErrno(error, "close", m_path);
    }

private:
    // Not cut: what a shell has begun to write with ">>" goes on behind its end.
    DriveStatus open()
    {
        if (m_file.isOpen())
            return {};
        const bool isOwn = m_target.kind == WriteTarget::Kind::OwnStream;
        m_file = FileDescriptor(isOwn ? ::fcntl(m_target.descriptor, F_DUPFD_CLOEXEC, 0)
                                      : openRetrying(m_target.path, O_WRONLY));
        return m_file.isOpen() ? DriveStatus{} : statusFromErrno(errno, "open", m_path);
    }

    WriteTarget m_target;
    std::string m_path;
    FileDescriptor m_file;
};

bool isStream(const WriteTarget &target)
{
    return target.kind == WriteTarget::Kind::Stream || target.kind == WriteTarget::Kind::OwnStream;
}

// A descriptor that holds the lock of the temporary file `path`, if nobody else does.
TemporaryUse lockTemporary(const std::string &path, FileDescriptor *file)
{
    *file = FileDescriptor(openRetrying(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK));
    struct stat opened = {};
    if (!file->isOpen() || ::fstat(file->get(), &opened) != 0 || !S_ISREG(opened.st_mode))
        return TemporaryUse::NotKnown;
    if (::flock(file->get(), LOCK_EX | LOCK_NB) != 0)
        return errno == EWOULDBLOCK ? TemporaryUse::InUse : TemporaryUse::NotKnown;
    // Its program may have given it its name a moment ago.
    return isStillNamed(file->get(), path) ? TemporaryUse::LeftBehind : TemporaryUse::InUse;
}

} // namespace

DriveStatus openUserFileForWrite(const std::string &path, std::unique_ptr<DriveFile> *file)
{
    WriteTarget target = findWriteTarget(path);
    if (!target.status.ok())
        return target.status;
    if (!isStream(target))
        return openWholeFile(target, path, file);
    if (target.kind == WriteTarget::Kind::Stream && ::access(target.path.c_str(), W_OK) != 0)
        return statusFromErrno(errno, "open", path);
    *file = std::make_unique<StreamFile>(std::move(target), path);
    return {};
}

TemporaryUse useOfTemporary(const std::string &path)
{
    FileDescriptor file;
    return lockTemporary(path, &file);
}

DriveStatus removeTemporary(const std::string &path)
{
    FileDescriptor file;
    const TemporaryUse use = lockTemporary(path, &file);
    if (use == TemporaryUse::InUse)
        return {DriveErrorCode::Refused, "\"" + path + "\" is in use by a program that runs"};
    if (use == TemporaryUse::NotKnown)
        return {DriveErrorCode::Refused, "Cannot tell whether \"" + path + "\" is in use"};
    return ::unlink(path.c_str()) == 0 ? DriveStatus{} : statusFromErrno(errno, "remove", path);
}
