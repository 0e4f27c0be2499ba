// Flash chips on Game Boy boards, in place of the ROM.
#pragma once

#include "virtual/flash_chip.h"

#include <memory>

namespace virtual_reader
{

// How a chip is wired: a byte-wide one, or a 16-bit one in byte mode, whose lowest address line
// picks the half of a word. None: the board carries a ROM.
enum class FlashWidth { None, Byte, Word };

// A chip as large as `contents`, which must be a power of two; null for None.
std::unique_ptr<FlashChip> makeGbFlash(FlashWidth width, const FlashChipBehaviour &behaviour,
                                       ByteVector contents);

} // namespace virtual_reader
