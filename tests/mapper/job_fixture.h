// A virtual reader of this process with a cartridge in its slot, and the worker that runs jobs on
// it with the scripts of the source tree.
//
// The reader refuses reads that a disk would refuse. Erase polls do not wait. One fixture at a
// time: the device link is process-wide.
#pragma once

#include "virtual/faulty_drive.h"
#include "virtual/in_process_drive.h"
#include "worker/famicom_thread.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVector>

#include <memory>

// How the report of an error in a script begins; libraries differ in how they spell the word.
constexpr char kScriptError[] = "AN ERROR HAS OCCUR";

// What a refusal ends with.
constexpr char kNothingSent[] = "Nothing was sent to the cartridge.";

struct Job {
    const char *script; // file name
    JobCode operate;
    int size = 0; // bytes; of ROM or save, as the operation has it
    QString fileName = {};
    int saveType = 0;    // GBA
    int flashWidth = 0;  // GB
    int cancelAfter = 0; // looks of an erase poll before the user cancels; 0: never
};

struct JobOutcome {
    QVector<int> results; // flags of error(), one per job
    QStringList log;

    bool succeeded() const { return results == QVector<int>{1}; }
    bool failed() const { return results == QVector<int>{0}; }
    QString text() const { return log.join('\n'); }
};

class JobFixture
{
public:
    // `savePath`: file that keeps the save memory; empty: none. A null cartridge is an empty slot.
    explicit JobFixture(std::unique_ptr<virtual_reader::Cartridge> cartridge,
                        const QString &savePath = {});
    ~JobFixture();

    // Runs one job to its end. Counters and records are cleared before.
    JobOutcome run(const Job &job);

    virtual_reader::FaultyDrive &drive() { return *m_drive; }
    virtual_reader::VirtualReader &reader() { return m_inProcess->reader(); }
    virtual_reader::Cartridge &cartridge() { return reader().cartridge(); }
    QByteArray rom() { return bytesOf(cartridge().romImage()); }
    QByteArray save() { return bytesOf(cartridge().saveImage()); }
    void setSave(const QByteArray &bytes);
    QByteArray busBytes(int address, int count);

    // Bus writes of the last job, in order.
    QVector<virtual_reader::BlockRecord> busWrites();
    // True if the last job sent nothing but the selection of the bus.
    bool nothingWasSent();
    // Blocks and reads of the last job that the reader refused.
    std::uint64_t refused();

    static QByteArray bytesOf(const virtual_reader::ByteVector &bytes);

private:
    std::unique_ptr<DriveBackend> m_platform;
    std::unique_ptr<virtual_reader::InProcessDrive> m_inProcess;
    std::unique_ptr<virtual_reader::FaultyDrive> m_drive;
};

// `size` bytes that differ from one place to the next and between seeds.
QByteArray noise(int size, unsigned seed);

QByteArray fileBytes(const QString &path);
bool writeFile(const QString &path, const QByteArray &bytes);

// A command file or a read of DUMP.ROM that fails once, after so many of them.
virtual_reader::DriveFault commandFileFault(unsigned after);
virtual_reader::DriveFault dumpReadFault(unsigned after);
