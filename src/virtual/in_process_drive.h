// The virtual reader as a drive backend of this program: no drive, no mount, any platform.
//
// It is one removable drive with the reader's three files, and the only drive that a scan sees, so
// that no stick in the machine is taken for the reader. Every path that is not on it goes to
// another backend, which serves the user's files. A command takes effect when its file is closed.
#pragma once

#include "device/drive_backend.h"
#include "virtual/reader_setup.h"

#include <memory>
#include <string>

namespace virtual_reader
{

struct InProcessDriveOptions {
    char letter = 'E'; // 'A' to 'Z'
    std::string label = kDefaultReaderLabel;
};

class InProcessDrive : public DriveBackend
{
public:
    // `files` serves all other paths; it is not owned and must outlive the drive.
    InProcessDrive(std::unique_ptr<KeptReader> reader, DriveBackend &files,
                   InProcessDriveOptions options = {});
    ~InProcessDrive() override;

    // The reader behind the drive, to look at what reached it and to swap the cartridge.
    VirtualReader &reader() { return m_reader->reader(); }

    std::uint32_t logicalDrives() override;
    DriveType driveType(const char *root) override;
    DriveStatus volumeLabel(const char *root, char *label, std::uint32_t capacity) override;
    std::string drivePlace(const char *root) override;
    DriveStatus openForRead(const char *path, Buffering buffering,
                            std::unique_ptr<DriveFile> *file) override;
    // Only the command file can be written; no other file can be made on the drive.
    DriveStatus openForWrite(const char *path, std::unique_ptr<DriveFile> *file) override;
    DriveStatus mayWrite(const char *path) override;
    void releaseDrive() override;

private:
    bool isOwnRoot(const char *root) const;

    std::unique_ptr<KeptReader> m_reader;
    DriveBackend &m_files;
    InProcessDriveOptions m_options;
    bool m_commandFileOpen = false; // for writing, which nobody else may at the same time
};

} // namespace virtual_reader
