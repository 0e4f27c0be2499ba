// Whole jobs: a worker object, a virtual reader as this process's drive, a folder for the user's
// files. Jobs run on their own thread; the test waits for the end. Erase polls do not wait.
#pragma once

#include "test_cartridge.h"

#include "virtual/faulty_drive.h"
#include "virtual/in_process_drive.h"
#include "worker/famicom_thread.h"

#include <QStringList>
#include <QTemporaryDir>

#include <memory>

// Tells when the program gives the drive up.
class ReleaseReportingDrive : public virtual_reader::FaultyDrive
{
public:
    ReleaseReportingDrive(DriveBackend &inner, QStringList *events);
    void releaseDrive() override;

private:
    QStringList *m_events;
};

class JobBench
{
public:
    explicit JobBench(virtual_reader::VirtualReaderConfig config = {});
    ~JobBench();
    JobBench(const JobBench &) = delete;
    JobBench &operator=(const JobBench &) = delete;

    // Runs the job with operation code `operate`, its other fields as they are, and waits until its
    // thread has ended. What an earlier job left in `events` and traffic() is forgotten.
    // Returns: true if the job reported success.
    bool run(int operate);

    // What the job emitted, and "release" when the drive was given up, in that order of time.
    QStringList events;
    QStringList logs() const;

    // Commands and reads that reached the reader: "F0/02" for a command (class and opcode in
    // hexadecimal; blocks of one run are joined by a blank), "DUMP 0+1024" or "DRIVER 0+4096" for a
    // read. The scan for the drive is left out.
    QStringList traffic();

    TestCartridge &cartridge() { return *m_cartridge; }
    virtual_reader::FaultyDrive &drive() { return *m_drive; }

    // The user's folder: path of a name in it, a new file, the bytes of a file, all names.
    QString path(const QString &name) const { return m_folder.filePath(name); }
    QString addFile(const QString &name, const QByteArray &bytes) const;
    QByteArray fileBytes(const QString &name) const;
    QStringList fileNames() const;

    // Makes `text` the job's mapper script.
    void setScript(const QByteArray &text);

    FamicomThread job;

private:
    QTemporaryDir m_folder;
    QTemporaryDir m_scripts;
    std::unique_ptr<DriveBackend> m_files;
    TestCartridge *m_cartridge = nullptr; // owned by the reader
    std::unique_ptr<virtual_reader::InProcessDrive> m_reader;
    std::unique_ptr<ReleaseReportingDrive> m_drive;
};

// The tail of every job's events: the drive is free before the owner hears of the end.
QStringList jobEnd(bool succeeded);

// Entry functions that move the whole size with the natives of each operation.
extern const char kMovingScript[];
// Entry functions that leave the cartridge alone.
extern const char kIdleScript[];
