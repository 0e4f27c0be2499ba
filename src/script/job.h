// A cartridge job as data: what is to be done, who hears of it, how it ended.
//
// A job reads a ROM or a save from the cartridge, or writes one into it, with the mapper script
// that knows the cartridge. It works on bytes in memory and on the thread that calls it; see
// worker/job_run.h for running one.
#pragma once

#include <QByteArray>
#include <QString>

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

// What is to be done. Sizes in bytes.
struct CartridgeJob {
    int operate = 0;    // a JobCode
    QString scriptPath; // of the mapper script, in full
    int romSize = 0;    // of ROM jobs; a flash job's is the size of what is written
    int ramSize = 0;    // of save jobs
    int saveType = 0;   // GBA saves: 0 SRAM, 1 FLASH, 2 EEP
    int flashWidth = 0; // GB flash chip: 0 = 8 bit, 1 = 16 bit
};

// What a code means. A code that is no operation is none of these.
bool isGbaJob(int operate);
bool isReadJob(int operate);
bool isWriteJob(int operate);
bool isFlashJob(int operate);
bool movesSave(int operate);

// Bytes that the job moves: the ROM size, the save size, or 0 for a code that is no operation.
int bytesToMove(const CartridgeJob &job);

// Who hears of a job while it runs, on the job's thread.
class JobListener
{
public:
    virtual ~JobListener() = default;

    // One line of the log: the host's own, what the script prints, its errors.
    virtual void onLine(const QString &line) = 0;
    // `doneBytes` is the cursor; `maximum` the size that the native measures against.
    virtual void onProgress(int doneBytes, int maximum) = 0;
    // Whether the user wants the job to stop. Asked only while an erase is polled: half a save or
    // half a ROM is worth nothing, so anything else is finished.
    virtual bool isStopWanted() = 0;
};

// How a job ended.
enum class JobEnd {
    Done,            // the script ended well; see JobResult for how much it moved
    NoReader,        // no drive answered
    NoMode,          // the bus mode could not be selected
    NoMemory,        // there is no memory for the bytes
    NoScript,        // the script's file does not exist
    InputNotOpened,  // the file to be written cannot be opened
    InputNotRead,    // or not be read in full
    Refused,         // the script, or the host, ended it before anything was sent to the cartridge
    ScriptFailed,    // the script does not load, or ended with an error after it had sent something
    Cancelled,       // the user ended the wait for an erase
    OutputNotWritten // what was read could not be written to its file
};

struct JobResult {
    JobEnd end = JobEnd::Done;
    int movedBytes = 0; // as far as the cursor came
    int wantedBytes = 0;
    QString scriptError; // what the script or its compiler said; empty if neither said anything
    bool hasTouchedCartridge = false; // the script, or an erase, has used the bus
    bool hasWrittenToBus = false;     // and not only for reads: a bank switch, a chip's command
    QString driveError;      // the last thing that the drive reported, in the system's words
    QString failedOperation; // what the first native that failed said, even if the script caught it
    QByteArray bytes; // of a job that reads: zeros where nothing arrived; empty without a buffer

    // Nothing went wrong anywhere. A script may end well although an operation failed: it may catch
    // the error.
    bool isWhole() const
    {
        return end == JobEnd::Done && movedBytes == wantedBytes && failedOperation.isEmpty() &&
               driveError.isEmpty();
    }
};

// A job in the hands of its script: what every native gets as `dev`.
struct RunningJob {
    RunningJob(const CartridgeJob &whatJob, JobListener &whoHears)
        : job(whatJob), listener(whoHears)
    {
    }

    CartridgeJob job;
    JobListener &listener;
    unsigned char *data = nullptr;    // transfer buffer, not owned; see kTransferSlack
    int cursor = 0;                   // place in `data`, and bytes moved so far
    bool hasTouchedCartridge = false; // as in JobResult
    bool hasWrittenToBus = false;     // likewise
    QString scriptError;
    QString failedOperation; // as in JobResult
};

// Bytes behind the transfer buffer that must belong to it as well: enciphering a short last chunk
// touches up to 7 of them, writing a short last EEPROM piece up to 511.
constexpr int kTransferSlack = 512;
