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
    RunJob,        // `job` is complete
    DetectThenRun, // look at the cartridge, complete the job with what is found
    ShowInfo,      // print the cartridge report
    CheckScript,   // try the mapper script `fileName`
    ShowText,      // help or version: print `text`, end with success
    Refuse         // wrong usage: print `text`, end with failure
};

struct CliCommand; // a row of the table of job commands

struct CliOptions {
    CliRequest request = CliRequest::Refuse;
    QString text;
    CliJob job;
    const CliCommand *command = nullptr; // DetectThenRun; static
    QString fileName;                    // DetectThenRun, CheckScript
    QString scriptKind;                  // CheckScript: the shipped script for the same cartridges
    CartridgeValues values;              // what the user said
    char driveLetter = 0;                // the only drive to look at; 0 = all
    bool asJson = false;                 // ShowInfo
    bool isQuick = false;                // ShowInfo: without what needs the whole ROM
};

// `arguments`: all of the command line, program name first.
CliOptions parseCliOptions(const QStringList &arguments);

// Makes the job of a command from what is known of the cartridge. Returns: false with the reason,
// which names the option that is missing or wrong, in `*problem`.
bool completeJob(const CliCommand &command, const QString &fileName, const CartridgeValues &values,
                 CliJob *job, QString *problem);

// Reads a size in bytes, decimal, or with suffix K or M (1024, 1048576). Returns: false unless it
// is a whole number from 1 to 64 MiB, the largest cartridge.
bool parseSize(const QString &text, int *sizeBytes);
