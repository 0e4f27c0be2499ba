// Cartridge images for trying out and testing: valid headers, contents that no two places share.
#pragma once

#include "virtual/bytes.h"

#include <cstdint>
#include <string>

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

// `size` pseudo-random bytes, for saves.
ByteVector makeNoise(std::uint32_t size, std::uint64_t seed);
