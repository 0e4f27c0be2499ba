// One cartridge job off the GUI thread, from the user's file or into it: dump a ROM or a save,
// write a save back, or write a ROM into a GB flash cartridge.
//
// The owner fills the job fields and calls start(). run() goes through the steps of job_run.h, with
// the user's file read before the script's part or written behind it, and reports the end with
// set_progress(1, 1) and error(). One object serves any number of jobs, one after the other; fields
// keep their values between jobs.
//
// Thread: the object and canceled() belong to the thread that made it; run() and the signals to the
// worker. The job fields may be written only while no job runs.
#pragma once

#include "script/job.h"

#include <QString>
#include <QThread>

#include <atomic>

class FamicomThread : public QThread
{
    Q_OBJECT

public:
    FamicomThread();

    std::atomic<int> cancel_flag{0};     // 1 = the user asked to cancel; relaxed order is enough
    std::atomic<bool> leave_flag{false}; // the user wants a job that reads to be left; likewise
    QString file_name;                   // destination of a dump, source of a write
    QString script_name;                 // full path of the mapper script
    int operate = 0;                     // a JobCode
    int rom_size = 0;                    // bytes; flash jobs: set by run() to the file's size
    int ram_size = 0;                    // bytes
    int save_type = 0;                   // GBA: 0 SRAM, 1 FLASH, 2 EEP; unchanged by GB jobs
    int flash_width = 0;                 // GB flash chip: 0 = 8 bit, 1 = 16 bit
    int chip_size = 0;                   // of the GB flash chip, bytes; 0: it does not say
    int data_pos = 0;                    // cursor into data_buf; bytes transferred so far
    bool verify = false;                 // copy of the setting; the worker does not read it
    unsigned char *data_buf = nullptr;   // transfer buffer; exists only during run()

    // What the fields say, as a job. Not while one runs.
    CartridgeJob job() const;
    // How the last job ended, without its bytes. Not while one runs.
    const JobResult &result() const { return m_result; }

signals:
    // One line for the window's log; what is foreign in it (paths, what the script says) as
    // logText() has it.
    void log(QString);
    void set_progress(int ile, int max);
    // 1 = the job succeeded, 0 = it failed. Once per job, after the last set_progress(1, 1).
    void error(int err);

public slots:
    // Asks the running job to stop. Noticed only while an erase is polled, and of a script that has
    // done nothing for some seconds.
    void canceled();

protected:
    void run() override;

private:
    JobResult m_result;
};
