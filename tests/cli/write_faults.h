// What must be true after a write that went wrong somewhere: the old bytes are in the cartridge or in
// a backup, and what was said of them is right.
#pragma once

#include "fault_bench.h"

// True if the one backup holds what was in the chip.
bool hasBackup(const BenchCase &bench, const BenchRun &run);

// A BenchCheck of write-ram and flash.
QStringList problemsOfWrite(const BenchCase &bench, const BenchRun &run);

struct FaultCount {
    int injected = 0;
    int lost = 0; // runs after which the old bytes are nowhere
    int problems = 0;
};

// failEveryCall() of such a command. Says the figures, and every problem on a line of its own.
FaultCount failEveryCallOfWrite(const BenchCase &bench, Ways ways);
