// The cartridge kinds that the mapper scripts serve, as the hardware has them: sizes, registers,
// and the fewest device operations that a job on them takes. Nothing here is taken from the
// scripts.
//
// Source: Pan Docs, "MBCs".
#pragma once

#include "virtual/operation_record.h"

#include <QSet>
#include <QVector>

#include <cstdint>

enum class MapperKind {
    None,
    Mmm01,
    Mbc1,
    Mbc2,
    Mbc3,
    Mbc30,
    Mbc5,
    Rumble,
    Camera,
    Huc3,
    Mbc7,
    Huc1,
    Tama5
};

struct MapperFacts {
    MapperKind kind;
    const char *name;
    const char *script;       // file name
    std::uint8_t romType;     // header type of a cartridge with ROM alone
    std::uint8_t ramType;     // and of one with RAM
    QVector<int> romSizes;    // bytes, ascending
    QVector<int> ramSizes;    // bytes, ascending; empty: none that a script can transfer
    QSet<unsigned> registers; // addresses that a script may write to

    // Every 32nd ROM bank can be seen only at 0x0000, with the next one behind it.
    bool hasBankGroups() const { return kind == MapperKind::Mbc1 || kind == MapperKind::Mmm01; }
    // A script that cannot tell these two apart has to wait for one of them to wake up.
    bool mustBeWoken() const { return kind == MapperKind::Huc1 || kind == MapperKind::Tama5; }
};

const QVector<MapperFacts> &mapperFacts();
const MapperFacts &factsOf(MapperKind kind);

// Device operations of one job.
struct Traffic {
    int commandRuns; // writes of the command file
    int reads;       // of any file
};

Traffic trafficOf(const virtual_reader::OperationCounters &counters);

// What a job sends and reads before its script is called: two command files to select the bus, and
// the identity.
constexpr Traffic kJobTraffic = {2, 1};

// The least that is possible, the above included, for N ROM banks of 16 KiB and M transfers of save
// memory, of up to 8 KiB each:
//
// ROM: a read can cover 0x0000-0x7FFF, so two banks that lie side by side take one; any other bank
// takes one of its own. Every read needs one command file before it, and one more takes the
// cartridge back to rest, unless the first one already was the rest state, as it is for N = 2.
//   without a mapper  1 read, no command file
//   with bank groups  N - G reads, N - G + 1 command files; G = N / 32 rounded up, the number of
//                     pairs of banks side by side
//   any other         N - 1 reads, N command files; the only banks side by side are 0 and 1
//   if to be woken    one read, which passes the time, and one command file more
// Save: every transfer has one command file before it, and one command file closes the gate. A
// write is a command file as well: M reads and M + 1 command files, or 2 M + 1 command files.
// Cartridges without a mapper are no exception: their script cannot tell them from an MMM01.
Traffic romDumpTraffic(const MapperFacts &mapper, int romSize);
Traffic saveReadTraffic(int ramSize);
Traffic saveWriteTraffic(int ramSize);

// Adds the columns `mapper` (index in mapperFacts()) and `size`, and a row for every size.
void addRomRows();
void addRamRows();
