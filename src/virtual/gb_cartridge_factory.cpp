#include "virtual/gb_cartridge_factory.h"

#include "constants/boot_logos.h"
#include "virtual/gb_cartridges.h"
#include "virtual/gb_flash.h"
#include "virtual/gb_header.h"
#include "virtual/mappers/camera_cartridge.h"
#include "virtual/mappers/huc1_cartridge.h"
#include "virtual/mappers/huc3_cartridge.h"
#include "virtual/mappers/mbc2_cartridge.h"
#include "virtual/mappers/mbc3_cartridge.h"
#include "virtual/mappers/mbc7_cartridge.h"
#include "virtual/mappers/mmm01_cartridge.h"
#include "virtual/mappers/tama5_cartridge.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace virtual_reader
{

namespace
{

constexpr std::uint32_t kKiB = 1024;
constexpr std::uint32_t kMenuSize = 32 * kKiB;

using CartridgePtr = std::unique_ptr<GbCartridge>;

template <class Kind>
CartridgePtr build(ByteVector rom, std::uint32_t ramSize, const CartridgeOptions &)
{
    return std::make_unique<Kind>(std::move(rom), ramSize);
}

// For mappers with memory of their own.
template <class Kind>
CartridgePtr buildWhole(ByteVector rom, std::uint32_t, const CartridgeOptions &)
{
    return std::make_unique<Kind>(std::move(rom));
}

CartridgePtr buildMbc1(ByteVector rom, std::uint32_t ramSize, const CartridgeOptions &options)
{
    const Mbc1Board board = options.multiCart ? Mbc1Board::MultiCart : Mbc1Board::Plain;
    return std::make_unique<Mbc1Cartridge>(std::move(rom), ramSize, board);
}

struct GbKind {
    std::uint8_t firstType;
    std::uint8_t lastType;
    std::uint8_t firstTypeWithRam; // above lastType: none of them, as far as the header tells
    const char *name;
    std::uint32_t largestRom; // bytes
    std::uint32_t largestRam; // bytes
    CartridgePtr (*build)(ByteVector rom, std::uint32_t ramSize, const CartridgeOptions &options);
};

// Sorted by type.
const GbKind kKinds[] = {
    {0x00, 0x00, 0x01, "ROM only", 32 * kKiB, 0, build<GbCartridge>},
    {0x01, 0x03, 0x02, "MBC1", 2048 * kKiB, 32 * kKiB, buildMbc1},
    {0x05, 0x06, 0x07, "MBC2", 256 * kKiB, 0, buildWhole<Mbc2Cartridge>},
    {0x08, 0x09, 0x08, "ROM+RAM", 32 * kKiB, 8 * kKiB, build<GbCartridge>},
    {0x0B, 0x0D, 0x0C, "MMM01", 8192 * kKiB, 128 * kKiB, build<Mmm01Cartridge>},
    {0x0F, 0x10, 0x10, "MBC3 with clock", 4096 * kKiB, 64 * kKiB, build<Mbc3Cartridge>},
    {0x11, 0x13, 0x12, "MBC3", 4096 * kKiB, 64 * kKiB, build<Mbc3Cartridge>},
    {0x19, 0x1B, 0x1A, "MBC5", 8192 * kKiB, 128 * kKiB, build<Mbc5Cartridge>},
    {0x1C, 0x1E, 0x1D, "MBC5 with motor", 8192 * kKiB, 64 * kKiB, build<Mbc5Cartridge>},
    {0x22, 0x22, 0x23, "MBC7", 2048 * kKiB, 0, buildWhole<Mbc7Cartridge>},
    {0xFC, 0xFC, 0xFC, "camera", 1024 * kKiB, 128 * kKiB, build<CameraCartridge>},
    {0xFD, 0xFD, 0xFE, "TAMA5", 512 * kKiB, 0, buildWhole<Tama5Cartridge>},
    {0xFE, 0xFE, 0xFE, "HuC-3", 2048 * kKiB, 128 * kKiB, build<Huc3Cartridge>},
    {0xFF, 0xFF, 0xFF, "HuC1", 1024 * kKiB, 32 * kKiB, build<Huc1Cartridge>},
};

// Of all types without a row.
const GbKind kUnknownKind = {
    0x00, 0xFF, 0x00, "unknown type, built as MBC5", 8192 * kKiB, 128 * kKiB, build<Mbc5Cartridge>};

constexpr std::uint8_t kMbc6Type = 0x20;
// Type of a board that carries flash but no game to say what it is.
constexpr std::uint8_t kBlankBoardType = 0x19;

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

const GbKind &kindOf(std::uint8_t type)
{
    for (const GbKind &kind : kKinds) {
        if (type >= kind.firstType && type <= kind.lastType)
            return kind;
    }
    return kUnknownKind;
}

// Whether a header that begins to count at `base` has the logo.
bool hasLogo(const ByteVector &image, std::size_t base)
{
    const auto logo = image.begin() + static_cast<std::ptrdiff_t>(base + kGbLogoOffset);
    return std::equal(kGbBootLogo.begin(), kGbBootLogo.end(), logo);
}

// Where the cartridge's own header begins to count: at 0, or at the menu of an MMM01.
std::size_t headerBase(const ByteVector &image)
{
    const std::size_t menu = image.size() - kMenuSize;
    const bool isMmm01 = kindOf(image[menu + kGbTypeOffset]).build == build<Mmm01Cartridge>;
    return isMmm01 && hasLogo(image, menu) ? menu : 0;
}

std::string tooLarge(const std::string &what, const GbKind &kind, std::uint32_t largest)
{
    return what + ": a cartridge of the kind " + kind.name + " holds " + kibibytes(largest) +
           " at most";
}

std::string capacityFault(std::size_t size, const GbKind &kind)
{
    if (size <= kind.largestRom)
        return {};
    return tooLarge("image of " + kibibytes(size), kind, kind.largestRom);
}

std::string headerFault(std::size_t size, std::uint8_t code)
{
    // Codes above 8 name no size that can be checked.
    if (code > 8 || kGbSmallestRom << code == size)
        return {};
    return "image of " + kibibytes(size) + ": its header says " + kibibytes(kGbSmallestRom << code);
}

// RAM size in bytes; 0 with a reason in `*error` if the header's code fits no such cartridge.
std::uint32_t ramSizeOf(std::uint8_t type, std::uint8_t code, const GbKind &kind,
                        std::string *error)
{
    if (type < kind.firstTypeWithRam)
        return 0;
    if (code < kGbRamSizeCount && kGbRamSizes[code] <= kind.largestRam)
        return kGbRamSizes[code];
    *error = tooLarge("RAM size code " + hex(code), kind, kind.largestRam);
    return 0;
}

std::string typeFault(std::uint8_t type, const GbKind &kind, const CartridgeOptions &options)
{
    if (type == kMbc6Type)
        return "cartridge type " + hex(type) + ", MBC6, is not modelled";
    if (options.multiCart && kind.build != buildMbc1)
        return "cartridge type " + hex(type) + ": multicart boards have the mapper MBC1";
    return {};
}

std::string flakyFault(std::size_t size, const CartridgeOptions &options)
{
    const std::size_t banks = size / kGbRomBankSize;
    if (!options.flakyBank || *options.flakyBank < banks)
        return {};
    return "flaky bank " + std::to_string(*options.flakyBank) + ": the image has " +
           std::to_string(banks) + " banks";
}

// The image as a chip of the asked size holds it, erased cells behind its end.
bool fillChip(std::uint32_t size, ByteVector *image, std::string *error)
{
    if (image->size() > size) {
        *error = "image of " + std::to_string(image->size()) + " bytes: the flash chip has " +
                 std::to_string(size);
        return false;
    }
    image->resize(size, 0xFF);
    return true;
}

} // namespace

std::unique_ptr<Cartridge> makeGbCartridge(ByteVector image, const CartridgeOptions &options,
                                           std::string *error)
{
    const bool hasFlash = options.flash != FlashWidth::None;
    if (hasFlash && options.flashSize != 0 && !fillChip(options.flashSize, &image, error))
        return nullptr;
    if (!isGbRomSize(image.size())) {
        *error = "image of " + std::to_string(image.size()) +
                 " bytes: must be a power of two from 32 KiB to 8 MiB";
        return nullptr;
    }
    const std::uint8_t *header = image.data() + headerBase(image);
    const bool blank = hasFlash && !hasLogo(image, 0);
    const std::uint8_t type = blank ? kBlankBoardType : header[kGbTypeOffset];
    const GbKind &kind = kindOf(type);
    *error = typeFault(type, kind, options);
    if (error->empty())
        *error = capacityFault(image.size(), kind);
    if (error->empty() && !hasFlash)
        *error = headerFault(image.size(), header[kGbRomSizeOffset]);
    if (error->empty())
        *error = flakyFault(image.size(), options);
    std::uint32_t ramSize = 0;
    if (error->empty() && !blank)
        ramSize = ramSizeOf(type, header[kGbRamSizeOffset], kind, error);
    if (!error->empty())
        return nullptr;
    CartridgePtr cartridge = kind.build(image, ramSize, options);
    if (options.flakyBank)
        cartridge->loosen(*options.flakyBank);
    cartridge->fitFlash(makeGbFlash(options.flash, options.flashChip, std::move(image)));
    return cartridge;
}

} // namespace virtual_reader
