// Byte sequences and little-endian fields, as the reader's files and blocks use them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace virtual_reader
{

using ByteVector = std::vector<std::uint8_t>;

// Value of the `width` bytes (0 to 4) at `bytes`, least significant byte first.
inline std::uint32_t littleEndian(const std::uint8_t *bytes, std::size_t width)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < width; ++i)
        value |= static_cast<std::uint32_t>(bytes[i]) << (8 * i);
    return value;
}

// Stores the low `width` bytes of `value` at `bytes`, least significant byte first.
inline void putLittleEndian(std::uint8_t *bytes, std::uint32_t value, std::size_t width)
{
    for (std::size_t i = 0; i < width; ++i)
        bytes[i] = static_cast<std::uint8_t>(value >> (8 * i));
}

} // namespace virtual_reader
