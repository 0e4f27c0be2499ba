// What one look at every drive of this computer found, and which of them a job would take as the
// reader. Nothing is written to any drive.
//
// Thread: as the device link.
#pragma once

#include "device/drive_backend.h"

#include <QString>
#include <QStringList>
#include <QVector>

enum class DriveVerdict {
    NotRemovable, // not looked into
    NoIdentity,   // the identity file ends before the identity: refused
    Taken,        // the reader of every job
    AlsoPasses    // would be taken if no earlier drive were
};

// One file of the reader's.
struct FileFinding {
    DriveErrorCode code = DriveErrorCode::None; // of opening it or, the identity's, of reading it
    QString error;                              // the system's text

    bool ok() const { return code == DriveErrorCode::None; }
    bool isMissing() const { return code == DriveErrorCode::NotFound; }
};

struct DriveFinding {
    char letter = 0;
    DriveType type = DriveType::Unknown;
    QString place; // as DriveBackend::drivePlace()
    DriveVerdict verdict = DriveVerdict::NotRemovable;
    char takenLetter = 0; // AlsoPasses: the drive that comes first
    // Of removable drives only:
    QString label;
    QString labelError; // why there is none; empty: the label could be read
    FileFinding identityFile;
    QString identity; // up to 16 characters; see hasIdentity()
    FileFinding command;
    FileFinding dump;

    bool passes() const
    {
        return verdict == DriveVerdict::Taken || verdict == DriveVerdict::AlsoPasses;
    }
    // Whether `identity` is what the drive says, be it blank.
    bool hasIdentity() const { return passes() && identityFile.ok(); }
};

// Looks at every logical drive of the process's backend, by letter; the command file has to be one
// that may be written. The verdict is the device
// link's own, so the link's letter, label, identity and last error change as by a scan.
QVector<DriveFinding> examineDrives();

struct NamedReader {
    char letter = 0; // 0: there is none
    QString identity;
};

// Looks for the drive that a job would take, if it says who it is: a look that nobody asked for
// must not take a strange stick for the reader. What is found becomes the device link's reader;
// without one the link's letter is as before.
NamedReader findNamedReader();

// "removable", "fixed disk", ...
QString driveTypeText(DriveType type);

// Why the drive is or is not taken as the reader.
QString verdictText(const DriveFinding &finding);

// Whether a file of the reader's could be opened: "opens", "missing", "fails: ..."
QString fileText(const FileFinding &file);

// All of the above about one drive, the first line for the drive itself, the others indented.
QStringList driveLines(const DriveFinding &finding);
