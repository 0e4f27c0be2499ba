// The jobs of the self-test: what users do with their cartridges, on virtual ones, and a few that
// must fail.
//
// Thread: the main thread of an application; as with a TrialBench, the process has no drive backend
// afterwards.
#pragma once

#include <QString>

#include <array>
#include <cstdint>

enum class SelfTestKind {
    Dump,          // and compare with the game
    SaveRoundTrip, // write a save, look at the chip, read the save back
    Flash,         // write another game, look at the chip, dump it
    RefusedSize,   // the script must refuse a size that no cartridge has, and none else
    NoReader,      // the reader is not there from the start
    ReaderLeaves   // the drive vanishes in the middle of a dump
};

struct SelfTestRow {
    const char *name;
    SelfTestKind kind;
    const char *script;      // file name
    std::uint8_t headerType; // GB
    std::uint32_t romSize;   // bytes
    std::uint32_t ramSize;   // bytes of save
    int choice;              // GBA: save type of the settings; flash: 0 for an 8-bit chip, 1 for 16
    char saveBits;           // bits of a save byte that the chip keeps
};

// In the order in which they are run.
extern const std::array<SelfTestRow, 22> kSelfTestRows;

struct SelfTestResult {
    qint64 bytes = 0; // that the row's jobs moved
    qint64 timeMs = 0;
    QString problem; // what is not as it should be; empty: nothing. Without any path.
};

// Runs one row with the scripts in `scriptFolder`.
SelfTestResult runSelfTestRow(const SelfTestRow &row, const QString &scriptFolder);
