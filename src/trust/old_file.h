// A file of the user's that a dump is about to replace, kept until the new one has been judged.
//
// Thread: one at a time; writing goes through the drive backend of the process.
#pragma once

#include "trust/outcome.h"

struct OldFileCopy {
    Outcome outcome; // Done, NoFolder or NoFile
    QString path;    // of the copy; empty: there was nothing to keep
};

// What stands in the way of writing `bytes` bytes to `path`, found out before they are read:
// NoFile, or Done.
Outcome targetTrouble(const QString &path, int bytes);

// Copies the ordinary file `path`, if there is one with any bytes, into `folder` (empty: the folder
// for backups). The copy is on the disk when the call returns with its path.
OldFileCopy keepOldFile(const QString &path, const QString &folder);

// Whether two files hold the same bytes; false if one of them cannot be read.
bool areEqualFiles(const QString &path, const QString &otherPath);
