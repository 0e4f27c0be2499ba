// What a user says of a cartridge that its image does not tell, or tells otherwise.
#pragma once

#include "virtual/flash_chip.h"
#include "virtual/gb_flash.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace virtual_reader
{

// Which bus a cartridge is built for.
enum class CartridgeSystem { ByHeader, Gb, Gba };

// The save memory of a GBA cartridge. ByMark: as the game's save library says in the ROM.
enum class GbaSaveType { ByMark, None, Sram, Flash, Eeprom };

struct CartridgeOptions {
    CartridgeSystem system = CartridgeSystem::ByHeader;
    bool multiCart = false; // an MBC1 wired for a compilation; headers do not tell
    GbaSaveType saveType = GbaSaveType::ByMark;
    std::uint32_t saveSize = 0;             // bytes; 0: as usual for the type
    FlashWidth flash = FlashWidth::None;    // of a GB cartridge, instead of its ROM
    std::uint32_t flashSize = 0;            // bytes; 0: the image's
    FlashChipBehaviour flashChip;           // of either system's flash chips
    std::optional<std::uint32_t> flakyBank; // of a GB ROM: its contact is bad
};

// One option as users write it, such as "system" with the value "gba".
struct CartridgeOptionRow {
    const char *name;
    const char *value; // what it may be, for messages
    const char *help;
    // Returns: false if the value cannot be used.
    bool (*apply)(const std::string &value, CartridgeOptions *options);
};

// In the order of the help text.
const std::vector<CartridgeOptionRow> &cartridgeOptionRows();

// Returns: null if there is no option of that name.
const CartridgeOptionRow *findCartridgeOption(const std::string &name);

} // namespace virtual_reader
