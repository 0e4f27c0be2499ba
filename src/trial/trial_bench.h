// A bench for trying jobs: a virtual cartridge in a virtual reader of this process, whose drive can
// be made to fail, and the same engine that serves real cartridges. Nothing of this touches a real
// drive or a file.
//
// One bench at a time: it is the process's drive backend while it exists, and afterwards the
// process has none.
//
// Thread: any; it blocks while a job runs.
#pragma once

#include "script/job.h"
#include "virtual/cartridge_options.h"
#include "virtual/faulty_drive.h"
#include "virtual/in_process_drive.h"

#include <QByteArray>
#include <QStringList>

#include <memory>

// A cartridge with a generated game. Sizes in bytes.
struct TrialCartridge {
    bool isGba = false;
    std::uint8_t headerType = 0; // GB
    std::uint32_t romSize = 0;
    std::uint32_t ramSize = 0; // GB; a GBA save is as `options` say
    virtual_reader::CartridgeOptions options;
};

struct TrialRun {
    JobResult result;
    QStringList log;
};

// The game of a cartridge; another `seed` makes another one.
QByteArray trialImage(const TrialCartridge &cartridge, unsigned seed = 1);

// A save of `size` bytes that is none a chip begins with.
QByteArray trialNoise(int size);

class TrialBench
{
public:
    // A cartridge that cannot be built is a programming error.
    explicit TrialBench(const TrialCartridge &cartridge);
    ~TrialBench();
    TrialBench(const TrialBench &) = delete;
    TrialBench &operator=(const TrialBench &) = delete;

    // The game as it was made.
    const QByteArray &image() const { return m_image; }
    // What is in the cartridge now.
    QByteArray rom() { return bytesOf(reader().cartridge().romImage()); }
    QByteArray save() { return bytesOf(reader().cartridge().saveImage()); }

    virtual_reader::FaultyDrive &drive() { return m_drive; }
    virtual_reader::VirtualReader &reader() { return m_inProcess.reader(); }

    // Runs one job to its end. Erases take no time, and one that never ends is cancelled. So is a
    // script that never ends.
    TrialRun run(const CartridgeJob &job, const QByteArray &input = {});

private:
    static QByteArray bytesOf(const virtual_reader::ByteVector &bytes);

    QByteArray m_image;
    std::unique_ptr<DriveBackend> m_platform;
    virtual_reader::InProcessDrive m_inProcess;
    virtual_reader::FaultyDrive m_drive;
};
