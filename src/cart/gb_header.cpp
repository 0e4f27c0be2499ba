#include "cart/gb_header.h"

#include "cart/cartridge_types.h"
#include "cart/setting_tables.h"
#include "constants/boot_logos.h"

#include <algorithm>
#include <numeric>

namespace
{

constexpr std::uint32_t kLogoOffset = 0x104;
constexpr std::uint32_t kTitleOffset = 0x134;
constexpr std::uint32_t kTitleBytes = 16;
constexpr std::uint32_t kTypeOffset = 0x147;
constexpr std::uint32_t kRomSizeOffset = 0x148;
constexpr std::uint32_t kRamSizeOffset = 0x149;
constexpr std::uint32_t kHeaderChecksumOffset = 0x14D; // covers the bytes from the title on
constexpr std::uint32_t kGlobalChecksumOffset = 0x14E; // high byte first

QString titleOf(const std::uint8_t *header)
{
    const char *title = reinterpret_cast<const char *>(header + kTitleOffset);
    return QString::fromUtf8(title, static_cast<int>(qstrnlen(title, kTitleBytes)));
}

void setType(std::uint8_t code, GbHeaderInfo *info)
{
    const CartridgeType *type = cartridgeType(code);
    info->typeName = type ? QString::fromLatin1(type->name)
                          : QStringLiteral("Unknow Cartridge Type%1").arg(code);
    info->mbcType = type && type->mapperRow != kNoRow ? type->mapperRow : kMapperMbc5Row;
}

} // namespace

int decodeGbHeader(const std::uint8_t *header, GbHeaderInfo *info)
{
    if (!std::equal(kGbBootLogo.begin(), kGbBootLogo.end(), header + kLogoOffset))
        return 0;
    info->title = titleOf(header);
    setType(header[kTypeOffset], info);
    info->romSize = gbRomSizeBytes(header[kRomSizeOffset]);
    info->ramSize = gbRamSizeBytes(header[kRamSizeOffset], info->mbcType);
    return 1;
}

bool gbHeaderChecksumIsRight(const std::uint8_t *header)
{
    const std::uint8_t *end = header + kHeaderChecksumOffset;
    const int sum = std::accumulate(header + kTitleOffset, end, 0,
                                    [](int part, std::uint8_t byte) { return part - byte - 1; });
    return static_cast<std::uint8_t>(sum) == *end;
}

bool gbGlobalChecksumIsRight(const std::uint8_t *rom, std::uint32_t length)
{
    if (length < kGbHeaderBytes)
        return false;
    const std::uint32_t high = rom[kGlobalChecksumOffset];
    const std::uint32_t low = rom[kGlobalChecksumOffset + 1];
    // All bytes but the checksum itself.
    const std::uint32_t sum = std::accumulate(rom, rom + length, std::uint32_t{0}) - high - low;
    return (sum & 0xFFFFU) == (high << 8 | low);
}
