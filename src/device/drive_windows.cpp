// The kernel32 backend of the seam. Drives have letters here, and paths go to the system as they
// are.
#include "device/drive_backend.h"

#include "device/sector_window.h"

#include <algorithm>
#include <cstring>
#include <system_error>
#include <utility>

#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace
{

// mingw-w64 has no name for ERROR_NO_SUCH_DEVICE: what a pulled-out USB drive answers.
constexpr DWORD kNoSuchDevice = 433;

DriveErrorCode codeFromError(DWORD error)
{
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_INVALID_DRIVE:
        return DriveErrorCode::NotFound;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
        return DriveErrorCode::Refused;
    case ERROR_NOT_READY:
    case ERROR_DEV_NOT_EXIST:
    case kNoSuchDevice:
    case ERROR_FILE_INVALID: // the volume behind an open file has changed
    case ERROR_MEDIA_CHANGED:
    case ERROR_NO_MEDIA_IN_DRIVE:
    case ERROR_DEVICE_NOT_CONNECTED:
        return DriveErrorCode::Gone;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
        return DriveErrorCode::Full;
    case ERROR_INVALID_PARAMETER:
        return DriveErrorCode::BadRequest;
    default:
        return DriveErrorCode::InputOutput;
    }
}

DriveStatus statusFromError(DWORD error, const char *operation, const std::string &path)
{
    const std::string text = std::system_category().message(static_cast<int>(error));
    return {codeFromError(error),
            std::string("Cannot ") + operation + " \"" + path + "\": " + text};
}

class WindowsFile : public DriveFile
{
public:
    WindowsFile(HANDLE handle, std::string path, Buffering buffering)
        : m_handle(handle), m_path(std::move(path)), m_buffering(buffering)
    {
    }
    ~WindowsFile() override
    {
        if (m_handle != INVALID_HANDLE_VALUE)
            (void)close();
    }
    WindowsFile(const WindowsFile &) = delete;
    WindowsFile &operator=(const WindowsFile &) = delete;

    void seek(std::uint32_t offset) override { m_offset = offset; }

    DriveStatus read(void *destination, std::uint32_t length, std::uint32_t *count) override
    {
        const SectorTransfer transfer = [this](void *target, std::uint64_t offset,
                                               std::uint32_t size, std::uint32_t *arrived) {
            return readAt(target, offset, size, arrived);
        };
        return readAtPosition(transfer, m_buffering, destination, length, &m_offset, count);
    }

    DriveStatus write(const void *source, std::uint32_t length, std::uint32_t *count) override
    {
        *count = 0;
        const DriveStatus positioned = setPosition(m_offset);
        if (!positioned.ok())
            return positioned;
        DWORD written = 0;
        const BOOL done = WriteFile(m_handle, source, length, &written, nullptr);
        *count = written;
        m_offset += written;
        if (done == 0)
            return statusFromError(GetLastError(), "write", m_path);
        if (written != length)
            return statusFromError(ERROR_DISK_FULL, "write", m_path);
        return {};
    }

    DriveStatus size(std::uint32_t *size) override
    {
        SetLastError(NO_ERROR);
        *size = GetFileSize(m_handle, nullptr);
        // The failure value is also the low half of a legal size.
        if (*size == INVALID_FILE_SIZE && GetLastError() != NO_ERROR)
            return statusFromError(GetLastError(), "look up the size of", m_path);
        return {};
    }

    DriveStatus close() override
    {
        const BOOL closed = CloseHandle(std::exchange(m_handle, INVALID_HANDLE_VALUE));
        return closed != 0 ? DriveStatus{} : statusFromError(GetLastError(), "close", m_path);
    }

private:
    DriveStatus setPosition(std::uint64_t offset)
    {
        LONG high = static_cast<LONG>(offset >> 32);
        SetLastError(NO_ERROR);
        const DWORD low =
            SetFilePointer(m_handle, static_cast<LONG>(offset & 0xFFFFFFFFU), &high, FILE_BEGIN);
        if (low == INVALID_SET_FILE_POINTER && GetLastError() != NO_ERROR)
            return statusFromError(GetLastError(), "seek in", m_path);
        return {};
    }

    DriveStatus readAt(void *destination, std::uint64_t offset, std::uint32_t length,
                       std::uint32_t *count)
    {
        const DriveStatus positioned = setPosition(offset);
        if (!positioned.ok())
            return positioned;
        DWORD got = 0;
        if (ReadFile(m_handle, destination, length, &got, nullptr) == 0)
            return statusFromError(GetLastError(), "read", m_path);
        *count = got;
        return {};
    }

    HANDLE m_handle;
    std::string m_path;
    Buffering m_buffering;
    std::uint32_t m_offset = 0;
};

class WindowsBackend : public DriveBackend
{
public:
    // An empty slot of a card reader is no reason for the system to show an error box.
    WindowsBackend() { SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX); }

    std::uint32_t logicalDrives() override { return GetLogicalDrives(); }

    DriveType driveType(const char *root) override
    {
        return static_cast<DriveType>(GetDriveTypeA(rootFolder(root).c_str()));
    }

    DriveStatus volumeLabel(const char *root, char *label, std::uint32_t capacity) override
    {
        const std::string folder = rootFolder(root);
        char found[MAX_PATH + 1] = {};
        if (GetVolumeInformationA(folder.c_str(), found, sizeof(found), nullptr, nullptr, nullptr,
                                  nullptr, 0) == 0)
            return statusFromError(GetLastError(), "read the label of", folder);
        if (capacity == 0)
            return {};
        const std::size_t length = std::min<std::size_t>(std::strlen(found), capacity - 1);
        std::memcpy(label, found, length);
        label[length] = '\0';
        return {};
    }

    DriveStatus openForRead(const char *path, Buffering buffering,
                            std::unique_ptr<DriveFile> *file) override
    {
        const DWORD flags =
            buffering == Buffering::Unbuffered ? FILE_FLAG_NO_BUFFERING : FILE_ATTRIBUTE_NORMAL;
        const HANDLE handle = CreateFileA(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                          nullptr, OPEN_EXISTING, flags, nullptr);
        return adopt(handle, path, buffering, file);
    }

    // Written through, because closing a file does not promise that its data left the cache.
    DriveStatus openForWrite(const char *path, std::unique_ptr<DriveFile> *file) override
    {
        const HANDLE handle = CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                          FILE_FLAG_WRITE_THROUGH, nullptr);
        return adopt(handle, path, Buffering::Buffered, file);
    }

    // Every handle is closed with its command; there is nothing to give up.
    void releaseDrive() override {}

private:
    // Without the backslash "E:" would be the folder that the process is in on that drive.
    static std::string rootFolder(const char *root) { return std::string(root) + "\\"; }

    static DriveStatus adopt(HANDLE handle, const char *path, Buffering buffering,
                             std::unique_ptr<DriveFile> *file)
    {
        if (handle == INVALID_HANDLE_VALUE)
            return statusFromError(GetLastError(), "open", path);
        *file = std::make_unique<WindowsFile>(handle, path, buffering);
        return {};
    }
};

} // namespace

std::unique_ptr<DriveBackend> createPlatformBackend()
{
    return std::make_unique<WindowsBackend>();
}
