// The device link: finds the reader's drive and moves every byte through the three files in its
// root.
//
// The reader never gets a device handle. "K-DRIVER.DMP" identifies it and carries replies,
// "CMD.CMD" takes command blocks, "DUMP.ROM" returns cartridge contents. Every primitive opens,
// transfers and closes within one call; nothing stays open between commands as far as this layer is
// concerned.
//
// Units: offsets and lengths in bytes, unsigned 32 bit. Results are byte counts; kFailed
// (0xFFFFFFFF) where a function's comment says so.
// Thread: the state is process-wide and unlocked. One job or report at a time; the user interface
// disables its actions meanwhile.
#pragma once

#include "device/drive_backend.h"

#include <cstdint>
#include <string>

// Result of a primitive whose device file could not be opened, read or written.
constexpr std::uint32_t kFailed = 0xFFFFFFFFU;

// Offset and length of the identity in the identity file.
constexpr std::uint32_t kIdentityOffset = 0x8000;
constexpr std::uint32_t kIdentitySize = 16;
constexpr std::uint32_t kLabelSize = 256;

struct DeviceLink {
    // Letter of the reader's drive. Every probe stores its letter before it checks anything, so a
    // failed scan leaves the last letter tried. 0 before any probe.
    signed char driveLetter = 0;
    // Volume label of the last drive that was removable, NUL-terminated.
    char driverLabel[kLabelSize] = {};
    // The bytes last read from the identity file; the firmware's name, not always NUL-terminated.
    std::uint8_t identityBytes[kIdentitySize] = {};
};

extern DeviceLink deviceLink;

// The backend that serves this process. Decided once at start; the link does not own it. Null:
// none, and then every call of the link ends as it does without drives and without files.
void setDriveBackend(DriveBackend *backend);
DriveBackend &driveBackend();

// Text of the last failure that the seam reported, empty if there was none since
// clearLastDriveError(). For people; the counts below stay the contract.
const std::string &lastDriveError();
// Its code; None if there was none.
DriveErrorCode lastDriveErrorCode();
void clearLastDriveError();

// How many failures the seam has reported. Read before and after a command it tells whether one
// came in between, also where the command's count hides it.
std::uint32_t driveErrorCount();

// A call of the reader runs for as long as this lives. Inside of another one it changes nothing.
class ReaderCall
{
public:
    ReaderCall();
    ~ReaderCall();
    ReaderCall(const ReaderCall &) = delete;
    ReaderCall &operator=(const ReaderCall &) = delete;

private:
    const std::int64_t m_outer;
};

// For how long the call of the reader that runs has been running; 0 if none does. The user's own
// files do not count. Thread: any.
int readerCallMs();

// Gives up what the backend keeps open on the reader's drive. Call when a job or a report ends.
void releaseReader();

// Releases the reader when a job or a report leaves its scope, on every way out.
class ReaderSession
{
public:
    ReaderSession() = default;
    ~ReaderSession() { releaseReader(); }
    ReaderSession(const ReaderSession &) = delete;
    ReaderSession &operator=(const ReaderSession &) = delete;
};

// --- path-level primitives -----------------------------------------------------------------------

// Reads `length` bytes at `offset` of `path` through the system's cache.
// Returns: bytes read; 0 if `buffer` is null, the file cannot be opened or the read fails.
std::uint32_t readFileAt(const char *path, void *buffer, std::uint32_t length,
                         std::uint32_t offset);

// Reads from the device itself. Fewer than 1024 bytes are cut out of a transfer of exactly 1024.
// Returns: bytes read, never more than `length`; 0 if `buffer` is null; kFailed if the file cannot
// be opened or read.
std::uint32_t readFileUnbuffered(const char *path, void *buffer, std::uint32_t length,
                                 std::uint32_t offset);

// Makes `path` hold exactly `length` bytes of `buffer`. An ordinary file of the user's that this
// fails for is as it was.
// Returns: bytes written; 0 if the file cannot be opened for writing; kFailed if writing fails.
std::uint32_t writeFileWhole(const char *path, const void *buffer, std::uint32_t length);

// --- handle-level primitives ---------------------------------------------------------------------

// A handle is owned by the caller and ends with closeHandle(). Null means failure.
DriveFile *openForRead(const char *path);
DriveFile *openForWrite(const char *path);
void closeHandle(DriveFile *handle);

// Returns: bytes read; kFailed on failure.
std::uint32_t readHandle(DriveFile *handle, void *buffer, std::uint32_t length);
// Returns: bytes written as the system reports them.
std::uint32_t writeHandle(DriveFile *handle, const void *buffer, std::uint32_t length);
// Returns: low 32 bits of the size in bytes; kFailed on failure.
std::uint32_t fileSize(DriveFile *handle);

// --- device files --------------------------------------------------------------------------------

// readFileUnbuffered() on "%c:\K-DRIVER.DMP" and "%c:\DUMP.ROM", %c being driveLetter.
std::uint32_t readDriverFile(std::uint32_t offset, void *buffer, std::uint32_t length);
std::uint32_t readDumpFile(std::uint32_t offset, void *buffer, std::uint32_t length);
// writeFileWhole() on "%c:\CMD.CMD". Only sendCommands() calls it.
std::uint32_t writeCommandFile(const void *buffer, std::uint32_t length);

// --- discovery -----------------------------------------------------------------------------------

// Tries one drive: it must be removable and its identity read must not return 0. With `expected`
// (3 bytes) the identity must also begin with those; a drive without an identity file passes the
// read, and then the bytes of an earlier probe are compared.
// Returns: 1 if the drive is the reader, else 0.
int probeDrive(char letter, const std::uint8_t *expected);

// Tries `letter`, or with letter 0 every logical drive from 'A' to 'Z'; the first that passes wins.
// Returns: 1 with the letter in driveLetter, else 0.
int findDevice(char letter, const std::uint8_t *expected);
