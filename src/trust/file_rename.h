// Giving a finished file its name, in a way that a power cut cannot spoil.
#pragma once

#include "trust/file_trouble.h"

// Renames `from` to `to`, which lies in the same folder, and brings the folder's entry to the disk.
// A file `to` that exists is replaced in one step, or left alone and refused.
// Returns: NotRenamed if it failed; both files are then as they were.
FileTrouble renameFile(const QString &from, const QString &to, bool replaces);
