// Shows a virtual reader as a mounted drive, through FUSE.
//
// All files are direct I/O: no cache of the system answers for the reader. A command file takes
// effect when a descriptor that may write it is closed, or when it is synced, before that call
// returns and once for each change. Reads of the command file return what was written and are not
// operations of the reader.
#pragma once

#include "virtual/reader_setup.h"

#include <string>

namespace virtual_reader
{

struct MountRequest {
    std::string mountPoint;                  // an existing folder
    std::string label = kDefaultReaderLabel; // the file system's name in the list of mounts
    bool background = false;
};

// Mounts, prints "mounted DIR" on standard output when the mount stands, and serves until SIGINT,
// SIGTERM or SIGHUP comes or somebody unmounts; then the mount is gone. In the background the
// calling process ends with success once the mount stands, and this function returns in the other
// one. Returns: false with the reason in `*error`.
bool serveMount(KeptReader &reader, const MountRequest &request, std::string *error);

} // namespace virtual_reader
