#include "known_game.h"

#include "cart/known_dump_table.h"

namespace
{

constexpr std::uint32_t kSize = 64 * 1024;

} // namespace

virtual_reader::ByteVector knownGame()
{
    return gbImage({0x1B, kSize, 32 * 1024, "KNOWN", 5});
}

// Defined in the program itself, these stand in for those of the library. The first value is the
// game's SHA-1.
const KnownDumpRecord knownDumpRecords[] = {
    {{0xED, 0xB3, 0x11, 0x7E, 0xC6, 0x60, 0x92, 0x88, 0xBA, 0xAE,
      0x62, 0x14, 0xA5, 0xC5, 0xFC, 0x9D, 0xBF, 0x17, 0x5B, 0x5A},
     0,
     kSize,
     0,
     0}};
const std::size_t knownDumpCount = 1;
const char knownDumpTitles[] = "A Game (World)";
const std::size_t knownDumpTitleBytes = sizeof knownDumpTitles;
