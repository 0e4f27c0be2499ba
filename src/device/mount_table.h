// The table of mounted file systems. It is read and nothing else: a file system whose server is
// gone would keep whoever asks it for anything.
//
// Thread: any.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

// A mounted file system as the system lists it.
struct MountedVolume {
    std::string deviceNumber; // "8:17", as the names in /sys/dev/block
    std::string device;       // "/dev/sdb1"; whatever the mount calls it, for people
    std::string folder;       // mount point
};

// Reads a table in the form of /proc/self/mountinfo, in the order in which the mounts were made. A
// line that makes no sense is passed over.
std::vector<MountedVolume> parseMountTable(const std::string &text);

// The same for the file at `path`; one that cannot be read is an empty table.
std::vector<MountedVolume> readMountTable(const char *path);

// Whether another mount was made later on the mount point of `volumes[index]` or around it: the
// path leads there then.
bool isHiddenMount(const std::vector<MountedVolume> &volumes, std::size_t index);
