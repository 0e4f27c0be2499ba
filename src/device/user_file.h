// Files of the user's that are written: as a whole or not at all where they are ordinary files, at
// once where they are pipes or devices.
//
// A whole file lies in a temporary one beside its target until it is closed. The temporary file
// belongs to the program that has it open; one that nobody has open was left by a program that was
// ended before its time.
#pragma once

#include "device/drive_backend.h"

#include <memory>
#include <string>

// Implements DriveBackend::openForWrite() for a path that is not on the reader's drive.
DriveStatus openUserFileForWrite(const std::string &path, std::unique_ptr<DriveFile> *file);

// Name of the temporary file `number`, from 1, for a target called `name`; at most `longest` bytes
// of which the target's name may lose its end.
std::string temporaryName(const std::string &name, int number, std::size_t longest);

// Whether `name` is one of those.
bool isTemporaryName(const std::string &name);

enum class TemporaryUse {
    LeftBehind,
    InUse,
    NotKnown // it cannot be opened, or its file system has no locks
};

TemporaryUse useOfTemporary(const std::string &path);

// Removes a temporary file that was left behind. Refused if it was not, or if nobody can tell.
DriveStatus removeTemporary(const std::string &path);
