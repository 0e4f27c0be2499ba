#include "virtual/gb_flash.h"

#include <algorithm>
#include <utility>

namespace virtual_reader
{

namespace
{

constexpr std::uint32_t kSectorSize = 64 * 1024;

// Ids of an Am29F040B and an Am29LV160DB; the sizes are whatever a test needs. Sectors are all
// alike; the data sheets' typical times for one are 1 and 0.7 seconds.
constexpr std::uint32_t kSectorErase = 800000;
constexpr FlashChipFacts kByteWide = {0, kSectorSize, 0x555, 0x2AA, 0x7FF,       0x55,
                                      0, 0x01,        0xA4,  false, kSectorErase};
constexpr FlashChipFacts kWordWide = {0, kSectorSize, 0xAAA, 0x555, 0xFFF,       0xAA,
                                      1, 0x01,        0x49,  false, kSectorErase};

} // namespace

std::unique_ptr<FlashChip> makeGbFlash(FlashWidth width, const FlashChipBehaviour &behaviour,
                                       ByteVector contents)
{
    if (width == FlashWidth::None)
        return nullptr;
    FlashChipFacts facts = width == FlashWidth::Byte ? kByteWide : kWordWide;
    facts.sizeBytes = static_cast<std::uint32_t>(contents.size());
    facts.sectorSize = std::min(kSectorSize, facts.sizeBytes);
    return std::make_unique<FlashChip>(facts, behaviour, std::move(contents));
}

} // namespace virtual_reader
