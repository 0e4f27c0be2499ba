// Game Boy Advance header fields that a generated cartridge fills in. Source: GBATEK, "GBA
// Cartridge Header".
#pragma once

#include <cstdint>

namespace virtual_reader
{

constexpr std::uint32_t kGbaLogoOffset = 0x04;
constexpr std::uint32_t kGbaTitleOffset = 0xA0;
constexpr std::uint32_t kGbaTitleSize = 12;
constexpr std::uint32_t kGbaCodeOffset = 0xAC;
constexpr std::uint32_t kGbaCodeSize = 4;
constexpr std::uint32_t kGbaMakerOffset = 0xB0;
constexpr std::uint32_t kGbaFixedOffset = 0xB2;
constexpr std::uint8_t kGbaFixedValue = 0x96;
constexpr std::uint32_t kGbaComplementOffset = 0xBD;
constexpr std::uint32_t kGbaHeaderEnd = 0xC0;

constexpr std::uint32_t kGbaSmallestRom = 512;
constexpr std::uint32_t kGbaLargestRom = 32 * 1024 * 1024;

// True for whole halfwords, from one sector to what 24 address lines reach.
constexpr bool isGbaRomSize(std::uint64_t size)
{
    return size >= kGbaSmallestRom && size <= kGbaLargestRom && size % 2 == 0;
}

} // namespace virtual_reader
