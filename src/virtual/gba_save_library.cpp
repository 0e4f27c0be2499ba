#include "virtual/gba_save_library.h"

#include <cstring>

namespace virtual_reader
{

namespace
{

struct SaveMark {
    const char *prefix; // as far as the versions of a library have it in common
    const char *version;
    SaveKind kind;
};

// In a ROM the first row that fits decides; the first row of a kind is the one that is planted.
constexpr SaveMark kMarks[] = {
    {"EEPROM_V", "124", SaveKind::Eeprom512}, {"EEPROM_V", "126", SaveKind::Eeprom8k},
    {"SRAM_V", "113", SaveKind::Sram},        {"FLASH512_V", "131", SaveKind::Flash64k},
    {"FLASH_V", "126", SaveKind::Flash64k},   {"FLASH1M_V", "103", SaveKind::Flash128k},
};

// Marks begin on a word boundary.
constexpr std::size_t kMarkAlignment = 4;

bool standsAt(const ByteVector &rom, std::size_t offset, const char *text)
{
    const std::size_t length = std::strlen(text);
    return rom.size() - offset >= length && std::memcmp(rom.data() + offset, text, length) == 0;
}

} // namespace

SaveKind findGbaSaveMark(const ByteVector &rom)
{
    for (std::size_t offset = 0; offset < rom.size(); offset += kMarkAlignment) {
        for (const SaveMark &mark : kMarks) {
            if (rom[offset] == mark.prefix[0] && standsAt(rom, offset, mark.prefix))
                return mark.kind;
        }
    }
    return SaveKind::None;
}

std::string gbaSaveMark(SaveKind kind)
{
    for (const SaveMark &mark : kMarks) {
        if (mark.kind != kind)
            continue;
        std::string text = std::string(mark.prefix) + mark.version;
        text.resize(kGbaSaveMarkSize, '\0');
        return text;
    }
    return {};
}

} // namespace virtual_reader
