#include "cart/cartridge_types.h"

#include "cart/setting_tables.h"

#include <algorithm>
#include <iterator>

namespace
{

// Rows of kMappers.
constexpr std::int32_t kNone = 0;
constexpr std::int32_t kMbc1 = 1;
constexpr std::int32_t kMbc2 = 2;
constexpr std::int32_t kMbc3 = 3;
constexpr std::int32_t kMbc5 = kMapperMbc5Row;
constexpr std::int32_t kMbc7 = 5;
constexpr std::int32_t kTama5 = 6;

constexpr CartridgeType kTypes[] = {
    {0x00, "ROM ONLY", kNone},
    {0x01, "ROM+MBC1", kMbc1},
    {0x02, "ROM+MBC1+RAM", kMbc1},
    {0x03, "ROM+MBC1+RAM+BATT", kMbc1},
    {0x05, "ROM+MBC2", kMbc2},
    {0x06, "ROM+MBC2+BATTERY", kMbc2},
    {0x08, "ROM+RAM", kNone},
    {0x09, "ROM+RAM+BATTERY", kNone},
    {0x0B, "ROM+MMMO1", kNone},
    {0x0C, "ROM+MMMO1+SRAM", kNone},
    {0x0D, "ROM+MMMO1+SRAM+BATT", kNone},
    {0x0F, "ROM+MBC3+TIMER+BATT", kMbc3},
    {0x10, "ROM+MBC3+TIMER+RAM+BAT", kMbc3},
    {0x11, "ROM+MBC3", kMbc3},
    {0x12, "ROM+MBC3+RAM", kMbc3},
    {0x13, "ROM+MBC3+RAM+BATT", kMbc3},
    {0x15, "ROM+MBC4", kMbc5},
    {0x16, "ROM+MBC4+RAM", kMbc5},
    {0x17, "ROM+MBC4+RAM+BATTERY", kMbc5},
    {0x19, "ROM+MBC5", kMbc5},
    {0x1A, "ROM+MBC5+RAM", kMbc5},
    {0x1B, "ROM+MBC5+RAM+BATT", kMbc5},
    {0x1C, "ROM+MBC5+RUMBLE", kMbc5},
    {0x1D, "ROM+MBC5+RUMBLE+SRAM", kMbc5},
    {0x1E, "ROM+MBC5+RUMBLE+SRAM+BATT", kMbc5},
    {0x1F, "Pocket Camera", kNoRow},
    {0x22, "ROM+MBC7+BATT", kMbc7},
    {0x55, "GameGenie", kNoRow},
    {0x56, "GameShark V3.0", kNoRow},
    {0xFC, "POCKET CAMERA", kNoRow},
    {0xFD, "Bandai TAMA5", kNoRow},
    {0xFE, "Hudson HuC-3", kNoRow},
    {0xFF, "HuC1+RAM+BATTERY", kTama5},
};

struct RomSize {
    std::uint8_t code;
    std::int32_t bytes;
};

constexpr std::int32_t kSmallestRom = 32768;

constexpr RomSize kRomSizes[] = {
    {0x00, kSmallestRom},
    {0x01, 65536},
    {0x02, 131072},
    {0x03, 262144},
    {0x04, 524288},
    {0x05, 1048576},
    {0x06, 2097152},
    {0x07, 4194304},
    {0x08, 8388608},
    // Sizes between 1 and 2 MiB, rounded up.
    {0x52, 2097152},
    {0x53, 2097152},
    {0x54, 2097152},
};

// By RAM size code. Codes 6 to 9 are extensions of this program.
constexpr std::int32_t kRamSizes[] = {0,      2048,   8192, 32768,   65536,
                                      131072, 262144, 512,  1048576, 2097152};

constexpr std::int32_t kMbc2RamSize = 512;

} // namespace

const CartridgeType *cartridgeType(std::uint8_t code)
{
    const CartridgeType *type =
        std::find_if(std::begin(kTypes), std::end(kTypes),
                     [code](const CartridgeType &row) { return row.code == code; });
    return type == std::end(kTypes) ? nullptr : type;
}

std::int32_t gbRomSizeBytes(std::uint8_t code)
{
    const RomSize *size = std::find_if(std::begin(kRomSizes), std::end(kRomSizes),
                                       [code](const RomSize &row) { return row.code == code; });
    return size == std::end(kRomSizes) ? kSmallestRom : size->bytes;
}

std::int32_t gbRamSizeBytes(std::uint8_t code, std::int32_t mapperRow)
{
    if (code == 0 && mapperRow == kMbc2)
        return kMbc2RamSize;
    return code < std::size(kRamSizes) ? kRamSizes[code] : 0;
}
