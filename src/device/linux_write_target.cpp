#include "device/linux_write_target.h"

#include "device/linux_file.h"

#include <cerrno>
#include <climits>
#include <cstdlib>

#include <linux/magic.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace
{

// As many as the kernel itself follows.
constexpr int kMostLinks = 40;

WriteTarget failed(int error, const std::string &path)
{
    WriteTarget target;
    target.status = statusFromErrno(error, "write", path);
    return target;
}

// A link of the process file system leads to something open, whatever its text says.
bool isOfProcesses(const std::string &folder)
{
    struct statfs system = {};
    return ::statfs(folder.c_str(), &system) == 0 && system.f_type == PROC_SUPER_MAGIC;
}

// The descriptor that "/proc/self/fd/N" names, by any path; -1 if it is nothing of this process.
int ownDescriptorOf(const std::string &path)
{
    struct stat folder = {};
    struct stat own = {};
    const std::string name = nameOf(path);
    const bool isOwn = ::stat(folderOf(path).c_str(), &folder) == 0 &&
                       ::stat("/proc/self/fd", &own) == 0 && folder.st_dev == own.st_dev &&
                       folder.st_ino == own.st_ino;
    const bool isNumber = name.find_first_not_of("0123456789") == std::string::npos;
    return isOwn && isNumber ? std::atoi(name.c_str()) : -1;
}

WriteTarget processTarget(const std::string &path)
{
    WriteTarget target;
    target.path = path;
    target.descriptor = ownDescriptorOf(path);
    target.kind = target.descriptor < 0 ? WriteTarget::Kind::Stream : WriteTarget::Kind::OwnStream;
    return target;
}

WriteTarget existingTarget(const std::string &path, const struct stat &found)
{
    WriteTarget target;
    target.path = path;
    target.old = found;
    target.kind = S_ISREG(found.st_mode) ? WriteTarget::Kind::Ordinary : WriteTarget::Kind::Stream;
    return target;
}

// What the link `path` says, from where the link itself would be looked up. Empty: unreadable.
std::string textOfLink(const std::string &path)
{
    char text[PATH_MAX] = {};
    const ssize_t length = ::readlink(path.c_str(), text, sizeof(text) - 1); // -1: failed
    if (length <= 0)
        return {};
    const std::string link(text, static_cast<std::size_t>(length));
    return link[0] == '/' ? link : folderOf(path) + "/" + link;
}

} // namespace

std::string folderOf(const std::string &path)
{
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string nameOf(const std::string &path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

WriteTarget findWriteTarget(const std::string &path)
{
    std::string current = path;
    for (int links = 0; links < kMostLinks; ++links) {
        struct stat found = {};
        if (::lstat(current.c_str(), &found) != 0) {
            if (errno != ENOENT || nameOf(current).empty())
                return failed(errno, path);
            WriteTarget missing;
            missing.path = current;
            return missing;
        }
        if (S_ISDIR(found.st_mode))
            return failed(EISDIR, path);
        if (!S_ISLNK(found.st_mode))
            return existingTarget(current, found);
        if (isOfProcesses(folderOf(current)))
            return processTarget(current);
        current = textOfLink(current);
        if (current.empty())
            return failed(errno, path);
    }
    return failed(ELOOP, path);
}
