// A generated cartridge in a virtual reader of this process, and the worker that runs jobs on it
// with the scripts of the source tree.
//
// The reader refuses reads that a disk would refuse. Before a job the cartridge's registers can be
// left as no script expects them. One fixture at a time: the device link is process-wide.
#pragma once

#include "mapper_facts.h"
#include "virtual/faulty_drive.h"
#include "virtual/in_process_drive.h"
#include "worker/famicom_thread.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

// How the report of an error in a script begins; libraries differ in how they spell the word.
constexpr char kScriptError[] = "AN ERROR HAS OCCUR";

struct JobOutcome {
    QVector<int> results; // flags of error(), one per job
    QStringList log;

    bool succeeded() const { return results == QVector<int>{1}; }
    bool failed() const { return results == QVector<int>{0}; }
    QString text() const { return log.join('\n'); }
};

class MapperFixture
{
public:
    // `ramSize` 0: a cartridge with ROM alone. `savePath`: file that keeps the save memory.
    MapperFixture(const MapperFacts &mapper, int romSize, int ramSize,
                  const QString &savePath = {});
    ~MapperFixture();

    // Runs one job to its end with the mapper's script. Counters and records are cleared before.
    JobOutcome run(JobCode operate, int size, const QString &fileName);
    JobOutcome runScript(const QString &scriptPath, JobCode operate, int size,
                         const QString &fileName);

    // Leaves the gate open and odd banks selected, as a program before this one could have.
    void disturbRegisters();

    FaultyDrive &drive() { return *m_drive; }
    VirtualReader &reader() { return m_inProcess->reader(); }
    QByteArray rom() const { return m_rom; }
    QByteArray save() { return bytesOf(reader().cartridge().saveImage()); }
    void setSave(const QByteArray &bytes);

    // Bus writes of the last job, in order.
    QVector<BlockRecord> busWrites();

    // What is wrong with the state that the cartridge was left in; empty if it is at rest: RAM gate
    // closed, ROM bank 1, RAM bank 0, MBC1 in mode 0. Finds it out on the bus and changes it. Sees
    // everything only on the largest ROM, and with RAM banks that hold different bytes.
    QString unrest();

    static QByteArray bytesOf(const ByteVector &bytes);

private:
    QByteArray busBytes(int address, int count);
    QString ramUnrest();
    QString modeUnrest();

    const MapperFacts &m_mapper;
    QByteArray m_rom;
    std::unique_ptr<DriveBackend> m_platform;
    std::unique_ptr<InProcessDrive> m_inProcess;
    std::unique_ptr<FaultyDrive> m_drive;
};

// `size` bytes that differ from one place to the next and between seeds.
QByteArray noise(int size, unsigned seed);

QByteArray fileBytes(const QString &path);
bool writeFile(const QString &path, const QByteArray &bytes);
