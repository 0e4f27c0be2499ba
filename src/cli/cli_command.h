// The commands of the headless program that run a job.
#pragma once

#include <QString>

// The one script of all GBA cartridges.
const QString kGbaScript = QStringLiteral("gba.nut");

// What a command moves, and so which size it needs to know.
enum class MovedData {
    Rom,    // the ROM size
    Save,   // the save size, and on the GBA the kind of save memory
    RomFile // nothing: the size is the file's
};

struct CliCommand {
    const char *name;
    int gbCode; // JobCode on a GB cartridge
    int gbaCode;
    MovedData moves;
};

// Returns: null if there is no such job.
const CliCommand *findCliCommand(const QString &name);
