// What tests of single steps share: jobs of a small GB cartridge, and faults of its reader.
#pragma once

#include "cli/interrupt.h"
#include "cli/job_runner.h"
#include "cli/trial_bench.h"
#include "worker/famicom_thread.h"

// Read in three pieces: the first two banks, then one after the other.
constexpr std::uint32_t kBenchRom = 64 * 1024;
constexpr std::uint32_t kBenchSave = 32 * 1024;

// An MBC5 with a save.
inline TrialCartridge benchCartridge()
{
    TrialCartridge cartridge;
    cartridge.headerType = 0x1B;
    cartridge.romSize = kBenchRom;
    cartridge.ramSize = kBenchSave;
    return cartridge;
}

// `operate`: GB_READ_ROM or GB_READ_RAM.
inline CliJob benchJob(int operate)
{
    CliJob job;
    job.operate = operate;
    job.scriptName = "gb_mbc5.nut";
    job.romSize = operate == GB_READ_ROM ? int(kBenchRom) : 0;
    job.ramSize = operate == GB_READ_RAM ? int(kBenchSave) : 0;
    return job;
}

inline void loadSave(TrialBench &bench, const QByteArray &save)
{
    if (!bench.reader().cartridge().loadSave(virtual_reader::ByteVector(save.begin(), save.end())))
        qFatal("the cartridge does not take its save");
}

// Reads of the cartridge's data from now on that still go through before one fails with an error, or
// with `flips` goes through with other bytes.
inline void addReadFault(TrialBench &bench, std::uint32_t after, std::uint8_t flips = 0)
{
    virtual_reader::DriveFault fault;
    fault.pathEnd = "DUMP.ROM";
    fault.after = after;
    fault.flips = flips;
    if (flips != 0) {
        fault.code = DriveErrorCode::None;
        fault.bytes = virtual_reader::DriveFault::kAllBytes;
    }
    bench.drive().addFault(fault);
}
