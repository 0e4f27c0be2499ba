// What came of each memory of a cartridge that was backed up, and the small text file about it that
// lies beside the files.
//
// Thread: pure functions over records; any thread.
#pragma once

#include "trust/cartridge_values.h"
#include "trust/outcome.h"
#include "trust/verdict.h"

#include <QDateTime>

// How the backup of a memory ended.
enum class MemoryEnd {
    Kept,         // read and judged; in a file, new or there already
    NoMemory,     // the cartridge has none
    NotKnown,     // what a job needs to know is missing; see `missing`
    Dangerous,    // see `danger`
    Locked,       // an MMM01 shows its save in pieces after a large ROM
    UnknownGame,  // a GBA game of which no table knows the save
    Swapped,      // another cartridge is in the slot meanwhile
    NotRead,      // the first read failed; see `outcome`
    NotReadTwice, // or a later one, or the user stopped; `path` has the first one
    NotWritten    // the file could not be written; see `outcome`
};

// ROM or save.
struct BackedUpMemory {
    MemoryEnd end = MemoryEnd::NoMemory;
    QByteArray bytes;
    QByteArray sha1;      // 20 bytes
    QString path;         // empty: no file
    bool isThere = false; // the file was in the folder already
    Verdict verdict;      // if it was judged
    int reads = 0;
    qint64 milliseconds = 0; // of the first read
    Outcome outcome;
    Danger danger = Danger::None;
    MissingValue missing = MissingValue::None;
    QString advice; // what the user can do about the end, in the terms of the face; may be empty
};

struct BackupRecord {
    QString program; // name and version
    QString title;
    QString label; // of the reader's drive
    QString firmware;
    CartridgeValues values;
    QString scriptPath;
    QDateTime begin;
    QDateTime end;
    BackedUpMemory rom;
    BackedUpMemory save;
};

// One line: the verdict, or why there is none.
QString memoryText(const BackedUpMemory &memory);

// The same without the word of the verdict.
QString memoryGrounds(const BackedUpMemory &memory);

// The names of its values are English in every language; what was found is said as on the screen.
QString reportText(const BackupRecord &record);
