#include "constants/boot_logos.h"
#include "virtual/gba_header.h"
#include "virtual/gba_save_library.h"
#include "virtual/image_generator.h"

#include <algorithm>
#include <iterator>

namespace virtual_reader
{

namespace
{

// A branch to the end of the header, and there an endless loop.
constexpr std::uint8_t kEntryPoint[] = {0x2E, 0x00, 0x00, 0xEA};
constexpr std::uint8_t kProgram[] = {0xFE, 0xFF, 0xFF, 0xEA};

constexpr std::uint8_t kMaker[] = {'V', 'D'};

// Where the mark of the save library goes: behind the program, on a word boundary.
constexpr std::uint32_t kMarkOffset = 0x100;
static_assert(kMarkOffset + kGbaSaveMarkSize <= kGbaSmallestRom);

std::string specFault(const GbaImageSpec &spec)
{
    if (!isGbaRomSize(spec.romSize))
        return "ROM size " + std::to_string(spec.romSize) +
               ": must be an even number from 512 bytes to 32 MiB";
    if (spec.code.size() != kGbaCodeSize)
        return "game code \"" + spec.code + "\": must have 4 characters";
    return titleFault(spec.title, kGbaTitleSize);
}

std::uint8_t headerComplement(const ByteVector &image)
{
    int sum = 0x19;
    for (std::uint32_t i = kGbaTitleOffset; i < kGbaComplementOffset; ++i)
        sum += image[i];
    return static_cast<std::uint8_t>(-sum);
}

void writeHeader(const GbaImageSpec &spec, ByteVector *image)
{
    const auto at = [image](std::uint32_t offset) { return image->begin() + offset; };
    std::fill(at(0), at(kGbaHeaderEnd), std::uint8_t{0});
    std::copy(std::begin(kEntryPoint), std::end(kEntryPoint), at(0));
    std::copy(kGbaBootLogo.begin(), kGbaBootLogo.end(), at(kGbaLogoOffset));
    std::copy(spec.title.begin(), spec.title.end(), at(kGbaTitleOffset));
    std::copy(spec.code.begin(), spec.code.end(), at(kGbaCodeOffset));
    std::copy(std::begin(kMaker), std::end(kMaker), at(kGbaMakerOffset));
    (*image)[kGbaFixedOffset] = kGbaFixedValue;
    (*image)[kGbaComplementOffset] = headerComplement(*image);
    std::copy(std::begin(kProgram), std::end(kProgram), at(kGbaHeaderEnd));
}

} // namespace

bool makeGbaImage(const GbaImageSpec &spec, ByteVector *image, std::string *error)
{
    *error = specFault(spec);
    if (!error->empty())
        return false;
    *image = makeNumberedSectors(spec.romSize, spec.seed);
    writeHeader(spec, image);
    const std::string mark = gbaSaveMark(spec.saveKind);
    std::copy(mark.begin(), mark.end(), image->begin() + kMarkOffset);
    return true;
}

} // namespace virtual_reader
