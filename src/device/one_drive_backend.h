// A backend that shows only one of another backend's drives, for users who say where their reader
// is. Everything but the list of drives is passed through.
#pragma once

#include "device/drive_backend.h"

class OneDriveBackend : public DriveBackend
{
public:
    // `backend` must outlive this object. `letter`: 'A' to 'Z'.
    OneDriveBackend(DriveBackend &backend, char letter) : m_backend(backend), m_letter(letter) {}

    std::uint32_t logicalDrives() override
    {
        return m_backend.logicalDrives() & (1U << (m_letter - 'A'));
    }
    DriveType driveType(const char *root) override { return m_backend.driveType(root); }
    DriveStatus volumeLabel(const char *root, char *label, std::uint32_t capacity) override
    {
        return m_backend.volumeLabel(root, label, capacity);
    }
    std::string drivePlace(const char *root) override { return m_backend.drivePlace(root); }
    DriveStatus openForRead(const char *path, Buffering buffering,
                            std::unique_ptr<DriveFile> *file) override
    {
        return m_backend.openForRead(path, buffering, file);
    }
    DriveStatus openForWrite(const char *path, std::unique_ptr<DriveFile> *file) override
    {
        return m_backend.openForWrite(path, file);
    }
    DriveStatus mayWrite(const char *path) override { return m_backend.mayWrite(path); }
    void releaseDrive() override { m_backend.releaseDrive(); }

private:
    DriveBackend &m_backend;
    char m_letter;
};
