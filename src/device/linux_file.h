// Open files of the Linux backend. How a FAT drive behaves under Linux decides most of what is done
// here; docs/drives.md has the reasons.
#pragma once

#include "device/drive_backend.h"

#include <memory>
#include <string>

// An owned file descriptor.
class FileDescriptor
{
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : m_descriptor(descriptor) {}
    FileDescriptor(FileDescriptor &&other) noexcept;
    FileDescriptor &operator=(FileDescriptor &&other) noexcept;
    ~FileDescriptor() { close(); }

    int get() const { return m_descriptor; }
    bool isOpen() const { return m_descriptor >= 0; }
    // Returns: 0, or the system's error number.
    int close();

private:
    int m_descriptor = -1;
};

// Translates an error number; `operation` and `path` go into the message ("Cannot read PATH:
// TEXT").
DriveStatus statusFromErrno(int error, const char *operation, const std::string &path);

// Opens an existing file for reading. Unbuffered files are opened with O_DIRECT; where the file
// system refuses that, the file is dropped from the cache before every read.
DriveStatus openLinuxFileForRead(const std::string &path, Buffering buffering,
                                 std::unique_ptr<DriveFile> *file);

// Whether an existing file could be opened for writing and nobody else holds it. Changes nothing.
DriveStatus mayWriteLinuxFile(const std::string &path);

// A file on the reader's drive that stays open between commands, because closing a descriptor that
// was open for writing sleeps 100 ms on a desktop's FAT mount.
class KeptFile
{
public:
    // Makes the descriptor good for `path`: keeps it if it still is that file, else opens the file
    // (creating it if need be) and locks it against a second writer; InUse if there is one. Refused
    // while the file is in use by this program, which it is from a successful call to the next
    // finish().
    DriveStatus open(const std::string &path);
    void finish() { m_isInUse = false; }

    // Writes at `offset`; the file ends behind these bytes. In place: cut first if the file is
    // longer, then written, then synced. A failure gives the descriptor up.
    DriveStatus writeAt(const void *source, std::uint32_t length, std::uint32_t offset,
                        std::uint32_t *count);

    DriveStatus size(std::uint32_t *size);
    void release();

private:
    bool isStill(const std::string &path) const;
    DriveStatus fail(int error, const char *operation);

    FileDescriptor m_file;
    std::string m_path;
    bool m_isInUse = false;
    bool m_isEntrySynced = false; // the directory entry of a file just opened may be new
};
