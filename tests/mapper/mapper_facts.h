// The mappers that have a script, as the hardware has them: sizes, registers, and the fewest device
// operations that a job on them takes. Nothing here is taken from the scripts.
//
// Source: Pan Docs, "MBCs".
#pragma once

#include "virtual/operation_record.h"

#include <QSet>
#include <QVector>

#include <cstdint>

enum class MapperKind { None, Mbc1, Mbc5 };

struct MapperFacts {
    MapperKind kind;
    const char *name;
    const char *script;       // file name
    std::uint8_t romType;     // header type of a cartridge with ROM alone
    std::uint8_t ramType;     // and of one with RAM
    QVector<int> romSizes;    // bytes, ascending
    QVector<int> ramSizes;    // bytes, ascending
    QSet<unsigned> registers; // addresses that a script may write to
};

const QVector<MapperFacts> &mapperFacts();

// Device operations of one job.
struct Traffic {
    int commandRuns; // writes of the command file
    int blocks;
    int reads; // of any file
};

Traffic trafficOf(const OperationCounters &counters);

// What a job takes. A job sends two command files of one block each to select the bus, and reads
// the identity once. Then, for N ROM banks of 16 KiB and M RAM banks of 8 KiB:
//
// ROM: a read can cover 0x0000-0x7FFF, so two banks that lie side by side take one; any other bank
// takes one of its own. Every read needs one command file before it, and one more takes the
// cartridge back to rest, unless the first one already was the rest state, as it is for N = 2.
// Without a mapper there is one read and nothing else.
//   none   reads 1, command files 0
//   MBC5   reads N - 1, command files N (1 for N = 2); the only banks side by side are 0 and 1
//   MBC1   reads N - G, command files N - G + 1 (1 for N = 2), G = N / 32 rounded up: the number of
//          groups of 32 banks, and every group begins with two banks side by side
// Save: every bank takes one transfer with one command file before it, and one command file closes
// the gate. A write is a command file as well, of one block per 480 bytes: 18 for a bank.
//   MBC1, MBC5   read: M reads, M + 1 command files; write: 2 M + 1 command files
//
// Command files and reads are the least that is possible. Blocks are the exact number for scripts
// that write every register at the start and at the end of a job, and in between only what changes:
// see the functions for how many that is.
Traffic romDumpTraffic(const MapperFacts &mapper, int romSize);
Traffic saveReadTraffic(const MapperFacts &mapper, int ramSize);
Traffic saveWriteTraffic(const MapperFacts &mapper, int ramSize);

// Adds the columns `mapper` (index in mapperFacts()) and `size`, and a row for every size.
void addRomRows();
void addRamRows();
