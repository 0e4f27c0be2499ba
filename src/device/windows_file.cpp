#include "device/windows_file.h"

#include "device/sector_window.h"

#include <system_error>
#include <utility>

namespace
{

// mingw-w64 has no name for ERROR_NO_SUCH_DEVICE: what a pulled-out USB drive answers.
constexpr DWORD kNoSuchDevice = 433;

DriveErrorCode codeFromError(DWORD error)
{
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_INVALID_DRIVE:
        return DriveErrorCode::NotFound;
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
        return DriveErrorCode::Refused;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
        return DriveErrorCode::InUse;
    case ERROR_NOT_READY:
    case ERROR_DEV_NOT_EXIST:
    case kNoSuchDevice:
    case ERROR_FILE_INVALID: // the volume behind an open file has changed
    case ERROR_MEDIA_CHANGED:
    case ERROR_NO_MEDIA_IN_DRIVE:
    case ERROR_DEVICE_NOT_CONNECTED:
        return DriveErrorCode::Gone;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
        return DriveErrorCode::Full;
    case ERROR_INVALID_PARAMETER:
        return DriveErrorCode::BadRequest;
    default:
        return DriveErrorCode::InputOutput;
    }
}

} // namespace

DriveStatus statusFromError(DWORD error, const char *operation, const std::string &path)
{
    const std::string text = std::system_category().message(static_cast<int>(error));
    return {codeFromError(error),
            std::string("Cannot ") + operation + " \"" + path + "\": " + text};
}

WindowsFile::WindowsFile(HANDLE handle, std::string path, Buffering buffering)
    : m_handle(handle), m_path(std::move(path)), m_buffering(buffering)
{
}

WindowsFile::~WindowsFile()
{
    if (m_handle != INVALID_HANDLE_VALUE)
        (void)WindowsFile::close();
}

DriveStatus WindowsFile::read(void *destination, std::uint32_t length, std::uint32_t *count)
{
    const SectorTransfer transfer = [this](void *target, std::uint64_t offset, std::uint32_t size,
                                           std::uint32_t *arrived) {
        return readAt(target, offset, size, arrived);
    };
    return readAtPosition(transfer, m_buffering, destination, length, &m_offset, count);
}

DriveStatus WindowsFile::write(const void *source, std::uint32_t length, std::uint32_t *count)
{
    *count = 0;
    const DriveStatus positioned = setPosition(m_offset);
    if (!positioned.ok())
        return positioned;
    DWORD written = 0;
    const BOOL done = WriteFile(m_handle, source, length, &written, nullptr);
    *count = written;
    m_offset += written;
    if (done == 0)
        return statusFromError(GetLastError(), "write", m_path);
    if (written != length)
        return statusFromError(ERROR_DISK_FULL, "write", m_path);
    return {};
}

DriveStatus WindowsFile::size(std::uint32_t *size)
{
    SetLastError(NO_ERROR);
    *size = GetFileSize(m_handle, nullptr);
    // The failure value is also the low half of a legal size.
    if (*size == INVALID_FILE_SIZE && GetLastError() != NO_ERROR)
        return statusFromError(GetLastError(), "look up the size of", m_path);
    return {};
}

DriveStatus WindowsFile::close()
{
    const BOOL closed = CloseHandle(std::exchange(m_handle, INVALID_HANDLE_VALUE));
    return closed != 0 ? DriveStatus{} : statusFromError(GetLastError(), "close", m_path);
}

DriveStatus WindowsFile::setPosition(std::uint64_t offset)
{
    LONG high = static_cast<LONG>(offset >> 32);
    SetLastError(NO_ERROR);
    const DWORD low =
        SetFilePointer(m_handle, static_cast<LONG>(offset & 0xFFFFFFFFU), &high, FILE_BEGIN);
    if (low == INVALID_SET_FILE_POINTER && GetLastError() != NO_ERROR)
        return statusFromError(GetLastError(), "seek in", m_path);
    return {};
}

DriveStatus WindowsFile::readAt(void *destination, std::uint64_t offset, std::uint32_t length,
                                std::uint32_t *count)
{
    const DriveStatus positioned = setPosition(offset);
    if (!positioned.ok())
        return positioned;
    DWORD got = 0;
    if (ReadFile(m_handle, destination, length, &got, nullptr) == 0)
        return statusFromError(GetLastError(), "read", m_path);
    *count = got;
    return {};
}
