// Command line of gbdriver-virtual-reader.
#pragma once

#include "virtual/fuse/reader_mount.h"
#include "virtual/image_generator.h"
#include "virtual/reader_setup.h"

#include <string>

namespace virtual_reader
{

struct ProgramOptions {
    bool help = false;
    MountRequest mount;
    ReaderSetup setup;
    std::string logPath;   // empty: no log
    std::string imagePath; // not empty: write an image there instead of mounting
    GbImageSpec image;
    GbaImageSpec gbaImage; // instead, if setup.cartridge.system is Gba
};

// Paths come out absolute, because a background process leaves its folder.
// Returns: false with the reason in `*error`.
bool parseProgramOptions(int argc, const char *const *argv, ProgramOptions *options,
                         std::string *error);

// The help text, one line an option.
std::string programUsage();

} // namespace virtual_reader
