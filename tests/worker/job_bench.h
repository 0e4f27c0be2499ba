// Whole jobs from file to file: a worker object on a reader bench whose cartridge shows where a
// byte came from. Jobs run on their own thread; the test waits for the end.
#pragma once

#include "job_events.h"
#include "reader_bench.h"
#include "test_cartridge.h"

#include "worker/famicom_thread.h"

class JobBench : public ReaderBench
{
public:
    explicit JobBench(virtual_reader::VirtualReaderConfig config = {});

    // Runs the job with operation code `operate`, its other fields as they are, and waits until its
    // thread has ended. What an earlier job left in `events` and traffic() is forgotten.
    // Returns: true if the job reported success.
    bool run(int operate);

    QStringList logs() const { return logTexts(events); }

    TestCartridge &cartridge() { return static_cast<TestCartridge &>(ReaderBench::cartridge()); }

    // Makes `text` the job's mapper script.
    void setScript(const QByteArray &text);

    FamicomThread job;

private:
    UserFolder m_scripts;
};

// The tail of every job's events: the drive is free before the owner hears of the end.
QStringList jobEnd(bool succeeded);

// Entry functions that move the whole size with the natives of each operation.
extern const char kMovingScript[];
