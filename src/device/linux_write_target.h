// What a path that is to be written leads to.
#pragma once

#include "device/drive_backend.h"

#include <sys/stat.h>

#include <string>

struct WriteTarget {
    enum class Kind {
        New,      // nothing is there yet
        Ordinary, // an ordinary file
        Stream,   // a pipe, a device, or what a process has open
        OwnStream // what this process has open as `descriptor`
    };

    DriveStatus status; // of a failure; the rest then means nothing
    Kind kind = Kind::New;
    std::string path;     // behind all links
    struct stat old = {}; // of Ordinary
    int descriptor = -1;
};

// Follows links to their end, also where nothing is there. A folder is Refused.
WriteTarget findWriteTarget(const std::string &path);

// The folder of `path`, and what is behind its last slash.
std::string folderOf(const std::string &path);
std::string nameOf(const std::string &path);
