// Open files of the kernel32 backend, and what the system's error numbers mean.
#pragma once

#include "device/drive_backend.h"

#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <string>

// Translates an error number; `operation` and `path` go into the message ("Cannot read PATH:
// TEXT").
DriveStatus statusFromError(DWORD error, const char *operation, const std::string &path);

// Owns its handle.
class WindowsFile : public DriveFile
{
public:
    WindowsFile(HANDLE handle, std::string path, Buffering buffering);
    ~WindowsFile() override;
    WindowsFile(const WindowsFile &) = delete;
    WindowsFile &operator=(const WindowsFile &) = delete;

    void seek(std::uint32_t offset) override { m_offset = offset; }
    DriveStatus read(void *destination, std::uint32_t length, std::uint32_t *count) override;
    DriveStatus write(const void *source, std::uint32_t length, std::uint32_t *count) override;
    DriveStatus size(std::uint32_t *size) override;
    DriveStatus close() override;

protected:
    HANDLE handle() const { return m_handle; }

private:
    DriveStatus setPosition(std::uint64_t offset);
    DriveStatus readAt(void *destination, std::uint64_t offset, std::uint32_t length,
                       std::uint32_t *count);

    HANDLE m_handle;
    std::string m_path;
    Buffering m_buffering;
    std::uint32_t m_offset = 0;
};
