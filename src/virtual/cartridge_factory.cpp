#include "virtual/cartridge_factory.h"

#include "virtual/gb_cartridges.h"
#include "virtual/gb_header.h"

#include <cstdio>
#include <utility>

namespace
{

constexpr std::uint32_t kKiB = 1024;

template <class Kind> std::unique_ptr<Cartridge> build(ByteVector rom, std::uint32_t ramSize)
{
    return std::make_unique<Kind>(std::move(rom), ramSize);
}

struct CartridgeKind {
    std::uint8_t firstType;
    std::uint8_t lastType;
    std::uint8_t firstTypeWithRam; // above lastType: none of them
    const char *name;
    std::uint32_t largestRom; // bytes
    std::uint32_t largestRam; // bytes
    std::unique_ptr<Cartridge> (*build)(ByteVector rom, std::uint32_t ramSize);
};

// Sorted by type.
const CartridgeKind kKinds[] = {
    {0x00, 0x00, 0x01, "ROM only", 32 * kKiB, 0, build<GbCartridge>},
    {0x01, 0x03, 0x02, "MBC1", 2048 * kKiB, 32 * kKiB, build<Mbc1Cartridge>},
    {0x08, 0x09, 0x08, "ROM+RAM", 32 * kKiB, 8 * kKiB, build<GbCartridge>},
    {0x19, 0x1B, 0x1A, "MBC5", 8192 * kKiB, 128 * kKiB, build<Mbc5Cartridge>},
};

std::string hex(std::uint8_t value)
{
    char buffer[8];
    std::snprintf(buffer, sizeof buffer, "0x%02X", value);
    return buffer;
}

std::string kibibytes(std::uint64_t bytes)
{
    return std::to_string(bytes / kKiB) + " KiB";
}

std::string modelledKinds()
{
    std::string list;
    for (const CartridgeKind &kind : kKinds) {
        list += list.empty() ? "" : ", ";
        list += std::string(kind.name) + " (" + hex(kind.firstType);
        if (kind.lastType != kind.firstType)
            list += " to " + hex(kind.lastType);
        list += ")";
    }
    return list;
}

const CartridgeKind *findKind(std::uint8_t type)
{
    for (const CartridgeKind &kind : kKinds) {
        if (type >= kind.firstType && type <= kind.lastType)
            return &kind;
    }
    return nullptr;
}

std::string romFault(const ByteVector &image, const CartridgeKind &kind)
{
    if (image.size() > kind.largestRom)
        return "image of " + kibibytes(image.size()) + ": a cartridge of the kind " + kind.name +
               " holds " + kibibytes(kind.largestRom) + " at most";
    const std::uint8_t code = image[kGbRomSizeOffset];
    // Codes above 8 name no size that can be checked.
    if (code <= 8 && kGbSmallestRom << code != image.size())
        return "image of " + kibibytes(image.size()) + ": its header says " +
               kibibytes(kGbSmallestRom << code);
    return {};
}

// RAM size in bytes; 0 with a reason in `*error` if the header's code fits no such cartridge.
std::uint32_t ramSizeOf(const ByteVector &image, const CartridgeKind &kind, std::string *error)
{
    if (image[kGbTypeOffset] < kind.firstTypeWithRam)
        return 0;
    const std::uint8_t code = image[kGbRamSizeOffset];
    if (code < kGbRamSizeCount && kGbRamSizes[code] <= kind.largestRam)
        return kGbRamSizes[code];
    *error = "RAM size code " + hex(code) + ": a cartridge of the kind " + kind.name + " holds " +
             kibibytes(kind.largestRam) + " at most";
    return 0;
}

} // namespace

std::unique_ptr<Cartridge> makeCartridge(ByteVector image, std::string *error)
{
    error->clear();
    if (!isGbRomSize(image.size())) {
        *error = "image of " + std::to_string(image.size()) +
                 " bytes: must be a power of two from 32 KiB to 8 MiB";
        return nullptr;
    }
    const std::uint8_t type = image[kGbTypeOffset];
    const CartridgeKind *kind = findKind(type);
    if (kind == nullptr) {
        *error =
            "cartridge type " + hex(type) + " is not modelled; modelled are " + modelledKinds();
        return nullptr;
    }
    *error = romFault(image, *kind);
    const std::uint32_t ramSize = error->empty() ? ramSizeOf(image, *kind, error) : 0;
    return error->empty() ? kind->build(std::move(image), ramSize) : nullptr;
}
