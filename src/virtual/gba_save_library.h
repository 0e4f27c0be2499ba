// The marks that the save libraries of GBA games leave in the ROM. No header field names the save
// chip; these do. Source: GBATEK, "GBA Cart Backup IDs".
#pragma once

#include "virtual/block_format.h"
#include "virtual/bytes.h"

#include <string>

namespace virtual_reader
{

// Room that a mark takes up, padding included.
constexpr std::uint32_t kGbaSaveMarkSize = 16;

// The chip that the first mark in `rom` names; None without a mark. The mark of EEPROM says nothing
// of its size: Eeprom512, which most of those games have.
SaveKind findGbaSaveMark(const ByteVector &rom);

// A mark for the given chip, padded to kGbaSaveMarkSize with NUL; empty for None.
std::string gbaSaveMark(SaveKind kind);

} // namespace virtual_reader
