// What tests of careful steps share: jobs of a small GB cartridge, faults of its reader, and who
// hears of the steps.
#pragma once

#include "samples.h"

#include "trial/trial_bench.h"
#include "trust/outcome.h"
#include "trust/words.h"

#include <QStringList>

// Read in three pieces: the first two banks, then one after the other.
constexpr std::uint32_t kBenchRom = 64 * 1024;
constexpr std::uint32_t kBenchSave = 32 * 1024;

// Writes phases and their ends into one list: "backup 32768", "end".
class PhaseRecorder : public TrustListener
{
public:
    void onPhase(Phase phase, int totalBytes) override
    {
        phases << QString("%1 %2").arg(wordOf(phase)).arg(totalBytes);
    }
    void onPhaseEnd(const JobResult & /*result*/) override { phases << "end"; }
    void onLine(const QString & /*line*/) override {}
    void onProgress(int /*doneBytes*/, int /*maximum*/) override {}
    bool isStopWanted() override { return questionsUntilStop-- == 0; }

    QStringList phases;
    // How often the user still answers that all may go on; -1: always.
    int questionsUntilStop = -1;
};

// An MBC5 with a save.
inline TrialCartridge benchCartridge()
{
    TrialCartridge cartridge;
    cartridge.headerType = 0x1B;
    cartridge.romSize = kBenchRom;
    cartridge.ramSize = kBenchSave;
    return cartridge;
}

inline CartridgeJob benchJob(int operate)
{
    CartridgeJob job;
    job.operate = operate;
    job.scriptPath = SHIPPED_SCRIPTS "/gb_mbc5.nut";
    job.romSize = movesSave(operate) ? 0 : int(kBenchRom);
    job.ramSize = movesSave(operate) ? int(kBenchSave) : 0;
    return job;
}

inline void loadSave(TrialBench &bench, const QByteArray &save)
{
    putSave(&bench.reader().cartridge(), save);
}

// Reads of the cartridge's data from now on that still go through before one fails with an error,
// or with `flips` goes through with other bytes: all of them, or the one at `flippedByte`.
inline void addReadFault(TrialBench &bench, std::uint32_t after, std::uint8_t flips = 0,
                         std::uint32_t flippedByte = virtual_reader::DriveFault::kAllBytes)
{
    virtual_reader::DriveFault fault;
    fault.pathEnd = "DUMP.ROM";
    fault.after = after;
    fault.flips = flips;
    fault.flippedByte = flippedByte;
    if (flips != 0) {
        fault.code = DriveErrorCode::None;
        fault.bytes = virtual_reader::DriveFault::kAllBytes;
    }
    bench.drive().addFault(fault);
}
