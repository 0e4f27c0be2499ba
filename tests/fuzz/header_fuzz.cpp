// Both header decoders on arbitrary bytes, for libFuzzer. Whatever they are given, they read inside
// their blocks (the address sanitizer watches) and answer with values that the settings know.
#include "cart/gb_header.h"
#include "cart/gba_header.h"
#include "constants/boot_logos.h"
#include "rule.h"

#include <algorithm>
#include <vector>

namespace
{

using Bytes = std::vector<std::uint8_t>;

// As much as each decoder may read; a byte more is found by the address sanitizer.
constexpr std::size_t kGbDecoderBytes = 0x14A;
constexpr std::size_t kGbaDecoderBytes = 0xB0;

constexpr std::size_t kGbLogoOffset = 0x104;
constexpr std::size_t kGbaLogoOffset = 0x04;

// No decoder leaves this size, so a record that holds it was not filled.
constexpr std::int32_t kPresetRomSize = 12345;

// The input cut or filled up with zeros to `length` bytes, in a block of exactly that length.
Bytes blockOf(const std::uint8_t *data, std::size_t size, std::size_t length)
{
    Bytes block(length);
    std::copy(data, data + std::min(size, length), block.begin());
    return block;
}

template <typename Logo> bool hasLogo(const Bytes &block, const Logo &logo, std::size_t offset)
{
    return std::equal(logo.begin(), logo.end(), block.data() + offset);
}

template <typename Logo> void putLogo(Bytes *block, const Logo &logo, std::size_t offset)
{
    std::copy(logo.begin(), logo.end(), block->data() + offset);
}

bool isPowerOfTwo(std::int32_t size)
{
    return size > 0 && (size & (size - 1)) == 0;
}

void checkGb(const Bytes &block)
{
    GbHeaderInfo info;
    info.romSize = kPresetRomSize;
    const int result = decodeGbHeader(block.data(), &info);

    require(result == (hasLogo(block, kGbBootLogo, kGbLogoOffset) ? 1 : 0),
            "GB: the result is 1 for the right logo and 0 for any other");
    if (result == 0) {
        require(info.title.isEmpty() && info.typeName.isEmpty() && info.romSize == kPresetRomSize,
                "GB: a wrong logo leaves the record alone");
        return;
    }
    require(info.title.size() <= 16, "GB: a title has 16 characters at most");
    require(!info.typeName.isEmpty(), "GB: every type has a name");
    require(isPowerOfTwo(info.romSize) && info.romSize >= 32768 && info.romSize <= 8388608,
            "GB: the ROM size is one of the settings'");
    require(info.ramSize == 0 ||
                (isPowerOfTwo(info.ramSize) && info.ramSize >= 512 && info.ramSize <= 2097152),
            "GB: the RAM size is 0 or one of the table's");
    require(info.mbcType >= 0 && info.mbcType <= 6, "GB: the mapper is a row of the settings");
}

void checkGba(const Bytes &block)
{
    GbaHeaderInfo info;
    info.romSize = kPresetRomSize;
    const int result = decodeGbaHeader(block.data(), &info);

    const bool isGba = hasLogo(block, kGbaBootLogo, kGbaLogoOffset);
    require(gbaLogoMatches(block.data()) == isGba, "GBA: the logo is compared whole");
    require(result == (isGba ? info.romSize : 0), "GBA: the result is the ROM size or 0");
    if (info.romSize == kPresetRomSize) {
        require(info.title.isEmpty() && info.codes.isEmpty(),
                "GBA: an unknown game leaves the record alone");
        return;
    }
    require(isGba, "GBA: a wrong logo leaves the record alone");
    require(isPowerOfTwo(info.romSize), "GBA: the ROM size is one of the table's");
    require(!info.title.isEmpty(), "GBA: every game has a title");
    require(info.codes.contains(gbaHeaderCode(block.data())),
            "GBA: the found game has the header's code");
    require(info.saveType >= 0 && info.saveType <= 2, "GBA: the save type is one of the settings'");
    require(info.saveSize == 0 || isPowerOfTwo(info.saveSize),
            "GBA: the save size is 0 or one of the settings'");
}

void checkChecksums(const std::uint8_t *data, std::size_t size)
{
    Bytes gb = blockOf(data, size, kGbHeaderBytes);
    const bool isRight = gbHeaderChecksumIsRight(gb.data());
    gb[0x14D] = static_cast<std::uint8_t>(gb[0x14D] + 1);
    require(!(isRight && gbHeaderChecksumIsRight(gb.data())), "GB: one header checksum is right");
    require(!gbGlobalChecksumIsRight(data, 0), "GB: no ROM has no checksum");
    gbGlobalChecksumIsRight(gb.data(), kGbHeaderBytes);

    Bytes gba = blockOf(data, size, kGbaHeaderBytes);
    const bool isComplement = gbaComplementIsRight(gba.data());
    gba[0xBD] = static_cast<std::uint8_t>(gba[0xBD] + 1);
    require(!(isComplement && gbaComplementIsRight(gba.data())), "GBA: one complement is right");
    require(gbaHeaderTitle(gba.data()).size() <= 12, "GBA: a title has 12 characters at most");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Bytes gb = blockOf(data, size, kGbDecoderBytes);
    Bytes gba = blockOf(data, size, kGbaDecoderBytes);
    checkGb(gb);
    checkGba(gba);
    checkChecksums(data, size);

    // Hardly any change leaves a logo whole; with the logos put in, the rest is reached every time.
    putLogo(&gb, kGbBootLogo, kGbLogoOffset);
    putLogo(&gba, kGbaBootLogo, kGbaLogoOffset);
    checkGb(gb);
    checkGba(gba);
    return 0;
}
