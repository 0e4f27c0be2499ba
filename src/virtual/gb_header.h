// Game Boy header fields that decide how a cartridge is built. Source: Pan Docs, "The Cartridge
// Header". The RAM codes are those of the hardware: 4 is 128 KiB and 5 is 64 KiB.
#pragma once

#include "virtual/bytes.h"

#include <cstdint>

namespace virtual_reader
{

constexpr std::uint32_t kGbLogoOffset = 0x104;
constexpr std::uint32_t kGbTitleOffset = 0x134;
constexpr std::uint32_t kGbTitleSize = 15; // the byte behind it is the colour flag
constexpr std::uint32_t kGbTypeOffset = 0x147;
constexpr std::uint32_t kGbRomSizeOffset = 0x148;
constexpr std::uint32_t kGbRamSizeOffset = 0x149;
constexpr std::uint32_t kGbHeaderChecksumOffset = 0x14D;
constexpr std::uint32_t kGbGlobalChecksumOffset = 0x14E; // high byte first
constexpr std::uint32_t kGbHeaderEnd = 0x150;

constexpr std::uint32_t kGbSmallestRom = 32 * 1024;
constexpr std::uint32_t kGbLargestRom = 8 * 1024 * 1024;

// RAM sizes in bytes by header code.
constexpr std::uint32_t kGbRamSizes[] = {0, 2 * 1024, 8 * 1024, 32 * 1024, 128 * 1024, 64 * 1024};
constexpr std::uint32_t kGbRamSizeCount = 6;

// True for 32 KiB, 64 KiB, ... 8 MiB.
constexpr bool isGbRomSize(std::uint64_t size)
{
    return size >= kGbSmallestRom && size <= kGbLargestRom && (size & (size - 1)) == 0;
}

std::uint8_t gbHeaderChecksum(const ByteVector &image);
std::uint16_t gbGlobalChecksum(const ByteVector &image);

} // namespace virtual_reader
