// A computer with several drives: drives without anything in them, and virtual readers whose drives
// can be made to fail.
#pragma once

#include "virtual/faulty_drive.h"
#include "virtual/in_process_drive.h"

#include <map>

// Every such call fails from now on.
inline virtual_reader::DriveFault lastingFault(virtual_reader::DriveCall call, const char *pathEnd,
                                               DriveErrorCode code)
{
    virtual_reader::DriveFault fault;
    fault.call = call;
    fault.pathEnd = pathEnd;
    fault.code = code;
    fault.times = virtual_reader::DriveFault::kForever;
    return fault;
}

inline virtual_reader::DriveFault missingFile(const char *name)
{
    return lastingFault(virtual_reader::DriveCall::OpenForRead, name, DriveErrorCode::NotFound);
}

class DriveShelf : public DriveBackend
{
public:
    void addDrive(char letter, DriveType type) { m_slots[letter].type = type; }

    // Returns: the reader's drive, to inject faults.
    virtual_reader::FaultyDrive &addReader(char letter, const std::string &label = "READER",
                                           const std::string &identity = "READER_FW1")
    {
        virtual_reader::VirtualReaderConfig config;
        config.identity = identity;
        Slot &slot = m_slots[letter];
        slot.type = DriveType::Removable;
        slot.drive = std::make_unique<virtual_reader::InProcessDrive>(
            std::make_unique<virtual_reader::KeptReader>(nullptr, config,
                                                         virtual_reader::SaveFile()),
            *m_platform, virtual_reader::InProcessDriveOptions{letter, label});
        slot.faulty = std::make_unique<virtual_reader::FaultyDrive>(*slot.drive, letter);
        return *slot.faulty;
    }

    bool wasWritten() const { return m_isWritten; }

    std::uint32_t logicalDrives() override
    {
        std::uint32_t mask = 0;
        for (const auto &entry : m_slots)
            mask |= 1U << (entry.first - 'A');
        return mask;
    }
    DriveType driveType(const char *root) override { return m_slots[root[0]].type; }
    DriveStatus volumeLabel(const char *root, char *label, std::uint32_t capacity) override
    {
        DriveBackend *drive = find(root);
        return drive == nullptr ? nothing(root) : drive->volumeLabel(root, label, capacity);
    }
    std::string drivePlace(const char *root) override
    {
        DriveBackend *drive = find(root);
        return drive == nullptr ? std::string() : drive->drivePlace(root);
    }
    DriveStatus openForRead(const char *path, Buffering buffering,
                            std::unique_ptr<DriveFile> *file) override
    {
        DriveBackend *drive = find(path);
        return drive == nullptr ? nothing(path) : drive->openForRead(path, buffering, file);
    }
    DriveStatus openForWrite(const char *path, std::unique_ptr<DriveFile> *) override
    {
        m_isWritten = true;
        return nothing(path);
    }
    DriveStatus mayWrite(const char *path) override
    {
        DriveBackend *drive = find(path);
        return drive == nullptr ? nothing(path) : drive->mayWrite(path);
    }
    void releaseDrive() override {}

private:
    struct Slot {
        DriveType type = DriveType::NoRoot;
        std::unique_ptr<virtual_reader::InProcessDrive> drive;
        std::unique_ptr<virtual_reader::FaultyDrive> faulty;
    };

    DriveBackend *find(const char *root) { return m_slots[root[0]].faulty.get(); }
    static DriveStatus nothing(const char *path)
    {
        return {DriveErrorCode::NotFound, std::string("nothing at ") + path};
    }

    std::unique_ptr<DriveBackend> m_platform = createPlatformBackend();
    std::map<char, Slot> m_slots;
    bool m_isWritten = false;
};
