#include "virtual/image_generator.h"

#include "constants/boot_logos.h"
#include "virtual/gb_header.h"

#include <algorithm>
#include <cctype>
#include <iterator>

namespace virtual_reader
{

namespace
{

constexpr std::uint32_t kSectorSize = 512;

// nop; jp 0x150, and there an endless loop.
constexpr std::uint8_t kEntryPoint[] = {0x00, 0xC3, 0x50, 0x01};
constexpr std::uint8_t kProgram[] = {0x18, 0xFE};

// SplitMix64: any seed will do, and nearby seeds give unrelated sequences.
std::uint64_t nextRandom(std::uint64_t *state)
{
    *state += 0x9E3779B97F4A7C15U;
    std::uint64_t z = *state;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31);
}

std::uint8_t romSizeCode(std::uint32_t size)
{
    std::uint8_t code = 0;
    while (kGbSmallestRom << code < size)
        ++code;
    return code;
}

std::string specFault(const GbImageSpec &spec)
{
    if (!isGbRomSize(spec.romSize))
        return "ROM size " + std::to_string(spec.romSize) +
               ": must be a power of two from 32 KiB to 8 MiB";
    if (std::find(std::begin(kGbRamSizes), std::end(kGbRamSizes), spec.ramSize) ==
        std::end(kGbRamSizes))
        return "RAM size " + std::to_string(spec.ramSize) + ": must be 0, 2, 8, 32, 64 or 128 KiB";
    return titleFault(spec.title, kGbTitleSize);
}

void writeHeader(const GbImageSpec &spec, ByteVector *image)
{
    const auto at = [image](std::uint32_t offset) { return image->begin() + offset; };
    std::fill(at(0x100), at(kGbHeaderEnd), std::uint8_t{0});
    std::copy(std::begin(kEntryPoint), std::end(kEntryPoint), at(0x100));
    std::copy(kGbBootLogo.begin(), kGbBootLogo.end(), at(kGbLogoOffset));
    std::copy(spec.title.begin(), spec.title.end(), at(kGbTitleOffset));
    (*image)[kGbTypeOffset] = spec.type;
    (*image)[kGbRomSizeOffset] = romSizeCode(spec.romSize);
    const auto *ramCode = std::find(std::begin(kGbRamSizes), std::end(kGbRamSizes), spec.ramSize);
    (*image)[kGbRamSizeOffset] = static_cast<std::uint8_t>(ramCode - std::begin(kGbRamSizes));
    std::copy(std::begin(kProgram), std::end(kProgram), at(kGbHeaderEnd));
    (*image)[kGbHeaderChecksumOffset] = gbHeaderChecksum(*image);
    const std::uint16_t sum = gbGlobalChecksum(*image);
    (*image)[kGbGlobalChecksumOffset] = static_cast<std::uint8_t>(sum >> 8);
    (*image)[kGbGlobalChecksumOffset + 1] = static_cast<std::uint8_t>(sum);
}

} // namespace

std::uint8_t gbHeaderChecksum(const ByteVector &image)
{
    int sum = 0;
    for (std::uint32_t i = kGbTitleOffset; i < kGbHeaderChecksumOffset; ++i)
        sum -= image[i] + 1;
    return static_cast<std::uint8_t>(sum);
}

std::uint16_t gbGlobalChecksum(const ByteVector &image)
{
    std::uint32_t sum = 0;
    for (const std::uint8_t byte : image)
        sum += byte;
    sum -= image[kGbGlobalChecksumOffset];
    sum -= image[kGbGlobalChecksumOffset + 1];
    return static_cast<std::uint16_t>(sum);
}

ByteVector makeNoise(std::uint32_t size, std::uint64_t seed)
{
    ByteVector noise(size);
    std::uint64_t word = 0;
    for (std::uint32_t i = 0; i < size; ++i) {
        word = i % 8 == 0 ? nextRandom(&seed) : word >> 8;
        noise[i] = static_cast<std::uint8_t>(word);
    }
    return noise;
}

ByteVector makeNumberedSectors(std::uint32_t size, std::uint64_t seed)
{
    ByteVector image = makeNoise(size, seed);
    for (std::uint32_t offset = 0; offset < size; offset += kSectorSize) {
        const std::uint32_t width = std::min<std::uint32_t>(4, size - offset);
        putLittleEndian(image.data() + offset, offset / kSectorSize, width);
    }
    return image;
}

std::string titleFault(const std::string &title, std::uint32_t longest)
{
    if (title.size() > longest)
        return "title \"" + title + "\": must have " + std::to_string(longest) +
               " characters at most";
    for (const char character : title) {
        if (character < 0x20 || character > 0x7E || (character >= 'a' && character <= 'z'))
            return "title \"" + title + "\": must be printable ASCII without small letters";
    }
    return {};
}

bool makeGbImage(const GbImageSpec &spec, ByteVector *image, std::string *error)
{
    *error = specFault(spec);
    if (!error->empty())
        return false;
    *image = makeNumberedSectors(spec.romSize, spec.seed);
    writeHeader(spec, image);
    return true;
}

} // namespace virtual_reader
