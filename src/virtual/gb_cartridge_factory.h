// Builds the Game Boy cartridge that an image belongs to.
#pragma once

#include "virtual/bytes.h"
#include "virtual/cartridge.h"
#include "virtual/cartridge_options.h"

#include <memory>
#include <string>

namespace virtual_reader
{

// Picks the mapper from header byte 0x147 and the RAM from 0x149, and takes over the image. Types
// that no known cartridge has are built as MBC5, the mapper that such boards most likely carry. The
// header stands at the image's start; where the last 32 KiB have a header of an MMM01, it is that
// one, as it is what the console sees first.
// Returns: null with the reason in `*error` for MBC6, which is not modelled, and for sizes and
// options that the mapper or the header contradict.
std::unique_ptr<Cartridge> makeGbCartridge(ByteVector image, const CartridgeOptions &options,
                                           std::string *error);

} // namespace virtual_reader
