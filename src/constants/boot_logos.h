// The bitmaps that the consoles compare before they start a cartridge: the plainest sign of what is
// inserted. Constants of the hardware.
// Source: Pan Docs, "The Cartridge Header"; GBATEK, "GBA Cartridge Header".
#pragma once

#include <array>
#include <cstdint>

// At 0x104 of every Game Boy and Game Boy Color cartridge.
extern const std::array<std::uint8_t, 48> kGbBootLogo;

// At 0x04 of every Game Boy Advance cartridge, in its compressed form.
extern const std::array<std::uint8_t, 156> kGbaBootLogo;
