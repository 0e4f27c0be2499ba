// The kinds of cartridges that the mapper scripts are for, and what a job on one must at least
// take.
#pragma once

#include <QString>

#include <cstdint>

// The kind of cartridge that a script is for, and the one it is tried on.
struct ScriptKind {
    const char *script; // file name in the mapper folder
    bool isGba;
    std::uint8_t headerType; // GB
    std::uint32_t romSize;   // bytes
    std::uint32_t ramSize;   // bytes; 0: nothing to try
    bool isGrouped;          // MBC1: the first two banks of every 32 come together
    char saveBits;           // bits of a save byte that the chip keeps; MBC2 has half bytes
};

// The kind that a script of this name drives. Returns: null if the name is none of the table's.
const ScriptKind *findScriptKind(const QString &scriptName);

// Command files written and reads made, by the script alone.
struct DeviceOperations {
    qint64 commandFiles = 0;
    qint64 reads = 0;
};

// The fewest operations with which a script can dump a ROM or move a save of this kind, given what
// the natives allow. Flash jobs have no such figure: how often an erase is looked at depends on the
// chip.
DeviceOperations leastOperations(int operate, const ScriptKind &kind);
