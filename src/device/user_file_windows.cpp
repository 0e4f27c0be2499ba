#include "device/user_file.h"

#include "device/windows_file.h"

#include <cstring>
#include <utility>
#include <vector>

namespace
{

constexpr int kMostTemporaries = 100;
constexpr std::size_t kLongestName = 255;

// A virus scanner holds a new file for a moment.
constexpr int kAttempts = 20;
constexpr DWORD kPauseMs = 50;

// What a path that is to be written leads to.
struct WriteTarget {
    std::string path;
    bool hasOld = false;
    HANDLE stream = INVALID_HANDLE_VALUE; // of a pipe or a device
    DriveStatus status;
};

std::string folderOf(const std::string &path)
{
    const std::size_t end = path.find_last_of("/\\:");
    return end == std::string::npos ? std::string() : path.substr(0, end + 1);
}

// Behind all links. "\\?\" stands in front, which other calls do not take of every path.
std::string pathOf(HANDLE file, const std::string &path)
{
    char found[4 * MAX_PATH] = {};
    const DWORD length = GetFinalPathNameByHandleA(file, found, sizeof(found), 0);
    if (length == 0 || length >= sizeof(found)) // 0: failed
        return path;
    const std::string text = found;
    if (text.compare(0, 8, "\\\\?\\UNC\\") == 0)
        return "\\\\" + text.substr(8);
    return text.compare(0, 4, "\\\\?\\") == 0 ? text.substr(4) : text;
}

// The rights to write are the old file's, and nobody else may have it open.
WriteTarget findWriteTarget(const std::string &path)
{
    WriteTarget target;
    target.path = path;
    const HANDLE old = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                   FILE_FLAG_WRITE_THROUGH, nullptr);
    const DWORD error = GetLastError();
    const DWORD attributes = GetFileAttributesA(path.c_str());
    if (old == INVALID_HANDLE_VALUE) {
        // A link that leads nowhere has attributes of its own.
        const bool isNew = error == ERROR_FILE_NOT_FOUND && attributes == INVALID_FILE_ATTRIBUTES;
        if (!isNew)
            target.status = statusFromError(error, "open", path);
        return target;
    }
    if (GetFileType(old) != FILE_TYPE_DISK) {
        target.stream = old;
        return target;
    }
    target.hasOld = true;
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0)
        target.path = pathOf(old, path);
    CloseHandle(old);
    return target;
}

// What is not content: attributes, the time of creation, who may do what. Where a file system has
// none of it, there is nothing to lose.
void keepWhatIsNotContent(HANDLE file, const std::string &from, const std::string &to)
{
    const HANDLE old = CreateFileA(from.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                   nullptr, OPEN_EXISTING, 0, nullptr);
    if (old != INVALID_HANDLE_VALUE) {
        FILETIME created = {};
        FILETIME accessed = {};
        if (GetFileTime(old, &created, &accessed, nullptr) != FALSE)
            SetFileTime(file, &created, &accessed, nullptr);
        CloseHandle(old);
    }
    DWORD size = 0;
    GetFileSecurityA(from.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<unsigned char> rights(size);
    if (size != 0 && GetFileSecurityA(from.c_str(), DACL_SECURITY_INFORMATION, rights.data(), size,
                                      &size) != FALSE)
        SetFileSecurityA(to.c_str(), DACL_SECURITY_INFORMATION, rights.data());
    const DWORD attributes = GetFileAttributesA(from.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES)
        SetFileAttributesA(to.c_str(), attributes);
}

// A whole file while it lies under its temporary name. Its handle is closed before it gets its own.
class WholeFile : public WindowsFile
{
public:
    WholeFile(HANDLE handle, WriteTarget target, std::string temporary, std::string path)
        : WindowsFile(handle, path, Buffering::Buffered), m_target(std::move(target)),
          m_temporary(std::move(temporary)), m_path(std::move(path))
    {
    }
    ~WholeFile() override { giveUp(); }
    WholeFile(const WholeFile &) = delete;
    WholeFile &operator=(const WholeFile &) = delete;

    DriveStatus write(const void *source, std::uint32_t length, std::uint32_t *count) override
    {
        DriveStatus status = WindowsFile::write(source, length, count);
        if (!status.ok())
            m_failure = status;
        return status;
    }

    bool isWhole() const override { return true; }

    // A system that does not know the call finds out when the file is written.
    DriveStatus reserve(std::uint32_t length) override
    {
        FILE_ALLOCATION_INFO wanted = {};
        wanted.AllocationSize.QuadPart = length;
        if (SetFileInformationByHandle(handle(), FileAllocationInfo, &wanted, sizeof(wanted)) !=
            FALSE)
            return {};
        const DWORD error = GetLastError();
        return error == ERROR_DISK_FULL ? statusFromError(error, "write", m_path) : DriveStatus{};
    }

    DriveStatus close() override { return finish(true); }
    DriveStatus closeAsNew() override { return finish(false); }

private:
    DriveStatus finish(bool replaces)
    {
        if (m_failure.ok() && FlushFileBuffers(handle()) == FALSE)
            m_failure = statusFromError(GetLastError(), "write", m_path);
        if (m_failure.ok() && m_target.hasOld && replaces)
            keepWhatIsNotContent(handle(), m_target.path, m_temporary);
        const DriveStatus closed = WindowsFile::close();
        if (m_failure.ok())
            m_failure = closed;
        const DWORD error = m_failure.ok() ? giveName(replaces) : ERROR_SUCCESS;
        if (error != ERROR_SUCCESS)
            m_failure = statusFromError(error, "write", m_path);
        if (m_failure.ok())
            m_temporary.clear();
        giveUp();
        return m_failure;
    }

    // One step: after a failure both files are as they were.
    DWORD giveName(bool replaces)
    {
        const DWORD flags = MOVEFILE_WRITE_THROUGH | (replaces ? MOVEFILE_REPLACE_EXISTING : 0U);
        DWORD error = ERROR_SUCCESS;
        for (int attempt = 0; attempt < kAttempts; ++attempt) {
            if (MoveFileExA(m_temporary.c_str(), m_target.path.c_str(), flags) != FALSE)
                return ERROR_SUCCESS;
            error = GetLastError();
            if (error != ERROR_SHARING_VIOLATION && error != ERROR_ACCESS_DENIED)
                break;
            Sleep(kPauseMs);
        }
        return error;
    }

    void giveUp()
    {
        if (handle() != INVALID_HANDLE_VALUE)
            (void)WindowsFile::close();
        if (m_temporary.empty())
            return;
        // A kept attribute "read only" would keep the file.
        SetFileAttributesA(m_temporary.c_str(), FILE_ATTRIBUTE_NORMAL);
        DeleteFileA(m_temporary.c_str());
        m_temporary.clear();
    }

    WriteTarget m_target;
    std::string m_temporary; // empty: there is none
    std::string m_path;
    DriveStatus m_failure;
};

DriveStatus openWholeFile(const WriteTarget &target, const std::string &path,
                          std::unique_ptr<DriveFile> *file)
{
    const std::string folder = folderOf(target.path);
    const std::string name = target.path.substr(folder.size());
    DWORD error = ERROR_FILE_EXISTS;
    for (int number = 1; number < kMostTemporaries && error == ERROR_FILE_EXISTS; ++number) {
        const std::string temporary = folder + temporaryName(name, number, kLongestName);
        const HANDLE handle = CreateFileA(temporary.c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                          nullptr, CREATE_NEW, FILE_FLAG_WRITE_THROUGH, nullptr);
        if (handle != INVALID_HANDLE_VALUE) {
            *file = std::make_unique<WholeFile>(handle, target, temporary, path);
            return {};
        }
        error = GetLastError();
        // Somebody writes this very file.
        if (error == ERROR_FILE_EXISTS && useOfTemporary(temporary) == TemporaryUse::InUse)
            return statusFromError(ERROR_SHARING_VIOLATION, "open", path);
    }
    return statusFromError(error, "make a file beside", path);
}

// Returns: a handle that nobody else can have meanwhile, or INVALID_HANDLE_VALUE.
HANDLE holdTemporary(const std::string &path, DWORD flags)
{
    return CreateFileA(path.c_str(), GENERIC_READ | DELETE, 0, nullptr, OPEN_EXISTING, flags,
                       nullptr);
}

} // namespace

DriveStatus openUserFileForWrite(const std::string &path, std::unique_ptr<DriveFile> *file)
{
    const WriteTarget target = findWriteTarget(path);
    if (!target.status.ok())
        return target.status;
    if (target.stream == INVALID_HANDLE_VALUE)
        return openWholeFile(target, path, file);
    *file = std::make_unique<WindowsFile>(target.stream, path, Buffering::Buffered);
    return {};
}

TemporaryUse useOfTemporary(const std::string &path)
{
    const HANDLE file = holdTemporary(path, 0);
    if (file == INVALID_HANDLE_VALUE)
        return GetLastError() == ERROR_SHARING_VIOLATION ? TemporaryUse::InUse
                                                         : TemporaryUse::NotKnown;
    CloseHandle(file);
    return TemporaryUse::LeftBehind;
}

DriveStatus removeTemporary(const std::string &path)
{
    const HANDLE file = holdTemporary(path, FILE_FLAG_DELETE_ON_CLOSE);
    if (file != INVALID_HANDLE_VALUE && CloseHandle(file) != FALSE)
        return {};
    const DWORD error = GetLastError();
    if (error == ERROR_SHARING_VIOLATION)
        return {DriveErrorCode::Refused, "\"" + path + "\" is in use by a program that runs"};
    return statusFromError(error, "remove", path);
}
