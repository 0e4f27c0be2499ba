// What serves a process that has chosen no backend: no drive is there, no file can be opened. So
// whoever forgot the choice is told, wherever the program goes from there.
#pragma once

#include "device/drive_backend.h"

class NoBackend : public DriveBackend
{
public:
    std::uint32_t logicalDrives() override { return 0; }
    DriveType driveType(const char * /*root*/) override { return DriveType::NoRoot; }
    DriveStatus volumeLabel(const char *root, char * /*label*/, std::uint32_t /*capacity*/) override
    {
        return refusal(root);
    }
    DriveStatus openForRead(const char *path, Buffering /*buffering*/,
                            std::unique_ptr<DriveFile> * /*file*/) override
    {
        return refusal(path);
    }
    DriveStatus openForWrite(const char *path, std::unique_ptr<DriveFile> * /*file*/) override
    {
        return refusal(path);
    }
    DriveStatus mayWrite(const char *path) override { return refusal(path); }
    void releaseDrive() override {}

private:
    static DriveStatus refusal(const char *path)
    {
        return {DriveErrorCode::NotFound,
                std::string("\"") + path + "\": this program has chosen no drive backend"};
    }
};
