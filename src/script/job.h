// A cartridge job as data: what is to be done, who hears of it, how it ended.
//
// A job reads a ROM or a save from the cartridge, or writes one into it, with the mapper script
// that knows the cartridge. It works on bytes in memory and on the thread that calls it; see
// worker/job_run.h for running one.
#pragma once

#include "script/script_source.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

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
    int chipSize = 0;   // of the GB flash chip; 0: not known
    // On a virtual cartridge: nothing can be lost, and a write may be left as well.
    bool isTrial = false;
    bool mayUseFiles = true; // the script; other scripts it may load all the same
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
    // Whether a script is to be ended that has called no native for some seconds. By default where
    // the user wants the job to stop.
    virtual bool endsSilentScript() { return isStopWanted(); }
    // Whether a job is to be left between two operations of the reader. Asked only of a job that
    // reads, and of trials: never is a write left.
    virtual bool isLeaveWanted() { return false; }
    // An erase is waited for, so long so far; at `longestSeconds` the wait is given up.
    virtual void onEraseWait(int /*seconds*/, int /*longestSeconds*/) {}
};

// How a job ended.
enum class JobEnd {
    Done,            // the script ended well; see JobResult for how much it moved
    NoReader,        // no drive answered
    NoMode,          // the bus mode could not be selected
    ReaderInUse,     // because another program uses the reader
    NotTheReader,    // because the drive that was taken for the reader is none
    NoMemory,        // there is no memory for the bytes
    NoScript,        // the script's file does not exist
    InputNotOpened,  // the file to be written cannot be opened
    InputNotRead,    // or not be read in full
    Refused,         // the script, or the host, ended it before anything was sent to the cartridge
    ScriptFailed,    // the script ended with an error after it had sent something
    ScriptError,     // the script itself is wrong: what it says is no program, or asks too much
    ScriptStopped,   // the user ended a script that did nothing
    Left,            // the user left a job that reads between two operations of the reader
    EraseFailed,     // the erase did not end in time, or the reader did not tell whether it had
    Cancelled,       // the user ended the wait for an erase
    OutputNotWritten // what was read could not be written to its file
};

struct JobResult {
    JobEnd end = JobEnd::Done;
    int movedBytes = 0; // as far as the cursor came
    int wantedBytes = 0;
    QString scriptError; // what the script or its compiler said; empty if neither said anything
    QString scriptPlace; // where that was: "gb_mbc5.nut, line 12"; empty if not known
    bool hasTouchedCartridge = false; // the script, or an erase, has used the bus
    bool hasWrittenToBus = false;     // and not only for reads: a bank switch, a chip's command
    bool hasWantedFiles = false;      // the script, and it may not
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
    bool hasWantedFiles = false;      // likewise
    QString scriptError;              // as in JobResult, with the next two
    QString scriptPlace;
    QString failedOperation;
    bool isThrown = false; // the error is the script's own `throw`
    bool hasLeft = false;  // the user has left it: nothing more is read
    int printedLines = 0;  // by the script
    QStringList report;    // of the last error, see script_report.h
    ScriptSources sources; // that its machine has compiled
};

// Bytes behind the transfer buffer that must belong to it as well: enciphering a short last chunk
// touches up to 7 of them, writing a short last EEPROM piece up to 511.
constexpr int kTransferSlack = 512;
