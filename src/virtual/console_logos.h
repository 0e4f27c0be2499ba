// The bitmaps that the consoles check before they start a cartridge; public constants of the
// hardware. They tell the two kinds of image apart.
// Source: Pan Docs, "The Cartridge Header"; GBATEK, "GBA Cartridge Header".
#pragma once

#include "virtual/bytes.h"

#include <array>

namespace virtual_reader
{

extern const std::array<std::uint8_t, 48> kGbLogo;
extern const std::array<std::uint8_t, 156> kGbaLogo;

// True if the logo stands at its place in `image`, which may be of any size.
bool hasGbLogo(const ByteVector &image);
bool hasGbaLogo(const ByteVector &image);

} // namespace virtual_reader
