#include "device/checksums.h"

#include <array>
#include <cstddef>

namespace
{

constexpr std::uint16_t kCrc16Polynomial = 0x1021;
constexpr std::uint32_t kCrc32Polynomial = 0xEDB88320U;

constexpr std::array<std::uint16_t, 256> makeCrc16Table()
{
    std::array<std::uint16_t, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        std::uint32_t crc = static_cast<std::uint32_t>(i) << 8;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 0x8000U) ? (crc << 1) ^ kCrc16Polynomial : crc << 1;
        table[i] = static_cast<std::uint16_t>(crc);
    }
    return table;
}

constexpr std::array<std::uint32_t, 256> makeCrc32Table()
{
    std::array<std::uint32_t, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        std::uint32_t crc = static_cast<std::uint32_t>(i);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1U) ? (crc >> 1) ^ kCrc32Polynomial : crc >> 1;
        table[i] = crc;
    }
    return table;
}

constexpr auto kCrc16Table = makeCrc16Table();
constexpr auto kCrc32Table = makeCrc32Table();

static_assert(kCrc16Table[1] == 0x1021);
static_assert(kCrc32Table[1] == 0x77073096U && kCrc32Table[128] == 0xEDB88320U);

} // namespace

std::uint16_t crc16Update(std::uint16_t crc, const std::uint8_t *bytes, std::uint32_t length)
{
    for (std::uint32_t i = 0; i < length; ++i) {
        const unsigned index = ((crc >> 8) ^ bytes[i]) & 0xFFU;
        crc = static_cast<std::uint16_t>((crc << 8) ^ kCrc16Table[index]);
    }
    return crc;
}

std::uint16_t crc16Frame(const std::uint8_t *bytes, std::uint32_t length)
{
    return length <= 2 ? std::uint16_t{0} : crc16Update(0, bytes, length - 2);
}

std::uint32_t crc32Update(std::uint32_t crc, const std::uint8_t *bytes, std::uint32_t length)
{
    crc = ~crc;
    for (std::uint32_t i = 0; i < length; ++i)
        crc = (crc >> 8) ^ kCrc32Table[(crc ^ bytes[i]) & 0xFFU];
    return ~crc;
}

std::uint32_t crc32(const std::uint8_t *bytes, std::uint32_t length)
{
    return crc32Update(0, bytes, length);
}
