// Trying a mapper script on a virtual cartridge: what it defines for each operation, and what one
// job with it does. Nothing of this touches a real drive.
//
// Thread: the main thread of an application; blocks. The process-wide drive backend is replaced
// while a trial runs and put back to what it was told to be before.
#pragma once

#include <QString>
#include <QStringList>

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

enum class TrialOutcome {
    NotDefined, // the script does not define the operation's entry functions
    Refused,    // it threw, or did not load, for this operation
    Wrong,      // it ended well, but the bytes are not where they belong
    Right
};

struct ScriptTrial {
    QString operation; // "cpu_dump", "cpu_erase and cpu_flash", ...
    TrialOutcome outcome = TrialOutcome::NotDefined;
    int movedBytes = 0;
    int expectedBytes = 0;
    DeviceOperations used;
    DeviceOperations least; // what the natives allow
    bool hasLeast = false;
    QStringList log; // of the job
};

// Tries every operation of the kind's system, in the order of the job codes.
QList<ScriptTrial> tryScript(const QString &scriptPath, const ScriptKind &kind);
