// Values of options as users write them.
#pragma once

#include <cstdint>
#include <string>

namespace virtual_reader
{

// Reads a whole number, decimal or with 0x. `*rest` becomes what follows it.
// Returns: false if `text` does not begin with a number of 64 bits.
bool parseNumber(const std::string &text, std::uint64_t *value, std::string *rest);

// Reads a whole number of 32 bits from 1 on, and nothing behind it.
// Returns: false for anything else.
bool parseCount(const std::string &text, std::uint32_t *count);

// Reads bytes, or with a suffix K or M kibibytes or mebibytes.
// Returns: false for anything else, and for what 32 bits cannot hold.
bool parseSize(const std::string &text, std::uint32_t *size);

} // namespace virtual_reader
