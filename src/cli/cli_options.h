// What the command line asks for, read and checked before anything is touched.
// Pure functions over the arguments; any thread.
#pragma once

#include "trust/cartridge_task.h"

#include <QString>
#include <QStringList>

enum class CliRequest {
    ShowText, // help, version, manual or completion: print `text`, end with success
    Refuse,   // wrong usage: print `text`, end with ExitCode::Usage
    Info,
    Dump,
    ReadRam,
    WriteRam,
    Flash,
    Verify,
    Backup,
    Drives,
    Scripts,
    SelfTest,
    CheckScript,
    Tidy
};

// What one run of the program is asked for. What a command has no option for keeps its default.
struct CliOptions {
    CliRequest request = CliRequest::Refuse;
    QString text;           // ShowText, Refuse: lines, ends with a line break
    QString path;           // FILE or DIR; never empty where a command takes one
    CartridgeValues values; // what the user said
    char driveLetter = 0;   // the only drive to look at, 'A' to 'Z'; 0: all
    bool asJson = false;    // never together with isQuiet
    bool isQuiet = false;
    bool isQuick = false;     // Info: without what needs the whole ROM
    bool looks = true;        // the cartridge is looked at first; false: `values` are complete
    int reads = 0;            // how often to read, 1 to 9; 0: the command's default
    bool verifies = true;     // false: one read, compared with nothing
    QStringList datFiles;     // the user's own tables of known dumps
    bool overwrites = false;  // an existing FILE is replaced
    bool ignoresSize = false; // a FILE of the wrong size is written
    bool ignoresContradiction = false; // `values` win over what the cartridge names
    bool ignoresBlank = false; // a save of equal bytes is replaced, whoever named its memory
    bool makesBackup = true;
    QString backupFolder; // empty: the default one
    int count = 0;        // Backup: end after so many cartridges; 0: never
    QString scriptKind;   // CheckScript: the shipped script for the same cartridges; may be empty
    bool allowsFiles = false; // CheckScript: the script may use files
};

// `arguments`: all of the command line, program name first. A job that does not look at its
// cartridge is refused unless it has all that makeJob() needs.
CliOptions parseCliOptions(const QStringList &arguments);

// Reads a size in bytes, decimal, or with suffix K or M (1024, 1048576). Returns: false unless it
// is a whole number from 1 to 64 MiB, the largest cartridge.
bool parseSize(const QString &text, int *sizeBytes);
