// What must be true after a write that went wrong somewhere: the old bytes are in the cartridge or
// in a backup, and what was said of them is right.
#pragma once

#include "fault_bench.h"

// True if the one backup holds what was in the chip.
bool hasBackup(const BenchCase &bench, const BenchRun &run);

// A BenchCheck of write-ram and flash.
QStringList problemsOfWrite(const BenchCase &bench, const BenchRun &run);
