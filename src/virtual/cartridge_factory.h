// Builds the cartridge that an image belongs to.
#pragma once

#include "virtual/bytes.h"
#include "virtual/cartridge.h"
#include "virtual/cartridge_options.h"

#include <memory>
#include <string>

namespace virtual_reader
{

// An image with the logo of the Game Boy Advance is one of those, any other a Game Boy's, unless
// the options say otherwise. Takes over the image. Returns: null with the reason in `*error` for
// kinds that are not modelled and for sizes that the mapper or the header contradict.
std::unique_ptr<Cartridge> makeCartridge(ByteVector image, const CartridgeOptions &options,
                                         std::string *error);
std::unique_ptr<Cartridge> makeCartridge(ByteVector image, std::string *error);

} // namespace virtual_reader
