// Which save chip a GBA cartridge gets.
#pragma once

#include "virtual/cartridge_options.h"
#include "virtual/gba_save_chips.h"

#include <memory>
#include <optional>
#include <string>

namespace virtual_reader
{

struct GbaSaveChoice {
    SaveKind kind = SaveKind::None;
    std::uint32_t sizeBytes = 0;
};

// What the options ask for in a cartridge whose ROM has the mark `mark`. Without a type in the
// options the mark decides, without a size the smallest chip of the type, or the one that the mark
// names.
// Returns: nothing with the reason in `*error` for a size that no such chip has.
std::optional<GbaSaveChoice> chooseGbaSave(const CartridgeOptions &options, SaveKind mark,
                                           std::string *error);

// A fresh chip; null for None. `behaviour`: of a FLASH.
std::unique_ptr<GbaSaveChip> makeGbaSaveChip(const GbaSaveChoice &choice,
                                             const FlashChipBehaviour &behaviour);

} // namespace virtual_reader
