// The kernel32 backend of the seam. Drives have letters here, and paths go to the system as they
// are.
#include "device/drive_backend.h"

#include "device/user_file.h"
#include "device/windows_file.h"

#include <algorithm>
#include <cstring>

namespace
{

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
        if (handle != INVALID_HANDLE_VALUE && GetFileType(handle) != FILE_TYPE_DISK) {
            CloseHandle(handle);
            return {DriveErrorCode::Refused,
                    std::string("Cannot open \"") + path + "\": it is no ordinary file"};
        }
        return adopt(handle, path, buffering, file);
    }

    // Written through, because closing a file does not promise that its data left the cache.
    DriveStatus openForWrite(const char *path, std::unique_ptr<DriveFile> *file) override
    {
        if (!isCommandFile(path))
            return openUserFileForWrite(path, file);
        if (isOnStrangeDrive(path))
            return notTheReader(path);
        const HANDLE handle = CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                          FILE_FLAG_WRITE_THROUGH, nullptr);
        return adopt(handle, path, Buffering::Buffered, file);
    }

    DriveStatus mayWrite(const char *path) override
    {
        if (isOnStrangeDrive(path))
            return notTheReader(path);
        const HANDLE handle = CreateFileA(path, GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                          FILE_ATTRIBUTE_NORMAL, nullptr);
        std::unique_ptr<DriveFile> file;
        return adopt(handle, path, Buffering::Buffered, &file);
    }

    // Every handle is closed with its command; there is nothing to give up.
    void releaseDrive() override {}

private:
    // Without the backslash "E:" would be the folder that the process is in on that drive.
    static std::string rootFolder(const char *root) { return std::string(root) + "\\"; }

    // Only the reader's own; a user may keep files on a removable drive too.
    static bool isCommandFile(const char *path)
    {
        return path[0] != '\0' && std::strcmp(path + 1, ":\\CMD.CMD") == 0;
    }

    static bool isMissing(const std::string &path)
    {
        return GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES &&
               statusFromError(GetLastError(), "look for", path).code == DriveErrorCode::NotFound;
    }

    // A command file that is missing, on a removable drive that holds no identity file either. A
    // drive that cannot be asked is not strange.
    static bool isOnStrangeDrive(const char *path)
    {
        if (!isCommandFile(path) || !isMissing(path))
            return false;
        const std::string root(path, 2);
        return GetDriveTypeA(rootFolder(root.c_str()).c_str()) == DRIVE_REMOVABLE &&
               isMissing(root + "\\K-DRIVER.DMP");
    }

    // A memory stick is left as it is.
    static DriveStatus notTheReader(const char *path)
    {
        return {DriveErrorCode::NotTheReader, std::string("\"") + path + "\" is not created: " +
                                                  std::string(path, 2) + " holds no K-DRIVER.DMP"};
    }

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
