// The reader's files as a FUSE file system: one flat folder, answered request by request.
//
// Thread: the requests of a session come one after the other.
#pragma once

#include "virtual/reader_setup.h"

#define FUSE_USE_VERSION 34
#include <fuse_lowlevel.h>

namespace virtual_reader
{

// What the callbacks work on; the user data of their session.
struct MountedReader {
    explicit MountedReader(KeptReader &kept) : reader(kept) {}

    KeptReader &reader;
    ByteVector commandFile;
    bool commandFileChanged = false; // since it last took effect
    ByteVector readBuffer;
};

// All callbacks, for fuse_session_new() with a MountedReader as user data.
fuse_lowlevel_ops fileCallbacks();

} // namespace virtual_reader
