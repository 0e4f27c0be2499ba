#include "cart/dump_checks.h"

#include "cart/gb_header.h"
#include "cart/gba_header.h"

#include <cstring>

namespace
{

constexpr std::uint32_t kLeastRepeatedBytes = 256;
constexpr std::uint32_t kLeastOpenBusBytes = 512; // and what its beginning is rounded to

constexpr std::uint32_t kGbRomSizeOffset = 0x148;
constexpr std::int32_t kGbSmallestRom = 32768;

// The size in the header of an image whose logo is right. The decoder takes the smallest size for
// any unknown code.
std::optional<std::uint32_t> romSizeOf(const GbHeaderInfo &info, const std::uint8_t *header)
{
    if (info.romSize == kGbSmallestRom && header[kGbRomSizeOffset] != 0)
        return std::nullopt;
    return static_cast<std::uint32_t>(info.romSize);
}

void checkGbHeader(const std::uint8_t *bytes, std::uint32_t size, DumpChecks *checks)
{
    checks->globalChecksumIsRight = gbGlobalChecksumIsRight(bytes, size);
    if (size < kGbHeaderBytes)
        return;
    GbHeaderInfo info;
    checks->logoIsRight = decodeGbHeader(bytes, &info) == 1;
    checks->headerChecksumIsRight = gbHeaderChecksumIsRight(bytes);
    if (checks->logoIsRight)
        checks->headerSize = romSizeOf(info, bytes);
}

void checkGbaHeader(const std::uint8_t *bytes, std::uint32_t size, DumpChecks *checks)
{
    if (size < kGbaHeaderBytes)
        return;
    checks->logoIsRight = gbaLogoMatches(bytes);
    checks->headerChecksumIsRight = gbaComplementIsRight(bytes);
}

DumpSystem systemOfLogo(const std::uint8_t *bytes, std::uint32_t size)
{
    GbHeaderInfo info;
    if (size >= kGbHeaderBytes && decodeGbHeader(bytes, &info) == 1)
        return DumpSystem::Gb;
    if (size >= kGbaHeaderBytes && gbaLogoMatches(bytes))
        return DumpSystem::Gba;
    return DumpSystem::Unknown;
}

// The byte at `offset` of an image that no ROM chip answered for.
std::uint8_t openBusByte(std::uint32_t offset)
{
    const std::uint32_t halfword = offset / 2;
    return static_cast<std::uint8_t>(offset % 2 == 0 ? halfword : halfword >> 8);
}

// Where the open bus begins that goes on to the end; size, if it is too short to be one.
std::uint32_t openBusStart(const std::uint8_t *bytes, std::uint32_t size)
{
    std::uint32_t start = size;
    while (start > 0 && bytes[start - 1] == openBusByte(start - 1))
        --start;
    if (size - start < kLeastOpenBusBytes)
        return size;
    return start + (kLeastOpenBusBytes - start % kLeastOpenBusBytes) % kLeastOpenBusBytes;
}

void setTail(DumpTail tail, std::uint32_t contentSize, std::uint32_t size, DumpChecks *checks)
{
    if (contentSize == size)
        return;
    checks->tail = tail;
    checks->contentSize = contentSize;
}

void checkTail(const std::uint8_t *bytes, std::uint32_t size, DumpChecks *checks)
{
    // An image of nothing but open bus repeats itself too, every 128 KiB.
    if (checks->system != DumpSystem::Gb)
        setTail(DumpTail::OpenBus, openBusStart(bytes, size), size, checks);
    if (checks->tail != DumpTail::None || checks->globalChecksumIsRight.value_or(false))
        return;
    setTail(DumpTail::Mirrored, repeatedContentSize(bytes, size), size, checks);
    if (checks->system == DumpSystem::Gb)
        checks->globalChecksumIsRight = gbGlobalChecksumIsRight(bytes, checks->contentSize);
}

// The largest power of two below `size`, which is at least 2.
std::uint32_t powerOfTwoBelow(std::uint32_t size)
{
    std::uint32_t power = 1;
    while (power < size - power)
        power *= 2;
    return power;
}

} // namespace

DumpChecks checkDump(const std::uint8_t *bytes, std::uint32_t size, DumpSystem system)
{
    DumpChecks checks;
    checks.system = system == DumpSystem::Unknown ? systemOfLogo(bytes, size) : system;
    checks.allBytesEqual = allBytesEqual(bytes, size);
    checks.contentSize = size;
    if (checks.system == DumpSystem::Gb)
        checkGbHeader(bytes, size, &checks);
    else if (checks.system == DumpSystem::Gba)
        checkGbaHeader(bytes, size, &checks);
    if (!checks.allBytesEqual)
        checkTail(bytes, size, &checks);
    return checks;
}

bool allBytesEqual(const std::uint8_t *bytes, std::uint32_t size)
{
    return size > 0 && std::memcmp(bytes, bytes + 1, size - 1) == 0;
}

std::uint32_t repeatedContentSize(const std::uint8_t *bytes, std::uint32_t size)
{
    if (size <= kLeastRepeatedBytes || allBytesEqual(bytes, size))
        return size;
    std::uint32_t content = powerOfTwoBelow(size);
    if (std::memcmp(bytes, bytes + content, size - content) != 0)
        return size;
    // Ends before the halves are single bytes, because not all bytes are equal.
    while (std::memcmp(bytes, bytes + content / 2, content / 2) == 0)
        content /= 2;
    return size - content < kLeastRepeatedBytes ? size : content;
}
