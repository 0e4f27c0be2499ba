// One cartridge job off the GUI thread: dump a ROM or a save into a file, write a save back, or
// write a ROM into a GB flash cartridge.
//
// The owner fills the job fields and calls start(). run() finds the reader, puts it into the right
// bus mode, prepares the transfer buffer, hands the cartridge work to the mapper script, saves a
// dump, and reports the end with set_progress(1, 1) and error(). One object serves any number of
// jobs, one after the other; fields keep their values between jobs.
//
// Thread: the object and canceled() belong to the thread that made it; run() and the signals to the
// worker. The job fields may be written only while no job runs.
#pragma once

#include <QString>
#include <QThread>

#include <atomic>
#include <cstdint>

// Operation codes. Bit 2: GBA; bit 1: save memory rather than ROM; bit 0: host to cartridge.
enum JobCode {
    GB_READ_ROM = 0,
    GB_WRITE_FLASH = 1,
    GB_READ_RAM = 2,
    GB_WRITE_RAM = 3,
    GBA_READ_ROM = 4,
    GBA_WRITE_FLASH = 5,
    GBA_READ_RAM = 6,
    GBA_WRITE_RAM = 7
};

class FamicomThread : public QThread
{
    Q_OBJECT

public:
    FamicomThread();

    std::atomic<int> cancel_flag{0};   // 1 = the user asked to cancel; relaxed order is enough
    QString file_name;                 // destination of a dump, source of a write
    QString script_name;               // full path of the mapper script
    int operate = 0;                   // a JobCode
    int rom_size = 0;                  // bytes; flash jobs: set by run() to the file's size
    int ram_size = 0;                  // bytes
    int save_type = 0;                 // GBA: 0 SRAM, 1 FLASH, 2 EEP; unchanged by GB jobs
    int flash_width = 0;               // GB flash chip: 0 = 8 bit, 1 = 16 bit
    int data_pos = 0;                  // cursor into data_buf; bytes transferred so far
    bool verify = false;               // copy of the setting; the worker does not read it
    unsigned char *data_buf = nullptr; // transfer buffer; exists only during run()

signals:
    void log(QString);
    void set_progress(int ile, int max);
    // 1 = the job succeeded, 0 = it failed. Once per job, after the last set_progress(1, 1).
    void error(int err);

public slots:
    // Asks the running job to stop. Noticed only while an erase is polled.
    void canceled();

protected:
    void run() override;
};

// Bytes that the transfer buffer of the job holds: the ROM size, the save size, or 0 for a code
// that is no operation. For flash jobs valid once run() has taken the file's size.
int jobBufferSize(const FamicomThread &job);
