#include "device/linux_drives.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <sys/stat.h>

namespace fs = std::filesystem;

namespace
{

constexpr char kFirstLetter = 'A';
constexpr char kLastLetter = 'Z';

bool isMountPoint(const std::string &folder)
{
    struct stat self = {};
    struct stat parent = {};
    if (::stat(folder.c_str(), &self) != 0 || ::stat((folder + "/..").c_str(), &parent) != 0)
        return false;
    return self.st_dev != parent.st_dev || self.st_ino == parent.st_ino;
}

bool isFolder(const std::string &path)
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string folderName(const std::string &folder)
{
    const fs::path path(folder);
    return (path.has_filename() ? path : path.parent_path()).filename().string();
}

// "E=/mnt/reader[:LABEL]" without the "E=". The folder is made absolute as long as there is a
// current folder.
LinuxDrive declaredDrive(char letter, const std::string &place)
{
    const std::size_t colon = place.rfind(':');
    const fs::path folder = place.substr(0, colon);
    std::error_code error;
    const fs::path absolute = fs::absolute(folder, error);
    LinuxDrive drive;
    drive.letter = letter;
    drive.folder = (error ? folder : absolute).lexically_normal().string();
    drive.label = colon == std::string::npos ? folderName(drive.folder) : place.substr(colon + 1);
    return drive;
}

// In a name of udev's every character that a file name should not have is "\\x" and two digits.
std::string decodedName(const std::string &name)
{
    std::string text;
    for (std::size_t place = 0; place < name.size(); ++place) {
        unsigned character = 0;
        if (name.compare(place, 2, "\\x") == 0 &&
            std::sscanf(name.c_str() + place + 2, "%2x", &character) == 1) {
            text += static_cast<char>(character);
            place += 3;
        } else {
            text += name[place];
        }
    }
    return text;
}

// The folder of the kernel's in which a block device is described; empty if there is none.
fs::path kernelFolder(const std::string &deviceNumber, const std::string &blockFolder)
{
    std::error_code error;
    const fs::path folder = fs::canonical(fs::path(blockFolder) / deviceNumber, error);
    return error || deviceNumber.empty() ? fs::path() : folder;
}

bool isDriveLetter(char letter)
{
    return letter >= kFirstLetter && letter <= kLastLetter;
}

} // namespace

LinuxDriveSources systemDriveSources()
{
    const char *declared = std::getenv("GBDRIVER_DRIVES");
    return {declared == nullptr ? "" : declared, "/sys/dev/block", "/dev/disk/by-label",
            [] { return readMountTable("/proc/self/mountinfo"); }};
}

std::vector<LinuxDrive> parseDeclaredDrives(const std::string &declared,
                                            std::vector<std::string> *complaints)
{
    std::vector<LinuxDrive> drives;
    for (std::size_t start = 0; start < declared.size();) {
        const std::size_t end = std::min(declared.find(';', start), declared.size());
        const std::string entry = declared.substr(start, end - start);
        start = end + 1;
        if (entry.empty())
            continue;
        const bool valid =
            entry.size() > 2 && isDriveLetter(entry[0]) && entry[1] == '=' && entry[2] != ':';
        const bool taken = std::any_of(drives.begin(), drives.end(), [&](const LinuxDrive &drive) {
            return drive.letter == entry[0];
        });
        if (!valid)
            complaints->push_back("\"" + entry +
                                  "\" is not LETTER=FOLDER[:LABEL], e.g. "
                                  "E=/mnt/reader");
        else if (taken)
            complaints->push_back("\"" + entry + "\" declares a letter a second time");
        else
            drives.push_back(declaredDrive(entry[0], entry.substr(2)));
    }
    std::sort(drives.begin(), drives.end(), [](const LinuxDrive &left, const LinuxDrive &right) {
        return left.letter < right.letter;
    });
    return drives;
}

bool isRemovableDevice(const std::string &deviceNumber, const std::string &blockFolder)
{
    fs::path folder = kernelFolder(deviceNumber, blockFolder);
    if (folder.empty())
        return false;
    std::error_code error;
    if (fs::exists(folder / "partition", error))
        folder = folder.parent_path(); // only the disk has the flag
    char flag = '0';
    std::ifstream(folder / "removable") >> flag;
    return flag == '1';
}

std::string labelOfDevice(const std::string &deviceNumber, const LinuxDriveSources &sources)
{
    const fs::path device = kernelFolder(deviceNumber, sources.blockFolder).filename();
    std::error_code error;
    for (fs::directory_iterator link(sources.labelFolder, error), end; !error && link != end;
         link.increment(error)) {
        std::error_code unread;
        if (!device.empty() && fs::read_symlink(link->path(), unread).filename() == device)
            return decodedName(link->path().filename().string());
    }
    return {};
}

bool lacksIdentityFile(const std::string &folder)
{
    struct stat status = {};
    return ::stat((folder + "/K-DRIVER.DMP").c_str(), &status) != 0 && errno == ENOENT;
}

LinuxDrives::LinuxDrives(LinuxDriveSources sources) : m_sources(std::move(sources))
{
    std::vector<std::string> complaints;
    m_declared = parseDeclaredDrives(m_sources.declared, &complaints);
    for (const std::string &complaint : complaints)
        std::fprintf(stderr, "GBDRIVER_DRIVES: %s; ignored.\n", complaint.c_str());
}

std::uint32_t LinuxDrives::scan()
{
    if (!m_sources.declared.empty())
        return list(&m_declared);
    std::vector<LinuxDrive> volumes = removableVolumes();
    return list(&volumes);
}

std::uint32_t LinuxDrives::list(std::vector<LinuxDrive> *drives)
{
    std::uint32_t mask = 0;
    for (LinuxDrive &drive : *drives) {
        const bool mounted = isMountPoint(drive.folder);
        // A declared folder that once was a mount point is no drive while nothing is mounted there.
        if (!isFolder(drive.folder) || (drive.isMounted && !mounted))
            continue;
        drive.isMounted = mounted;
        mask |= 1U << (drive.letter - kFirstLetter);
        remember(drive);
    }
    return mask;
}

void LinuxDrives::remember(const LinuxDrive &drive)
{
    const auto known =
        std::find_if(m_known.begin(), m_known.end(),
                     [&](const LinuxDrive &candidate) { return candidate.letter == drive.letter; });
    if (known == m_known.end())
        m_known.push_back(drive);
    else
        *known = drive;
}

const LinuxDrive *LinuxDrives::find(char letter) const
{
    const auto found = std::find_if(m_known.begin(), m_known.end(), [&](const LinuxDrive &drive) {
        return drive.letter == letter;
    });
    return found == m_known.end() ? nullptr : &*found;
}

bool LinuxDrives::isPresent(const LinuxDrive &drive) const
{
    // The flag comes first: of a disk that is gone nothing else is asked.
    if (!drive.deviceNumber.empty() &&
        !isRemovableDevice(drive.deviceNumber, m_sources.blockFolder))
        return false;
    return isFolder(drive.folder) && (!drive.isMounted || isMountPoint(drive.folder));
}

std::vector<LinuxDrive> LinuxDrives::removableVolumes() const
{
    const std::vector<MountedVolume> volumes = m_sources.mountedVolumes();
    std::vector<LinuxDrive> readers;
    std::vector<LinuxDrive> others;
    for (std::size_t row = 0; row < volumes.size(); ++row) {
        const MountedVolume &volume = volumes[row];
        if (!isRemovableDevice(volume.deviceNumber, m_sources.blockFolder) ||
            isHiddenMount(volumes, row))
            continue;
        LinuxDrive drive;
        drive.folder = volume.folder;
        drive.device = volume.device;
        drive.deviceNumber = volume.deviceNumber;
        (lacksIdentityFile(volume.folder) ? others : readers).push_back(drive);
    }
    return lettered(readers, others);
}

std::vector<LinuxDrive> LinuxDrives::lettered(std::vector<LinuxDrive> readers,
                                              std::vector<LinuxDrive> others) const
{
    const auto byFolder = [](const LinuxDrive &left, const LinuxDrive &right) {
        return left.folder < right.folder;
    };
    std::sort(readers.begin(), readers.end(), byFolder);
    std::sort(others.begin(), others.end(), byFolder);
    std::vector<LinuxDrive> drives = std::move(readers);
    drives.insert(drives.end(), others.begin(), others.end());
    drives.resize(std::min<std::size_t>(drives.size(), kLastLetter - kFirstLetter + 1));
    for (std::size_t row = 0; row < drives.size(); ++row) {
        LinuxDrive &drive = drives[row];
        drive.letter = static_cast<char>(kFirstLetter + row);
        const std::string label = labelOfDevice(drive.deviceNumber, m_sources);
        drive.label = label.empty() ? folderName(drive.folder) : label;
    }
    return drives;
}
