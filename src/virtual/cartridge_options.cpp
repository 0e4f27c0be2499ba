#include "virtual/cartridge_options.h"

#include "virtual/option_values.h"

#include <utility>

namespace virtual_reader
{

namespace
{

constexpr std::uint64_t kMostErasePolls = 1000000;
constexpr std::uint64_t kLastBank = 511; // of 8 MiB

bool setSystem(const std::string &value, CartridgeOptions *options)
{
    options->system = value == "gb" ? CartridgeSystem::Gb : CartridgeSystem::Gba;
    return value == "gb" || value == "gba";
}

bool setBoard(const std::string &value, CartridgeOptions *options)
{
    options->multiCart = value == "multicart";
    return value == "plain" || value == "multicart";
}

bool setSaveType(const std::string &value, CartridgeOptions *options)
{
    static const std::pair<const char *, GbaSaveType> kTypes[] = {
        {"none", GbaSaveType::None},
        {"sram", GbaSaveType::Sram},
        {"flash", GbaSaveType::Flash},
        {"eep", GbaSaveType::Eeprom},
    };
    for (const auto &[name, type] : kTypes) {
        if (value != name)
            continue;
        options->saveType = type;
        return true;
    }
    return false;
}

bool setSaveSize(const std::string &value, CartridgeOptions *options)
{
    return parseSize(value, &options->saveSize) && options->saveSize != 0;
}

bool setFlash(const std::string &value, CartridgeOptions *options)
{
    options->flash = value == "8" ? FlashWidth::Byte : FlashWidth::Word;
    return value == "8" || value == "16";
}

bool setFlashSize(const std::string &value, CartridgeOptions *options)
{
    return parseSize(value, &options->flashSize) && options->flashSize != 0;
}

bool parseNumberUpTo(std::uint64_t largest, const std::string &text, std::uint64_t *number)
{
    std::string rest;
    return parseNumber(text, number, &rest) && rest.empty() && *number <= largest;
}

bool setFlashCode(const std::string &value, CartridgeOptions *options)
{
    std::uint64_t code = 0;
    if (!parseNumberUpTo(0xFF, value, &code))
        return false;
    options->flashChip.sizeCode = static_cast<std::uint8_t>(code);
    return true;
}

bool setChipFault(const std::string &value, CartridgeOptions *options)
{
    options->flashChip.writeProtected = value == "protected";
    options->flashChip.eraseNeverEnds = value == "endless";
    return value == "protected" || value == "endless";
}

bool setErasePolls(const std::string &value, CartridgeOptions *options)
{
    std::uint64_t number = 0;
    if (!parseNumberUpTo(kMostErasePolls, value, &number))
        return false;
    options->flashChip.erasePolls = static_cast<unsigned>(number);
    return true;
}

bool setFlakyBank(const std::string &value, CartridgeOptions *options)
{
    std::uint64_t bank = 0;
    if (!parseNumberUpTo(kLastBank, value, &bank))
        return false;
    options->flakyBank = static_cast<std::uint32_t>(bank);
    return true;
}

} // namespace

const std::vector<CartridgeOptionRow> &cartridgeOptionRows()
{
    static const std::vector<CartridgeOptionRow> rows = {
        {"system", "gb|gba", "bus of the cartridge, whatever its header says", setSystem},
        {"board", "plain|multicart", "how an MBC1 is wired; headers do not tell", setBoard},
        {"save-type", "none|sram|flash|eep", "GBA save chip, whatever the game says", setSaveType},
        {"save-size", "SIZE", "GBA save size, for example 128K", setSaveSize},
        {"flash", "8|16", "GB flash chip of that width instead of a ROM", setFlash},
        {"flash-size", "SIZE", "its size if it is larger than the image", setFlashSize},
        {"flash-code", "NUMBER", "size code in its query table", setFlashCode},
        {"chip-fault", "protected|endless", "flash chips refuse, or never end erasing",
         setChipFault},
        {"erase-polls", "NUMBER", "polls that see a flash chip still being erased", setErasePolls},
        {"flaky", "BANK", "GB ROM bank that every second read gets wrong", setFlakyBank},
    };
    return rows;
}

const CartridgeOptionRow *findCartridgeOption(const std::string &name)
{
    for (const CartridgeOptionRow &row : cartridgeOptionRows()) {
        if (name == row.name)
            return &row;
    }
    return nullptr;
}

} // namespace virtual_reader
