// What the command line asks for, read and checked before anything is touched.
// Pure functions over the arguments; any thread.
#pragma once

#include <QString>
#include <QStringList>

// One headless job, in the terms of the job fields.
struct CliJob {
    int operate = 0;      // a JobCode
    QString fileName;     // of the user
    QString scriptName;   // file name in the mapper folder
    int romSize = 0;      // bytes; 0 for save jobs
    int ramSize = 0;      // bytes; 0 for ROM jobs
    int saveType = 0;     // GBA saves: 0 SRAM, 1 FLASH, 2 EEP
    char driveLetter = 0; // the only drive to look at; 0 = all
};

enum class CliRequest {
    RunJob,
    ShowText, // help or version: print `text`, end with success
    Refuse    // wrong usage: print `text`, end with failure
};

struct CliOptions {
    CliRequest request = CliRequest::Refuse;
    QString text;
    CliJob job;
};

// `arguments`: all of the command line, program name first.
CliOptions parseCliOptions(const QStringList &arguments);

// Reads a size in bytes, decimal, or with suffix K or M (1024, 1048576). Returns: false unless it
// is a whole number from 1 to 64 MiB, the largest cartridge.
bool parseSize(const QString &text, int *sizeBytes);
