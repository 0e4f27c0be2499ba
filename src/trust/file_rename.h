// Giving a finished file its name, in a way that a power cut cannot spoil.
#pragma once

#include <QString>

// Renames `from` to `to`, which lies in the same folder, and brings the folder's entry to the disk.
// A file `to` that exists is replaced in one step, or left alone and refused.
// Returns: false with the reason in `*problem`; both files are then as they were.
bool renameFile(const QString &from, const QString &to, bool replaces, QString *problem);
