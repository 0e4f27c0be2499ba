#include "virtual/in_process_drive.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <optional>
#include <utility>

namespace virtual_reader
{

namespace
{

DriveStatus failure(DriveErrorCode code, const std::string &message)
{
    return {code, message};
}

bool sameLetter(char left, char right)
{
    return std::toupper(static_cast<unsigned char>(left)) ==
           std::toupper(static_cast<unsigned char>(right));
}

// FAT does not tell small letters from capitals.
bool sameName(const char *left, const char *right)
{
    for (; *left != '\0' && sameLetter(*left, *right); ++left, ++right) {
    }
    return *left == '\0' && *right == '\0';
}

std::optional<ReaderFile> readerFileNamed(const char *name)
{
    for (std::size_t i = 0; i < kReaderFileCount; ++i) {
        if (sameName(name, kReaderFileNames[i]))
            return static_cast<ReaderFile>(i);
    }
    return std::nullopt;
}

class ReadHandle : public DriveFile
{
public:
    ReadHandle(VirtualReader &reader, ReaderFile file, std::string path, bool unbuffered)
        : m_reader(reader), m_file(file), m_path(std::move(path)), m_unbuffered(unbuffered)
    {
    }

    void seek(std::uint32_t offset) override { m_offset = offset; }

    DriveStatus read(void *destination, std::uint32_t length, std::uint32_t *count) override
    {
        const auto result = m_reader.readFile(
            m_file, m_offset, static_cast<std::uint8_t *>(destination), length, m_unbuffered);
        *count = result.value_or(0);
        m_offset += *count;
        if (result)
            return {};
        if (m_reader.isGone())
            return failure(DriveErrorCode::Gone, "read " + m_path + ": no reader is there");
        return failure(DriveErrorCode::BadRequest,
                       "read " + m_path + ": offset " + std::to_string(m_offset) + ", length " +
                           std::to_string(length) + " are not whole sectors");
    }

    DriveStatus write(const void *, std::uint32_t, std::uint32_t *count) override
    {
        *count = 0;
        return failure(DriveErrorCode::Refused, "write " + m_path + ": open for reading");
    }

    DriveStatus size(std::uint32_t *size) override
    {
        *size = m_reader.fileSize(m_file);
        return {};
    }

    DriveStatus close() override { return {}; }

private:
    VirtualReader &m_reader;
    ReaderFile m_file;
    std::string m_path;
    bool m_unbuffered;
    std::uint32_t m_offset = 0;
};

// Collects a command file and hands it to the reader when it is closed.
class CommandHandle : public DriveFile
{
public:
    CommandHandle(KeptReader &reader, std::string path, bool &openFlag)
        : m_reader(reader), m_path(std::move(path)), m_openFlag(openFlag)
    {
        m_openFlag = true;
    }

    ~CommandHandle() override
    {
        if (m_open)
            (void)deliver();
    }

    void seek(std::uint32_t offset) override { m_offset = offset; }

    DriveStatus read(void *, std::uint32_t, std::uint32_t *count) override
    {
        *count = 0;
        return failure(DriveErrorCode::Refused, "read " + m_path + ": open for writing");
    }

    DriveStatus write(const void *source, std::uint32_t length, std::uint32_t *count) override
    {
        *count = 0;
        const std::uint64_t end = std::uint64_t{m_offset} + length;
        if (end > kCommandFileLimit)
            return failure(DriveErrorCode::Full, "write " + m_path + ": no space left");
        m_bytes.resize(std::max<std::size_t>(m_bytes.size(), end));
        const auto *bytes = static_cast<const std::uint8_t *>(source);
        std::copy_n(bytes, length, m_bytes.begin() + m_offset);
        m_offset += length;
        *count = length;
        return {};
    }

    DriveStatus size(std::uint32_t *size) override
    {
        *size = static_cast<std::uint32_t>(m_bytes.size());
        return {};
    }

    DriveStatus close() override { return deliver(); }

private:
    DriveStatus deliver()
    {
        m_open = false;
        m_openFlag = false;
        std::string error;
        if (m_reader.commandFileWritten(m_bytes.data(), m_bytes.size(), &error))
            return {};
        const bool isGone = m_reader.reader().isGone();
        return failure(isGone ? DriveErrorCode::Gone : DriveErrorCode::InputOutput,
                       "close " + m_path + ": " + error);
    }

    KeptReader &m_reader;
    std::string m_path;
    bool &m_openFlag;
    bool m_open = true;
    ByteVector m_bytes;
    std::uint32_t m_offset = 0;
};

} // namespace

InProcessDrive::InProcessDrive(std::unique_ptr<KeptReader> reader, DriveBackend &files,
                               InProcessDriveOptions options)
    : m_reader(std::move(reader)), m_files(files), m_options(std::move(options))
{
}

InProcessDrive::~InProcessDrive() = default;

std::uint32_t InProcessDrive::logicalDrives()
{
    if (reader().isGone())
        return 0;
    return 1U << (std::toupper(static_cast<unsigned char>(m_options.letter)) - 'A');
}

// True for "E:" and for anything that goes on behind it.
bool InProcessDrive::isOwnRoot(const char *root) const
{
    return sameLetter(root[0], m_options.letter) && root[1] == ':';
}

DriveType InProcessDrive::driveType(const char *root)
{
    return isOwnRoot(root) ? DriveType::Removable : DriveType::NoRoot;
}

DriveStatus InProcessDrive::volumeLabel(const char *root, char *label, std::uint32_t capacity)
{
    if (!isOwnRoot(root))
        return failure(DriveErrorCode::NotFound, std::string("label of ") + root + ": no drive");
    if (capacity == 0)
        return failure(DriveErrorCode::BadRequest, "label: no room");
    const std::size_t length = std::min<std::size_t>(m_options.label.size(), capacity - 1);
    std::memcpy(label, m_options.label.data(), length);
    label[length] = '\0';
    return {};
}

std::string InProcessDrive::drivePlace(const char *root)
{
    return isOwnRoot(root) ? "the virtual reader of this program" : "";
}

DriveStatus InProcessDrive::openForRead(const char *path, Buffering buffering,
                                        std::unique_ptr<DriveFile> *file)
{
    if (!isOwnRoot(path) || path[2] != '\\')
        return m_files.openForRead(path, buffering, file);
    const auto which = readerFileNamed(path + 3);
    if (!which)
        return failure(DriveErrorCode::NotFound, std::string("open ") + path + ": no such file");
    const bool unbuffered = buffering == Buffering::Unbuffered;
    *file = std::make_unique<ReadHandle>(reader(), *which, path, unbuffered);
    return {};
}

DriveStatus InProcessDrive::openForWrite(const char *path, std::unique_ptr<DriveFile> *file)
{
    if (!isOwnRoot(path) || path[2] != '\\')
        return m_files.openForWrite(path, file);
    const DriveStatus status = mayWrite(path);
    if (status.ok())
        *file = std::make_unique<CommandHandle>(*m_reader, path, m_commandFileOpen);
    return status;
}

DriveStatus InProcessDrive::mayWrite(const char *path)
{
    if (!isOwnRoot(path) || path[2] != '\\')
        return m_files.mayWrite(path);
    if (readerFileNamed(path + 3) != ReaderFile::Command)
        return failure(DriveErrorCode::Refused,
                       std::string("open ") + path + ": only the command file can be written");
    if (m_commandFileOpen)
        return failure(DriveErrorCode::InUse, std::string("open ") + path + ": it is open");
    return {};
}

void InProcessDrive::releaseDrive()
{
    m_files.releaseDrive();
}

} // namespace virtual_reader
