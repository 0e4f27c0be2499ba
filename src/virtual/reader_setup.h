// A virtual reader with its cartridge and save file, put together from a user's request. Every
// front end starts here.
#pragma once

#include "virtual/cartridge_options.h"
#include "virtual/save_file.h"
#include "virtual/virtual_reader.h"

#include <memory>
#include <string>

namespace virtual_reader
{

struct ReaderSetup {
    bool demo = false;    // a generated cartridge instead of an image file: MBC5, 1 MiB, a save
    std::string cartPath; // image file; empty without `demo`: no cartridge
    CartridgeOptions cartridge; // of the image
    std::string savePath;       // empty: the save memory is not kept
    VirtualReaderConfig config;
};

// Default volume label of the drive.
constexpr char kDefaultReaderLabel[] = "VIRTUAL";

// A reader whose save memory is written back to the save file whenever a command run changed it.
class KeptReader
{
public:
    // Returns: null with the reason in `*error`.
    static std::unique_ptr<KeptReader> create(const ReaderSetup &setup, std::string *error);

    KeptReader(std::unique_ptr<Cartridge> cartridge, VirtualReaderConfig config, SaveFile save);

    VirtualReader &reader() { return m_reader; }

    // VirtualReader::commandFileWritten(), then the save file. Returns: false with the reason in
    // `*error` if the run failed, or if the save file could not be written; in the second case the
    // commands took effect all the same.
    bool commandFileWritten(const std::uint8_t *bytes, std::size_t size, std::string *error);

private:
    VirtualReader m_reader;
    SaveFile m_save;
};

} // namespace virtual_reader
