// Keeps a cartridge's save memory in a file of the user's.
#pragma once

#include "virtual/bytes.h"
#include "virtual/cartridge.h"

#include <cstdint>
#include <string>

namespace virtual_reader
{

// Reads a whole file. Returns: false with the reason in `*error`.
bool readWholeFile(const std::string &path, ByteVector *bytes, std::string *error);

// Replaces a file or makes it: written under a temporary name beside it, brought to the disk, then
// renamed, so that a power cut leaves either the old contents or the new ones.
// Returns: false with the reason in `*error`; the old file is then unchanged.
bool replaceFile(const std::string &path, const ByteVector &bytes, std::string *error);

class SaveFile
{
public:
    // Without a path nothing is kept.
    SaveFile() = default;
    explicit SaveFile(std::string path);

    // Puts the file's contents into `cartridge`; a file that does not exist yet leaves it as it is.
    // Returns: false with the reason in `*error` if the cartridge has no save memory, or the file
    // has another size.
    bool load(Cartridge *cartridge, std::string *error);

    // Writes the save memory back if the buses changed it since the last call.
    // Returns: false with the reason in `*error`; the next call then tries again.
    bool storeIfChanged(const Cartridge &cartridge, std::string *error);

private:
    std::string m_path;
    std::uint64_t m_storedChanges = 0;
};

} // namespace virtual_reader
