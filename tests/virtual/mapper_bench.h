// What tests of mappers share: images, banks found by their contents, short ways to the bus.
#pragma once

#include "samples.h"

#include "virtual/cartridge.h"
#include "virtual/image_generator.h"

#include <QtGlobal>

#include <cstdint>
#include <string>

constexpr std::uint32_t kKiB = 1024;
constexpr std::uint32_t kBankSize = 16 * kKiB;

inline virtual_reader::ByteVector bankedImage(std::uint32_t size)
{
    return gbImage({0x1B, size, 0, "BANKS", 42});
}

inline void busWrite(virtual_reader::Cartridge &cartridge, unsigned address, unsigned value)
{
    cartridge.gbWrite(static_cast<std::uint16_t>(address), static_cast<std::uint8_t>(value));
}

// As int, for QCOMPARE.
inline int busRead(virtual_reader::Cartridge &cartridge, unsigned address)
{
    return cartridge.gbRead(static_cast<std::uint16_t>(address));
}

// The number of the 16 KiB bank that shows at `address`; -1 if it is none. Bytes 0 to 3 of each
// sector of a generated image are the sector's number, but for the header.
inline int bankAt(virtual_reader::Cartridge &cartridge, unsigned address)
{
    unsigned sector = 0;
    for (unsigned i = 0; i < 4; ++i)
        sector |= static_cast<unsigned>(busRead(cartridge, address + i)) << (8 * i);
    const unsigned bank = sector / 32;
    const virtual_reader::ByteVector image = cartridge.romImage();
    if (bank >= image.size() / kBankSize)
        return -1;
    for (unsigned i = 0; i < kBankSize; ++i) {
        if (busRead(cartridge, address + i) != image[bank * kBankSize + i])
            return -1;
    }
    return static_cast<int>(bank);
}
