// A file of the user's that is replaced in one step, under Linux.
#pragma once

#include "device/linux_write_target.h"

#include <memory>
#include <string>

// `target`: New or Ordinary. `path` is the user's name for it, for messages. The folder is written
// to at once, so that one that cannot be shows early.
DriveStatus openWholeFile(const WriteTarget &target, const std::string &path,
                          std::unique_ptr<DriveFile> *file);

// Whether `path` names the file that is open as `descriptor`.
bool isStillNamed(int descriptor, const std::string &path);
