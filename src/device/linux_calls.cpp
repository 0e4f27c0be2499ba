#include "device/linux_calls.h"

#include "device/linux_file.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

int openRetrying(const std::string &path, int flags, mode_t mode)
{
    int descriptor = -1;
    do {
        descriptor = ::open(path.c_str(), flags | O_CLOEXEC, mode);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

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
