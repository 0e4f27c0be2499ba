// The drive-and-file seam: everything the device link takes from the operating system.
//
// The reader is a removable drive, so all the program needs of a platform is a list of drives,
// their type and label, and plain file access. Backends implement this interface; the logic above
// it is the same code everywhere. There is one backend per operating system, and the virtual reader
// is a third one that needs no drive at all.
//
// Paths are NUL-terminated strings in the system's 8-bit encoding. A path that starts with a known
// drive letter, a colon and a backslash ("E:\CMD.CMD") is a file on that drive; any other path is
// an ordinary path of the system.
//
// Thread: one user at a time. The user interface keeps the GUI thread and the worker apart.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

enum class DriveErrorCode {
    None,
    NotFound,     // no such drive, folder or file
    Refused,      // permission or a read-only drive
    InUse,        // another program has the file open
    NotTheReader, // the drive holds no identity file, so nothing is created on it
    Gone,         // the drive was pulled out or unmounted
    Full,         // no space left
    BadRequest,   // offset, length or buffer that the device cannot serve
    InputOutput   // anything else that the system reports
};

// Outcome of a seam call. The message names the operation, the path and the system's own text, and
// is meant for people.
struct [[nodiscard]] DriveStatus {
    DriveErrorCode code = DriveErrorCode::None;
    std::string message;

    bool ok() const { return code == DriveErrorCode::None; }
};

// The drive types that the system distinguishes; values as GetDriveTypeA returns them.
enum class DriveType : std::uint32_t {
    Unknown = 0,
    NoRoot = 1,
    Removable = 2,
    Fixed = 3,
    Remote = 4,
    CdRom = 5,
    RamDisk = 6
};

enum class Buffering {
    Buffered,  // the system's cache may answer
    Unbuffered // every read reaches the device
};

// One open file. Destroying it closes it; what was written to a whole file (below) is then given
// up.
class DriveFile
{
public:
    virtual ~DriveFile() = default;

    // Sets the position of the next read or write, in bytes from the start.
    virtual void seek(std::uint32_t offset) = 0;

    // Reads up to `length` bytes to `destination` (which holds that many). `*count` becomes the
    // number of bytes read, less than `length` only at the end of the file; 0 on failure.
    // Unbuffered files: a request that a disk would refuse (offset, length or address not a
    // multiple of the sector size) is widened into a buffer of the backend's own; any other request
    // goes to the device unchanged.
    virtual DriveStatus read(void *destination, std::uint32_t length, std::uint32_t *count) = 0;

    // Writes `length` bytes. When the call returns with success they are on the device, not in a
    // cache. `*count` becomes the number of bytes written.
    virtual DriveStatus write(const void *source, std::uint32_t length, std::uint32_t *count) = 0;

    // `*size` becomes the low 32 bits of the file's size in bytes.
    virtual DriveStatus size(std::uint32_t *size) = 0;

    // True of an ordinary file of the user's that was opened for writing: what is written lies in a
    // temporary file beside it, can be read back, and takes its place in one step when it is
    // closed. False of the reader's files, of pipes and devices: they get every write at once.
    virtual bool isWhole() const { return false; }

    // Sees to it that a whole file can become `length` bytes long. Full if it cannot; success where
    // the system does not know.
    virtual DriveStatus reserve(std::uint32_t /*length*/) { return {}; }

    // Closes the file and reports what only closing can tell. Called at most once; no other call
    // may follow. A whole file is in its place after a success; after a failure, or if one of its
    // writes has failed, whatever was there before is as it was.
    virtual DriveStatus close() = 0;

    // The same, but a file that has come to be in this place meanwhile is kept: Refused.
    virtual DriveStatus closeAsNew() { return close(); }
};

class DriveBackend
{
public:
    virtual ~DriveBackend() = default;

    // Looks for drives anew. Returns: bit 0 for 'A' to bit 25 for 'Z'.
    virtual std::uint32_t logicalDrives() = 0;

    // Type of the drive whose root is `root`, a letter and a colon ("E:").
    virtual DriveType driveType(const char *root) = 0;

    // Copies the volume label of `root` to `label`, NUL-terminated and cut to `capacity` bytes.
    // On failure `label` is left as it was.
    virtual DriveStatus volumeLabel(const char *root, char *label, std::uint32_t capacity) = 0;

    // Where a person finds the drive of `root`: folder and device, as far as the backend knows more
    // than the letter. Returns: text for people; empty if the letter says it all.
    virtual std::string drivePlace(const char * /*root*/) { return {}; }

    // Opens an existing file for reading; other readers and writers are allowed meanwhile. Refused
    // at once if it is a folder, pipe or device.
    // `*file` is set only on success and belongs to the caller.
    virtual DriveStatus openForRead(const char *path, Buffering buffering,
                                    std::unique_ptr<DriveFile> *file) = 0;

    // Opens a file for writing so that it holds exactly what is written to it before it is closed;
    // creates it where it is missing, but not on a removable drive without the reader's identity
    // file: that is NotTheReader, and the message names the drive. Nobody else may have it open.
    // `*file` as above. A file of the user's is a whole one, see DriveFile; of a link the target is
    // written.
    virtual DriveStatus openForWrite(const char *path, std::unique_ptr<DriveFile> *file) = 0;

    // Whether openForWrite() would succeed now with a file of a drive. Creates and changes nothing.
    // NotFound: it would create the file.
    virtual DriveStatus mayWrite(const char *path) = 0;

    // Gives up whatever the backend keeps open on a drive between commands, so that the drive can
    // be unmounted. To be called when a job or a report ends; harmless at any other time.
    virtual void releaseDrive() = 0;
};

// The backend of the operating system that this program was built for; the caller owns it.
std::unique_ptr<DriveBackend> createPlatformBackend();
