#include "device/whole_file_linux.h"

#include "device/linux_calls.h"
#include "device/linux_file.h"
#include "device/user_file.h"

#include <cerrno>
#include <cstdio>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace
{

constexpr int kMostTemporaries = 100;
constexpr long kUsualNameLength = 255;

// Its owner's rights are not wider than the old file's until they are the same.
constexpr mode_t kPrivateMode = 0600;

std::size_t longestNameIn(const std::string &folder)
{
    const long longest = ::pathconf(folder.c_str(), _PC_NAME_MAX); // -1: not known
    return static_cast<std::size_t>(longest > 0 ? longest : kUsualNameLength);
}

// In a folder such as /tmp a file of somebody else's can be written, and not replaced. 0 or EPERM.
int stickyFault(const WriteTarget &target)
{
    struct stat folder = {};
    const uid_t user = ::geteuid();
    if (user == 0 || ::stat(folderOf(target.path).c_str(), &folder) != 0)
        return 0;
    const bool isSticky = (folder.st_mode & S_ISVTX) != 0;
    return isSticky && folder.st_uid != user && target.old.st_uid != user ? EPERM : 0;
}

// A group that could not be kept gets no more than everybody.
void keepOwnerAndMode(int file, const struct stat &old)
{
    mode_t mode = old.st_mode & 07777;
    const bool keepsGroup = ::fchown(file, old.st_uid, old.st_gid) == 0 ||
                            ::fchown(file, static_cast<uid_t>(-1), old.st_gid) == 0;
    if (!keepsGroup)
        mode = (mode & ~static_cast<mode_t>(070)) | ((mode & 07) << 3);
    (void)::fchmod(file, mode);
}

// Access lists among them. A file system without them has none to lose.
void keepAttributes(int file, int old)
{
    const ssize_t size = ::flistxattr(old, nullptr, 0);
    std::vector<char> names(static_cast<std::size_t>(size > 0 ? size : 0));
    const ssize_t length = names.empty() ? 0 : ::flistxattr(old, names.data(), names.size());
    for (ssize_t at = 0; at < length;) {
        const std::string name(names.data() + at);
        at += static_cast<ssize_t>(name.size()) + 1;
        const ssize_t bytes = ::fgetxattr(old, name.c_str(), nullptr, 0);
        std::vector<char> value(static_cast<std::size_t>(bytes > 0 ? bytes : 0));
        if (bytes >= 0 && ::fgetxattr(old, name.c_str(), value.data(), value.size()) == bytes)
            (void)::fsetxattr(file, name.c_str(), value.data(), value.size(), 0);
    }
}

// A file system that cannot do it (-1) has no better way either.
void syncFolder(const std::string &folder)
{
    const FileDescriptor descriptor(openRetrying(folder, O_RDONLY | O_DIRECTORY));
    if (descriptor.isOpen())
        (void)::fsync(descriptor.get());
}

bool isUnknownCall(int error)
{
    return error == EINVAL || error == ENOSYS || error == EPERM || error == EOPNOTSUPP;
}

// Fails with EEXIST where something is there already. Returns: 0 or an error number.
int renameToNew(const std::string &from, const std::string &to)
{
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return 0;
    if (!isUnknownCall(errno))
        return errno;
    if (::link(from.c_str(), to.c_str()) == 0)
        return ::unlink(from.c_str()) == 0 ? 0 : errno;
    if (!isUnknownCall(errno) && errno != EMLINK)
        return errno;
    struct stat found = {};
    if (::lstat(to.c_str(), &found) == 0)
        return EEXIST;
    return ::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

class WholeFile : public DriveFile
{
public:
    WholeFile(const WriteTarget &target, std::string path)
        : m_target(target), m_path(std::move(path)),
          m_hasOld(target.kind == WriteTarget::Kind::Ordinary)
    {
    }
    ~WholeFile() override { giveUp(); }
    WholeFile(const WholeFile &) = delete;
    WholeFile &operator=(const WholeFile &) = delete;

    DriveStatus open()
    {
        const int fault = m_hasOld ? holdOld() : 0;
        return fault == 0 ? makeTemporary() : statusFromErrno(fault, "open", m_path);
    }

    void seek(std::uint32_t offset) override { m_offset = offset; }

    DriveStatus read(void *destination, std::uint32_t length, std::uint32_t *count) override
    {
        *count = 0;
        const ssize_t got = preadRetrying(m_file.get(), destination, length, m_offset);
        if (got < 0)
            return statusFromErrno(errno, "read", m_temporary);
        *count = static_cast<std::uint32_t>(got);
        m_offset += *count;
        return {};
    }

    DriveStatus write(const void *source, std::uint32_t length, std::uint32_t *count) override
    {
        int error = pwriteAll(m_file.get(), source, length, m_offset, count);
        m_offset += *count;
        if (error == 0 && ::fsync(m_file.get()) != 0)
            error = errno;
        if (error == 0)
            return {};
        m_failure = statusFromErrno(error, "write", m_path);
        return m_failure;
    }

    DriveStatus size(std::uint32_t *size) override { return sizeOf(m_file.get(), m_path, size); }
    bool isWhole() const override { return true; }

    // Beyond the shell's limit (ulimit -f) a write would end the program. Of the disk the blocks
    // are taken, and the length is not. A file system that knows no such call finds out when it is
    // written.
    DriveStatus reserve(std::uint32_t length) override
    {
        rlimit limit = {};
        if (::getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur < length)
            return statusFromErrno(EFBIG, "write", m_path);
        if (length == 0 || ::fallocate(m_file.get(), FALLOC_FL_KEEP_SIZE, 0, length) == 0)
            return {};
        const bool isFull = errno == ENOSPC || errno == EDQUOT || errno == EFBIG;
        return isFull ? statusFromErrno(errno, "write", m_path) : DriveStatus{};
    }

    DriveStatus close() override { return finish(true); }
    DriveStatus closeAsNew() override { return finish(false); }

private:
    // The rights to write are the old file's, and so is the lock of another program. 0 or an error
    // number.
    int holdOld()
    {
        m_old = FileDescriptor(openRetrying(m_target.path, O_WRONLY));
        if (!m_old.isOpen())
            return errno;
        return lockForWriting(m_old.get()) ? stickyFault(m_target) : EWOULDBLOCK;
    }

    DriveStatus makeTemporary()
    {
        const std::string folder = folderOf(m_target.path);
        const std::size_t longest = longestNameIn(folder);
        if (nameOf(m_target.path).size() > longest)
            return statusFromErrno(ENAMETOOLONG, "write", m_path);
        for (int number = 1; number < kMostTemporaries; ++number) {
            const std::string name = temporaryName(nameOf(m_target.path), number, longest);
            m_temporary = folder + "/" + name;
            const int error = takeTemporary();
            if (error == 0)
                return {};
            m_temporary.clear();
            if (error == EWOULDBLOCK)
                return statusFromErrno(error, "lock", m_path);
            if (error != EEXIST)
                return statusFromErrno(error, "make a file beside", m_path);
        }
        return statusFromErrno(EEXIST, "make a file beside", m_path);
    }

    // Returns: 0; EWOULDBLOCK if somebody writes this very file; EEXIST if the name is taken; or
    // another error number.
    int takeTemporary()
    {
        m_file = FileDescriptor(openRetrying(m_temporary, O_RDWR | O_CREAT | O_EXCL,
                                             m_hasOld ? kPrivateMode : kNewFileMode));
        const int error = errno;
        if (!m_file.isOpen() && error == EEXIST)
            return useOfTemporary(m_temporary) == TemporaryUse::InUse ? EWOULDBLOCK : EEXIST;
        if (!m_file.isOpen())
            return error;
        // Who looks for what was left behind has the lock for a moment, or has removed the file.
        (void)::flock(m_file.get(), LOCK_EX);
        return isStillNamed(m_file.get(), m_temporary) ? 0 : EEXIST;
    }

    DriveStatus finish(bool replaces)
    {
        if (!m_failure.ok()) {
            giveUp();
            return m_failure;
        }
        if (m_hasOld)
            keepWhatIsNotContent();
        int error = ::fsync(m_file.get()) == 0 ? 0 : errno;
        if (error == 0)
            error = giveName(replaces);
        if (error == 0)
            m_temporary.clear();
        giveUp();
        if (error != 0)
            return statusFromErrno(error, "write", m_path);
        syncFolder(folderOf(m_target.path));
        return {};
    }

    void keepWhatIsNotContent()
    {
        keepOwnerAndMode(m_file.get(), m_target.old);
        keepAttributes(m_file.get(), m_old.get());
        const timespec times[2] = {m_target.old.st_atim, {0, UTIME_OMIT}};
        (void)::futimens(m_file.get(), times);
    }

    int giveName(bool replaces)
    {
        if (!replaces)
            return renameToNew(m_temporary, m_target.path);
        return std::rename(m_temporary.c_str(), m_target.path.c_str()) == 0 ? 0 : errno;
    }

    void giveUp()
    {
        if (!m_temporary.empty())
            (void)::unlink(m_temporary.c_str());
        m_temporary.clear();
        (void)m_file.close();
        (void)m_old.close();
    }

    WriteTarget m_target;
    std::string m_path;
    bool m_hasOld;
    FileDescriptor m_old; // locked
    FileDescriptor m_file;
    std::string m_temporary; // empty: there is none
    std::uint32_t m_offset = 0;
    DriveStatus m_failure;
};

} // namespace

DriveStatus openWholeFile(const WriteTarget &target, const std::string &path,
                          std::unique_ptr<DriveFile> *file)
{
    auto whole = std::make_unique<WholeFile>(target, path);
    const DriveStatus opened = whole->open();
    if (opened.ok())
        *file = std::move(whole);
    return opened;
}

bool isStillNamed(int descriptor, const std::string &path)
{
    struct stat named = {};
    struct stat opened = {};
    return ::lstat(path.c_str(), &named) == 0 && ::fstat(descriptor, &opened) == 0 &&
           named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
}
