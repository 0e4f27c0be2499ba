// Cartridge images for trying out and testing: valid headers, contents that no two places share.
#pragma once

#include "virtual/block_format.h"
#include "virtual/bytes.h"

#include <cstdint>
#include <string>

namespace virtual_reader
{

struct GbImageSpec {
    std::uint8_t type = 0;          // header type code
    std::uint32_t romSize = 0x8000; // bytes: 32 KiB to 8 MiB, a power of two
    std::uint32_t ramSize = 0;      // bytes: 0, 2, 8, 32, 64 or 128 KiB
    std::string title = "VIRTUAL";  // up to 15 capital letters, digits and other printable ASCII
    std::uint64_t seed = 1;
};

// Makes an image with logo, header checksum and global checksum in place. Every sector of 512 bytes
// begins with its own number (so every bank of 16 KiB carries its number times 32) and goes on with
// pseudo-random bytes. The same request always gives the same bytes.
// Returns: false with the reason in `*error` if the request is none that a header can hold.
bool makeGbImage(const GbImageSpec &spec, ByteVector *image, std::string *error);

struct GbaImageSpec {
    std::string code = "ZVRE";          // game code: any four bytes
    std::uint32_t romSize = 0x400000;   // bytes: 512 to 32 MiB, even
    std::string title = "VIRTUAL";      // up to 12 characters as above
    SaveKind saveKind = SaveKind::None; // whose library leaves its mark in the ROM
    std::uint64_t seed = 1;
};

// Makes a Game Boy Advance image likewise: logo and complement check in place, and every sector of
// 512 bytes begins with its own number, but the first, which begins with the entry point. The mark
// of the save library names the kind of chip; that of EEPROM says nothing of its size.
bool makeGbaImage(const GbaImageSpec &spec, ByteVector *image, std::string *error);

// `size` pseudo-random bytes, each sector of 512 beginning with its number.
ByteVector makeNumberedSectors(std::uint32_t size, std::uint64_t seed);

// The reason if `title` is longer than `longest` characters or none that a header can hold; empty
// if it can be used.
std::string titleFault(const std::string &title, std::uint32_t longest);

// `size` pseudo-random bytes, for saves.
ByteVector makeNoise(std::uint32_t size, std::uint64_t seed);

} // namespace virtual_reader
