#include "cart/gba_header.h"

#include "cart/game_database.h"
#include "cart/setting_tables.h"
#include "constants/boot_logos.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <numeric>
#include <string_view>

namespace
{

constexpr std::uint32_t kLogoOffset = 0x04;
constexpr std::uint32_t kTitleOffset = 0xA0;
constexpr std::uint32_t kTitleBytes = 12;
constexpr std::uint32_t kCodeOffset = 0xAC;
constexpr std::uint32_t kCodeBytes = 4;
constexpr std::uint32_t kComplementOffset = 0xBD; // covers the bytes from the title on

// The sum of the covered bytes, the complement and this constant is 0 modulo 256.
constexpr int kComplementBase = 0x19;

struct SaveMemory {
    std::string_view key;
    std::int32_t sizeBytes;
    std::int32_t type;
};

// The first key that occurs in a game's save key decides. Plain EEPROM and flash, whose names begin
// the longer ones, come behind those. The empty key occurs in all of them and stands last.
constexpr SaveMemory kSaveMemories[] = {
    {"gba_sram", 32768, kSaveSram},        {"gba_eeprom_4k", 512, kSaveEeprom},
    {"gba_eeprom_64k", 8192, kSaveEeprom}, {"gba_eeprom", 512, kSaveEeprom},
    {"gba_flash_512", 65536, kSaveFlash},  {"gba_flash_1m", 131072, kSaveFlash},
    {"gba_flash", 65536, kSaveFlash},      {"", 0, kSaveSram},
};

std::string_view textAt(const std::uint8_t *header, std::uint32_t offset, std::uint32_t length)
{
    const char *text = reinterpret_cast<const char *>(header + offset);
    return {text, qstrnlen(text, length)};
}

QString toLatin1Text(std::string_view text)
{
    return QString::fromLatin1(text.data(), static_cast<int>(text.size()));
}

const SaveMemory &saveMemoryOf(std::string_view saveKey)
{
    return *std::find_if(std::begin(kSaveMemories), std::end(kSaveMemories),
                         [saveKey](const SaveMemory &memory) {
                             return saveKey.find(memory.key) != std::string_view::npos;
                         });
}

void fillFrom(const GbaGameRecord &game, GbaHeaderInfo *info)
{
    info->title = QString::fromLocal8Bit(game.title);
    info->year = QString::fromLocal8Bit(game.year);
    info->publisher = QString::fromLocal8Bit(game.publisher);
    info->codes = QString::fromLocal8Bit(game.codes);
    info->romSize = static_cast<std::int32_t>(std::strtol(game.romSize, nullptr, 10));
    const SaveMemory &memory = saveMemoryOf(game.saveKey);
    info->saveSize = memory.sizeBytes;
    info->saveType = memory.type;
}

} // namespace

int decodeGbaHeader(const std::uint8_t *header, GbaHeaderInfo *info)
{
    if (!gbaLogoMatches(header))
        return 0;
    if (const GbaGameRecord *game = findGame(textAt(header, kCodeOffset, kCodeBytes)))
        fillFrom(*game, info);
    return info->romSize;
}

bool gbaLogoMatches(const std::uint8_t *header)
{
    return std::equal(kGbaBootLogo.begin(), kGbaBootLogo.end(), header + kLogoOffset);
}

bool gbaComplementIsRight(const std::uint8_t *header)
{
    const int sum = std::accumulate(header + kTitleOffset, header + kComplementOffset + 1, 0);
    return static_cast<std::uint8_t>(sum + kComplementBase) == 0;
}

QString gbaHeaderTitle(const std::uint8_t *header)
{
    return toLatin1Text(textAt(header, kTitleOffset, kTitleBytes));
}

QString gbaHeaderCode(const std::uint8_t *header)
{
    return toLatin1Text(textAt(header, kCodeOffset, kCodeBytes));
}
