// A virtual reader as this process's drive, with a cartridge in its slot, a drive between the two
// that can be made to fail, and a folder for the user's files.
//
// Every bench starts from a device link that has not looked for a reader yet. The reader refuses
// reads that a disk would refuse. Erase polls do not wait. One bench at a time: the device link is
// process-wide.
#pragma once

#include "files.h"
#include "samples.h"

#include "script/job.h"
#include "virtual/faulty_drive.h"
#include "virtual/in_process_drive.h"

#include <QStringList>

#include <memory>
#include <vector>

struct BenchSetup {
    virtual_reader::VirtualReaderConfig config = {};
    virtual_reader::InProcessDriveOptions drive = {};
    QString savePath = {}; // see keptIn()
};

// The save memory is kept in this file; empty: in none.
BenchSetup keptIn(const QString &savePath);

struct JobRun {
    JobResult result;
    QStringList log;

    bool succeeded() const { return result.end == JobEnd::Done; }
    QString text() const { return log.join('\n'); }
};

// Entry functions that leave the cartridge alone.
extern const char kIdleScript[];

class ReaderBench : public UserFolder
{
public:
    // A null cartridge is an empty slot.
    explicit ReaderBench(std::unique_ptr<virtual_reader::Cartridge> cartridge,
                         BenchSetup setup = {});
    ~ReaderBench();
    ReaderBench(const ReaderBench &) = delete;
    ReaderBench &operator=(const ReaderBench &) = delete;

    virtual_reader::VirtualReader &reader() { return m_reader->reader(); }
    virtual_reader::Cartridge &cartridge() { return reader().cartridge(); }
    virtual_reader::FaultyDrive &drive() { return *m_drive; }

    QByteArray rom() { return toByteArray(cartridge().romImage()); }
    QByteArray save() { return toByteArray(cartridge().saveImage()); }
    void setSave(const QByteArray &bytes) { putSave(&cartridge(), bytes); }
    QByteArray busBytes(int address, int count);

    // Runs one job on this thread to its end. What an earlier one left in `events` and in the
    // reader's records is forgotten. `looks`: of an erase poll before the user stops the job; 0:
    // never.
    JobRun run(const CartridgeJob &job, const QByteArray &input = {}, int looks = 0);

    // What the job told, see job_events.h, and "release" when the program gave the drive up, in
    // that order of time.
    QStringList events;

    // Commands and reads that reached the reader: "F0/02" for a command (class and opcode in
    // hexadecimal), "AA<-98" for a write on the GB bus, the blocks of one run joined by a blank;
    // "DUMP 0+1024" or "DRIVER 0+4096" for a read. Scans for the reader are left out.
    QStringList traffic();
    // Writes on the GB bus, in order.
    std::vector<virtual_reader::BlockRecord> busWrites();
    // True if nothing was sent but the selection of the bus.
    bool nothingWasSent();
    // Blocks and reads that the reader refused.
    std::uint64_t refused();

private:
    std::unique_ptr<DriveBackend> m_files;
    std::unique_ptr<virtual_reader::InProcessDrive> m_reader;
    std::unique_ptr<virtual_reader::FaultyDrive> m_drive;
};
