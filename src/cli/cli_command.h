// The commands of the headless program that run a job.
#pragma once

#include <QString>

struct CliCommand {
    const char *name;
    int gbCode; // JobCode on a GB cartridge
    int gbaCode;
    bool movesSave; // save memory rather than ROM
};

// Returns: null if there is no such job.
const CliCommand *findCliCommand(const QString &name);
