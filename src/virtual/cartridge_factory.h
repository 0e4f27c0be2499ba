// Builds the cartridge that an image belongs to.
#pragma once

#include "virtual/bytes.h"
#include "virtual/cartridge.h"

#include <memory>
#include <string>

// Picks the mapper from header byte 0x147 and the RAM from 0x149, and takes over the image.
// Returns: null with the reason in `*error` for kinds that are not modelled and for sizes that the
// mapper or the header contradict.
std::unique_ptr<Cartridge> makeCartridge(ByteVector image, std::string *error);
