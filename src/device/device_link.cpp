#include "device/device_link.h"

#include "device/no_backend.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>

DeviceLink deviceLink;

namespace
{

constexpr std::uint32_t kPathSize = 256;
// Shorter reads are cut out of a transfer of this size, a multiple of every usual sector size.
constexpr std::uint32_t kShortestTransfer = 1024;

DriveBackend *activeBackend = nullptr;
DriveStatus driveError;
std::uint32_t driveErrors = 0;

// When the reader's call that runs began; 0: none runs.
std::atomic<std::int64_t> readerCallBegin{0};

std::int64_t nowMs()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

// True if the call succeeded; otherwise its message is kept for lastDriveError().
bool succeeded(const DriveStatus &status)
{
    if (status.ok())
        return true;
    driveError = status;
    ++driveErrors;
    return false;
}

// Closing reports what writing could not: a failure of either makes the transfer a failure.
std::uint32_t finishTransfer(DriveFile *file, const DriveStatus &transfer, std::uint32_t count)
{
    const bool transferred = succeeded(transfer);
    const bool closed = succeeded(file->close());
    return transferred && closed ? count : kFailed;
}

void formatDevicePath(char (&path)[kPathSize], const char *fileName)
{
    std::memset(path, 0, sizeof(path));
    std::snprintf(path, sizeof(path), "%c:\\%s", deviceLink.driveLetter, fileName);
}

std::uint32_t readOpenFile(DriveFile *file, void *buffer, std::uint32_t length,
                           std::uint32_t offset)
{
    std::uint32_t count = 0;
    file->seek(offset);
    const DriveStatus status = file->read(buffer, length, &count);
    return finishTransfer(file, status, count);
}

} // namespace

void setDriveBackend(DriveBackend *backend)
{
    activeBackend = backend;
}

DriveBackend &driveBackend()
{
    static NoBackend none;
    return activeBackend == nullptr ? none : *activeBackend;
}

const std::string &lastDriveError()
{
    return driveError.message;
}

DriveErrorCode lastDriveErrorCode()
{
    return driveError.code;
}

void clearLastDriveError()
{
    driveError = DriveStatus();
}

std::uint32_t driveErrorCount()
{
    return driveErrors;
}

ReaderCall::ReaderCall() : m_outer(readerCallBegin)
{
    if (m_outer == 0)
        readerCallBegin = nowMs();
}

ReaderCall::~ReaderCall()
{
    readerCallBegin = m_outer;
}

int readerCallMs()
{
    const std::int64_t begin = readerCallBegin;
    return begin == 0 ? 0 : static_cast<int>(nowMs() - begin);
}

void releaseReader()
{
    const ReaderCall call;
    driveBackend().releaseDrive();
}

std::uint32_t readFileAt(const char *path, void *buffer, std::uint32_t length, std::uint32_t offset)
{
    if (buffer == nullptr)
        return 0;
    std::unique_ptr<DriveFile> file;
    if (!succeeded(driveBackend().openForRead(path, Buffering::Buffered, &file)))
        return 0;
    const std::uint32_t count = readOpenFile(file.get(), buffer, length, offset);
    return count == kFailed ? 0 : count;
}

std::uint32_t readFileUnbuffered(const char *path, void *buffer, std::uint32_t length,
                                 std::uint32_t offset)
{
    if (buffer == nullptr)
        return 0;
    std::unique_ptr<DriveFile> file;
    if (!succeeded(driveBackend().openForRead(path, Buffering::Unbuffered, &file)))
        return kFailed;
    if (length >= kShortestTransfer)
        return readOpenFile(file.get(), buffer, length, offset);

    std::uint8_t transfer[kShortestTransfer] = {};
    const std::uint32_t count = readOpenFile(file.get(), transfer, kShortestTransfer, offset);
    if (count == kFailed)
        return kFailed;
    std::memcpy(buffer, transfer, length);
    return std::min(count, length);
}

std::uint32_t writeFileWhole(const char *path, const void *buffer, std::uint32_t length)
{
    std::unique_ptr<DriveFile> file;
    if (!succeeded(driveBackend().openForWrite(path, &file)))
        return 0;
    std::uint32_t count = 0;
    const DriveStatus status = file->write(buffer, length, &count);
    // Half of a file must not take the place of a whole one.
    if (file->isWhole() && (!status.ok() || count != length))
        return succeeded(status) ? count : kFailed;
    return finishTransfer(file.get(), status, count);
}

DriveFile *openForRead(const char *path)
{
    std::unique_ptr<DriveFile> file;
    if (!succeeded(driveBackend().openForRead(path, Buffering::Buffered, &file)))
        return nullptr;
    return file.release();
}

DriveFile *openForWrite(const char *path)
{
    std::unique_ptr<DriveFile> file;
    if (!succeeded(driveBackend().openForWrite(path, &file)))
        return nullptr;
    return file.release();
}

void closeHandle(DriveFile *handle)
{
    const std::unique_ptr<DriveFile> file(handle);
    if (file)
        (void)succeeded(file->close());
}

std::uint32_t readHandle(DriveFile *handle, void *buffer, std::uint32_t length)
{
    std::uint32_t count = 0;
    return succeeded(handle->read(buffer, length, &count)) ? count : kFailed;
}

std::uint32_t writeHandle(DriveFile *handle, const void *buffer, std::uint32_t length)
{
    std::uint32_t count = 0;
    (void)succeeded(handle->write(buffer, length, &count));
    return count;
}

std::uint32_t fileSize(DriveFile *handle)
{
    std::uint32_t size = 0;
    return succeeded(handle->size(&size)) ? size : kFailed;
}

std::uint32_t readDriverFile(std::uint32_t offset, void *buffer, std::uint32_t length)
{
    const ReaderCall call;
    char path[kPathSize];
    formatDevicePath(path, "K-DRIVER.DMP");
    return readFileUnbuffered(path, buffer, length, offset);
}

std::uint32_t readDumpFile(std::uint32_t offset, void *buffer, std::uint32_t length)
{
    const ReaderCall call;
    char path[kPathSize];
    formatDevicePath(path, "DUMP.ROM");
    return readFileUnbuffered(path, buffer, length, offset);
}

std::uint32_t writeCommandFile(const void *buffer, std::uint32_t length)
{
    const ReaderCall call;
    char path[kPathSize];
    formatDevicePath(path, "CMD.CMD");
    return writeFileWhole(path, buffer, length);
}

int probeDrive(char letter, const std::uint8_t *expected)
{
    const ReaderCall call;
    deviceLink.driveLetter = static_cast<signed char>(letter);
    char root[kPathSize] = {};
    root[0] = letter;
    root[1] = ':';
    if (driveBackend().driveType(root) != DriveType::Removable)
        return 0;
    // A drive without a label is as good as any; its failure is nobody's error.
    (void)driveBackend().volumeLabel(root, deviceLink.driverLabel, kLabelSize);
    // A read that failed (kFailed) passes on purpose: only an empty identity file is a refusal.
    if (readDriverFile(kIdentityOffset, deviceLink.identityBytes, kIdentitySize) == 0)
        return 0;
    return expected == nullptr || std::equal(expected, expected + 3, deviceLink.identityBytes) ? 1
                                                                                               : 0;
}

int findDevice(char letter, const std::uint8_t *expected)
{
    const ReaderCall call;
    if (letter != 0)
        return probeDrive(letter, expected);
    const std::uint32_t drives = driveBackend().logicalDrives();
    for (unsigned bit = 0; bit < 26; ++bit) {
        if ((drives >> bit & 1U) != 0 && probeDrive(static_cast<char>('A' + bit), expected) == 1)
            return 1;
    }
    return 0;
}
