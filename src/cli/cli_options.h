// What the command line asks for, read and checked before anything is touched.
// Pure functions over the arguments; any thread.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

// One headless job, in the terms of the job fields.
struct CliJob {
    int operate = 0;    // a JobCode
    QString fileName;   // of the user
    QString scriptName; // file name in the mapper folder
    int romSize = 0;    // bytes; 0 for save jobs
    int ramSize = 0;    // bytes; 0 for ROM jobs
    int saveType = 0;   // GBA saves: 0 SRAM, 1 FLASH, 2 EEP
    int flashWidth = 0; // GB flash: 0 = 8-bit chip, 1 = 16-bit chip
};

// What is known of the cartridge, from the user or from the report; the values of the settings
// tables.
struct CartridgeValues {
    std::optional<int> system;
    std::optional<int> mapper;
    std::optional<int> romSize;
    std::optional<int> ramSize;
    std::optional<int> saveType;
};

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
    CheckScript
};

struct CliCommand; // a row of the table of job commands

// What one run of the program is asked for. What a command has no option for keeps its default.
struct CliOptions {
    CliRequest request = CliRequest::Refuse;
    QString text;                        // ShowText, Refuse: lines, ends with a line break
    const CliCommand *command = nullptr; // the job of dump, read-ram, write-ram, flash; static
    QString path;                        // FILE or DIR; never empty where a command takes one
    CartridgeValues values;              // what the user said
    char driveLetter = 0;                // the only drive to look at, 'A' to 'Z'; 0: all
    bool asJson = false;                 // never together with isQuiet
    bool isQuiet = false;
    bool isQuick = false;    // Info: without what needs the whole ROM
    bool looks = true;       // the cartridge is looked at first; false: `values` are complete
    int reads = 0;           // how often to read, 1 to 9; 0: the command's default
    bool verifies = true;    // false: one read, compared with nothing
    QStringList datFiles;    // the user's own tables of known dumps
    bool overwrites = false; // an existing FILE is replaced
    bool forces = false;     // a FILE of the wrong size is written
    bool makesBackup = true;
    QString backupFolder; // empty: the default one
    int count = 0;        // Backup: end after so many cartridges; 0: never
    QString scriptKind;   // CheckScript: the shipped script for the same cartridges; may be empty
};

// `arguments`: all of the command line, program name first. A job that does not look at its
// cartridge is refused unless completeJob() has all it needs.
CliOptions parseCliOptions(const QStringList &arguments);

// Makes the job of a command from what is known of the cartridge. Returns: false with the reason,
// which names the option that is missing or wrong, in `*problem`.
bool completeJob(const CliCommand &command, const QString &fileName, const CartridgeValues &values,
                 CliJob *job, QString *problem);

// Reads a size in bytes, decimal, or with suffix K or M (1024, 1048576). Returns: false unless it
// is a whole number from 1 to 64 MiB, the largest cartridge.
bool parseSize(const QString &text, int *sizeBytes);
