// Drive letters on a system that has none.
//
// Logical drives are the mounted volumes whose disk the kernel marks removable, with letters from
// 'A': those that hold an identity file first, because a memory stick with an earlier letter would
// be taken for the reader; then in the order of their mount points. GBDRIVER_DRIVES declares
// folders as removable drives instead; while it is set no other drive is looked at.
//
// The table of mounts and the kernel's own lists say which disks are removable. Nothing else that
// is mounted is touched: a file system whose server is gone would never answer.
//
// Thread: as the seam, one user at a time.
#pragma once

#include "device/mount_table.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// Where drive knowledge comes from; tests give their own.
struct LinuxDriveSources {
    std::string declared;    // value of GBDRIVER_DRIVES: LETTER=FOLDER[:LABEL], separated by ';'
    std::string blockFolder; // "/sys/dev/block"
    std::string labelFolder; // "/dev/disk/by-label"
    std::function<std::vector<MountedVolume>()> mountedVolumes;
};

LinuxDriveSources systemDriveSources();

struct LinuxDrive {
    char letter = 0;
    std::string folder;
    std::string label;
    std::string device; // as MountedVolume has it; empty for a declared folder
    std::string deviceNumber;
    bool isMounted = false; // the folder was a mount point when the drive was listed
};

// Reads one GBDRIVER_DRIVES value. Entries that make no sense are left out and described in
// `*complaints`, one line each. A colon in a folder's name needs a label behind it, if an empty
// one.
std::vector<LinuxDrive> parseDeclaredDrives(const std::string &declared,
                                            std::vector<std::string> *complaints);

// True if the kernel marks the disk of this device as removable. A disk that is gone is not
// removable.
bool isRemovableDevice(const std::string &deviceNumber, const std::string &blockFolder);

// The label of a device, from the links to the system's names of devices; empty if it has none.
std::string labelOfDevice(const std::string &deviceNumber, const LinuxDriveSources &sources);

// Whether the folder has no identity file of a reader's. False if that cannot be told.
bool lacksIdentityFile(const std::string &folder);

class LinuxDrives
{
public:
    // Complaints about the declaration go to standard error, once.
    explicit LinuxDrives(LinuxDriveSources sources);

    // Looks for drives anew. Returns: the mask of their letters, bit 0 for 'A'.
    std::uint32_t scan();

    // The drive that some scan of this process gave `letter` to last; null if none ever did. It may
    // be gone meanwhile: see isPresent().
    const LinuxDrive *find(char letter) const;

    // Whether the drive is there now: its folder exists, is still a mount point if it was one, and
    // its disk is still removable.
    bool isPresent(const LinuxDrive &drive) const;

private:
    std::vector<LinuxDrive> removableVolumes() const;
    // Gives letters and labels, to `readers` first.
    std::vector<LinuxDrive> lettered(std::vector<LinuxDrive> readers,
                                     std::vector<LinuxDrive> others) const;
    std::uint32_t list(std::vector<LinuxDrive> *drives);
    void remember(const LinuxDrive &drive);

    LinuxDriveSources m_sources;
    std::vector<LinuxDrive> m_declared;
    std::vector<LinuxDrive> m_known;
};
