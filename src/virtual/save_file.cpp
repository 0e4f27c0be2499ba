#include "virtual/save_file.h"

#include "virtual/disk_sync.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <system_error>
#include <utility>
#include <vector>

namespace virtual_reader
{

namespace
{

constexpr char kTemporarySuffix[] = ".new";
constexpr std::streamsize kReadPiece = 256 * 1024;

struct StreamCloser {
    void operator()(std::FILE *stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, StreamCloser>;

bool failed(const std::string &action, const std::string &path, const std::string &reason,
            std::string *error)
{
    *error = action + " " + path + ": " + reason;
    return false;
}

bool writeToDisk(const std::string &path, const ByteVector &bytes)
{
    const Stream stream(std::fopen(path.c_str(), "wb"));
    if (stream == nullptr)
        return false;
    if (std::fwrite(bytes.data(), 1, bytes.size(), stream.get()) != bytes.size())
        return false;
    return std::fflush(stream.get()) == 0 && syncToDisk(stream.get());
}

} // namespace

bool readWholeFile(const std::string &path, ByteVector *bytes, std::string *error)
{
    std::error_code code;
    if (std::filesystem::is_directory(path, code))
        return failed("cannot read", path, "it is a folder", error);
    errno = 0;
    std::ifstream stream(path, std::ios::binary);
    if (!stream)
        return failed("cannot open", path, std::strerror(errno), error);
    bytes->clear();
    std::vector<char> piece(kReadPiece);
    do {
        stream.read(piece.data(), kReadPiece);
        bytes->insert(bytes->end(), piece.begin(), piece.begin() + stream.gcount());
    } while (stream);
    if (stream.bad())
        return failed("cannot read", path, std::strerror(errno), error);
    return true;
}

bool replaceFile(const std::string &path, const ByteVector &bytes, std::string *error)
{
    const std::string temporary = path + kTemporarySuffix;
    errno = 0;
    if (!writeToDisk(temporary, bytes)) {
        const std::string reason = std::strerror(errno);
        std::error_code ignored;
        std::filesystem::remove(temporary, ignored);
        return failed("cannot write", temporary, reason, error);
    }
    std::error_code code;
    std::filesystem::rename(temporary, path, code);
    return !code || failed("cannot replace", path, code.message(), error);
}

SaveFile::SaveFile(std::string path) : m_path(std::move(path)) {}

bool SaveFile::load(Cartridge *cartridge, std::string *error)
{
    if (m_path.empty())
        return true;
    const std::size_t size = cartridge->saveImage().size();
    if (size == 0)
        return failed("cannot use", m_path, "the cartridge has no save memory", error);
    m_storedChanges = cartridge->saveChanges();
    std::error_code code;
    if (!std::filesystem::exists(m_path, code))
        return true;
    ByteVector image;
    if (!readWholeFile(m_path, &image, error))
        return false;
    if (cartridge->loadSave(image))
        return true;
    return failed("cannot use", m_path,
                  "it has " + std::to_string(image.size()) + " bytes, the save memory " +
                      std::to_string(size),
                  error);
}

bool SaveFile::storeIfChanged(const Cartridge &cartridge, std::string *error)
{
    const std::uint64_t changes = cartridge.saveChanges();
    if (m_path.empty() || changes == m_storedChanges)
        return true;
    if (!replaceFile(m_path, cartridge.saveImage(), error))
        return false;
    m_storedChanges = changes;
    return true;
}

} // namespace virtual_reader
