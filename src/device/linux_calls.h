// System calls that the open files of the Linux backend share: repeated where a signal interrupts
// them, and to the last byte.
#pragma once

#include "device/drive_backend.h"

#include <sys/types.h>

#include <cstdint>
#include <string>

// What a new file of the user's may be, before the user's own mask.
constexpr mode_t kNewFileMode = 0666;

// open(), never inherited by another program. `mode` is that of a file that is created.
int openRetrying(const std::string &path, int flags, mode_t mode = 0);

// Keeps a second program from writing the same file at the same time. File systems without locks
// are taken as they are. Returns: false if somebody else holds the file.
bool lockForWriting(int descriptor);

ssize_t preadRetrying(int descriptor, void *destination, std::uint32_t length,
                      std::uint64_t offset);

// Writes everything or fails; `*count` says how far it came. Returns: 0 or an error number.
int pwriteAll(int descriptor, const void *source, std::uint32_t length, std::uint64_t offset,
              std::uint32_t *count);

DriveStatus sizeOf(int descriptor, const std::string &path, std::uint32_t *size);

// Of a read from a file that is open for writing, or the other way round.
DriveStatus notOpenFor(const char *purpose, const std::string &path);
