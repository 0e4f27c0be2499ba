#include "device/linux_drives.h"

#include <QFile>
#include <QStorageInfo>

#include <algorithm>
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

std::vector<MountedVolume> volumesOfSystem()
{
    std::vector<MountedVolume> volumes;
    for (const QStorageInfo &volume : QStorageInfo::mountedVolumes()) {
        volumes.push_back({volume.device().toStdString(),
                           QFile::encodeName(volume.rootPath()).toStdString(),
                           volume.name().toStdString()});
    }
    return volumes;
}

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

bool isDriveLetter(char letter)
{
    return letter >= kFirstLetter && letter <= kLastLetter;
}

} // namespace

LinuxDriveSources systemDriveSources()
{
    const char *declared = std::getenv("GBDRIVER_DRIVES");
    return {declared == nullptr ? "" : declared, "/sys/class/block", volumesOfSystem};
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

bool isRemovableDevice(const std::string &device, const std::string &blockFolder)
{
    // /dev/disk/by-label/X leads to /dev/sdb1, /sys/class/block/sdb1 into the disk's own folder.
    std::error_code error;
    const fs::path node = fs::weakly_canonical(device, error);
    fs::path folder = fs::canonical(fs::path(blockFolder) / node.filename(), error);
    // The source of a network mount ("//nas/sdb1") is no device node, whatever its name.
    if (error || node.filename().empty() || !fs::exists(node, error))
        return false;
    if (fs::exists(folder / "partition", error))
        folder = folder.parent_path(); // only the disk has the flag
    char flag = '0';
    std::ifstream(folder / "removable") >> flag;
    return flag == '1';
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
    if (!isFolder(drive.folder) || (drive.isMounted && !isMountPoint(drive.folder)))
        return false;
    return drive.device.empty() || isRemovableDevice(drive.device, m_sources.blockFolder);
}

std::vector<LinuxDrive> LinuxDrives::removableVolumes() const
{
    std::vector<MountedVolume> volumes = m_sources.mountedVolumes();
    std::sort(volumes.begin(), volumes.end(),
              [](const MountedVolume &left, const MountedVolume &right) {
                  return left.folder < right.folder;
              });
    std::vector<LinuxDrive> drives;
    for (const MountedVolume &volume : volumes) {
        if (!isRemovableDevice(volume.device, m_sources.blockFolder))
            continue;
        if (drives.size() > static_cast<std::size_t>(kLastLetter - kFirstLetter))
            break;
        LinuxDrive drive;
        drive.letter = static_cast<char>(kFirstLetter + drives.size());
        drive.folder = volume.folder;
        drive.label = volume.label.empty() ? folderName(volume.folder) : volume.label;
        drive.device = volume.device;
        drives.push_back(drive);
    }
    return drives;
}
