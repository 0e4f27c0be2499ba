// The Linux backend of the seam: drive letters from linux_drives.h, files from linux_file.h.
#include "device/drive_backend.h"

#include "device/linux_drives.h"
#include "device/linux_file.h"
#include "device/user_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <set>

#include <sys/stat.h>
#include <unistd.h>

namespace
{

// The command file while a command is written. Closing it leaves the descriptor with the backend.
class CommandFile : public DriveFile
{
public:
    explicit CommandFile(KeptFile *kept) : m_kept(kept) {}
    ~CommandFile() override
    {
        if (m_kept != nullptr)
            (void)close();
    }

    void seek(std::uint32_t offset) override { m_offset = offset; }

    DriveStatus read(void * /*destination*/, std::uint32_t /*length*/,
                     std::uint32_t *count) override
    {
        *count = 0;
        return {DriveErrorCode::BadRequest, "The command file is not open for reading"};
    }

    DriveStatus write(const void *source, std::uint32_t length, std::uint32_t *count) override
    {
        m_written = true;
        const DriveStatus status = m_kept->writeAt(source, length, m_offset, count);
        m_offset += *count;
        return status;
    }

    DriveStatus size(std::uint32_t *size) override { return m_kept->size(size); }

    // Without a write the file is to be empty, as a file created anew would be.
    DriveStatus close() override
    {
        std::uint32_t count = 0;
        DriveStatus status;
        if (!m_written)
            status = m_kept->writeAt(nullptr, 0, 0, &count);
        m_kept->finish();
        m_kept = nullptr;
        return status;
    }

private:
    KeptFile *m_kept;
    std::uint32_t m_offset = 0;
    bool m_written = false;
};

class LinuxBackend : public DriveBackend
{
public:
    LinuxBackend() : m_drives(systemDriveSources()) {}

    std::uint32_t logicalDrives() override { return m_drives.scan(); }

    DriveType driveType(const char *root) override
    {
        m_askedLetters.insert(root[0]);
        // A letter may be asked for before any scan has handed out letters.
        if (m_drives.find(root[0]) == nullptr)
            (void)m_drives.scan();
        const LinuxDrive *drive = m_drives.find(root[0]);
        return drive != nullptr && m_drives.isPresent(*drive) ? DriveType::Removable
                                                              : DriveType::NoRoot;
    }

    DriveStatus volumeLabel(const char *root, char *label, std::uint32_t capacity) override
    {
        const LinuxDrive *drive = m_drives.find(root[0]);
        if (drive == nullptr || capacity == 0)
            return {DriveErrorCode::NotFound, std::string("There is no drive ") + root};
        const std::size_t length = std::min<std::size_t>(drive->label.size(), capacity - 1);
        std::memcpy(label, drive->label.data(), length);
        label[length] = '\0';
        return {};
    }

    std::string drivePlace(const char *root) override
    {
        const LinuxDrive *drive = m_drives.find(root[0]);
        return drive == nullptr ? std::string() : placeOf(*drive);
    }

    DriveStatus openForRead(const char *path, Buffering buffering,
                            std::unique_ptr<DriveFile> *file) override
    {
        const Location location = locate(path);
        if (!location.status.ok())
            return location.status;
        return openLinuxFileForRead(location.path, buffering, file);
    }

    DriveStatus openForWrite(const char *path, std::unique_ptr<DriveFile> *file) override
    {
        const Location location = locate(path);
        if (!location.status.ok()) {
            m_commandFile.release();
            return location.status;
        }
        if (!location.isOnDrive)
            return openUserFileForWrite(location.path, file);
        if (!exists(location.path) && lacksIdentityFile(location.drive->folder)) {
            m_commandFile.release();
            return notTheReader(path, *location.drive);
        }
        const DriveStatus opened = m_commandFile.open(location.path);
        if (opened.ok())
            *file = std::make_unique<CommandFile>(&m_commandFile);
        return opened;
    }

    DriveStatus mayWrite(const char *path) override
    {
        const Location location = locate(path);
        if (!location.status.ok() || !location.isOnDrive || exists(location.path))
            return location.status.ok() ? mayWriteLinuxFile(location.path) : location.status;
        if (lacksIdentityFile(location.drive->folder))
            return notTheReader(path, *location.drive);
        const bool isCreated = ::access(location.drive->folder.c_str(), W_OK | X_OK) == 0;
        return statusFromErrno(isCreated ? ENOENT : errno, "create", location.path);
    }

    void releaseDrive() override { m_commandFile.release(); }

private:
    struct Location {
        std::string path;
        bool isOnDrive = false;
        const LinuxDrive *drive = nullptr; // of a path on a drive, if `status` is good
        DriveStatus status;
    };

    static bool exists(const std::string &path)
    {
        struct stat status = {};
        return ::stat(path.c_str(), &status) == 0;
    }

    // A memory stick is left as it is.
    static DriveStatus notTheReader(const char *path, const LinuxDrive &drive)
    {
        return {DriveErrorCode::NotTheReader, std::string("\"") + path + "\" is not created: " +
                                                  placeOf(drive) + " holds no K-DRIVER.DMP"};
    }

    static std::string placeOf(const LinuxDrive &drive)
    {
        return drive.device.empty() ? drive.folder : drive.folder + " (" + drive.device + ")";
    }

    // A letter that no scan has ever listed and nobody has asked for belongs to no drive, and the
    // path is an ordinary one. A letter whose drive is gone stays a drive's: neither its empty
    // folder nor the current one must be mistaken for the drive.
    Location locate(const char *path) const
    {
        const bool hasLetter = path[0] != '\0' && std::strncmp(path + 1, ":\\", 2) == 0;
        const LinuxDrive *drive = hasLetter ? m_drives.find(path[0]) : nullptr;
        if (drive == nullptr && !(hasLetter && m_askedLetters.count(path[0]) != 0))
            return {path, false, nullptr, {}};
        if (drive == nullptr || !m_drives.isPresent(*drive))
            return {path,
                    true,
                    nullptr,
                    {DriveErrorCode::Gone, std::string("The drive of \"") + path +
                                               "\" is gone; plug it in and mount it"}};
        std::string onDrive = path + 2;
        std::replace(onDrive.begin(), onDrive.end(), '\\', '/');
        return {drive->folder + onDrive, true, drive, {}};
    }

    LinuxDrives m_drives;
    std::set<char> m_askedLetters;
    KeptFile m_commandFile;
};

} // namespace

std::unique_ptr<DriveBackend> createPlatformBackend()
{
    return std::make_unique<LinuxBackend>();
}
