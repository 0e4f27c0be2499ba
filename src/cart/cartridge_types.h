// What the three size and type codes of a Game Boy header stand for, as rows of constant data.
//
// Some rows differ from the hardware, and have to: the names and mapper rows decide which mapper
// script is offered for a cartridge. MMM01 selects no mapper, MBC4 selects MBC5, and the RAM codes
// 4 and 5 are 64 and 128 KiB in this order.
// Thread: constant data and pure functions; any thread.
#pragma once

#include <cstdint>

// What a cartridge type code says.
struct CartridgeType {
    std::uint8_t code;
    const char *name;
    std::int32_t mapperRow; // row of kMappers, or kNoRow where the type names none
};

// The type with `code`, or nullptr if the code is unknown.
const CartridgeType *cartridgeType(std::uint8_t code);

// ROM size in bytes. An unknown code means the smallest size, 32 KiB.
std::int32_t gbRomSizeBytes(std::uint8_t code);

// Save RAM size in bytes; 0 for an unknown code. Cartridges with MBC2 say that they have no RAM,
// because theirs is inside the mapper: with `mapperRow` 2 code 0 means 512 bytes.
std::int32_t gbRamSizeBytes(std::uint8_t code, std::int32_t mapperRow);
