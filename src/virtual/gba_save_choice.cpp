#include "virtual/gba_save_choice.h"

#include <algorithm>
#include <iterator>

namespace virtual_reader
{

namespace
{

constexpr std::uint32_t kKiB = 1024;

struct ChipRow {
    GbaSaveType type;
    std::uint32_t sizeBytes;
    SaveKind kind;
};

// By type, then size.
constexpr ChipRow kChips[] = {
    {GbaSaveType::None, 0, SaveKind::None},
    {GbaSaveType::Sram, 32 * kKiB, SaveKind::Sram},
    {GbaSaveType::Sram, 64 * kKiB, SaveKind::Sram},
    {GbaSaveType::Flash, 64 * kKiB, SaveKind::Flash64k},
    {GbaSaveType::Flash, 128 * kKiB, SaveKind::Flash128k},
    {GbaSaveType::Eeprom, 512, SaveKind::Eeprom512},
    {GbaSaveType::Eeprom, 8 * kKiB, SaveKind::Eeprom8k},
};

template <class Fits> const ChipRow *findChip(Fits fits)
{
    const auto *row = std::find_if(std::begin(kChips), std::end(kChips), fits);
    return row == std::end(kChips) ? nullptr : row;
}

} // namespace

std::optional<GbaSaveChoice> chooseGbaSave(const CartridgeOptions &options, SaveKind mark,
                                           std::string *error)
{
    const ChipRow *marked = findChip([mark](const ChipRow &row) { return row.kind == mark; });
    const bool byMark = options.saveType == GbaSaveType::ByMark;
    const GbaSaveType type = byMark ? marked->type : options.saveType;
    const std::uint32_t size =
        byMark && options.saveSize == 0 ? marked->sizeBytes : options.saveSize;
    const ChipRow *chosen = findChip([type, size](const ChipRow &row) {
        return row.type == type && (size == 0 || row.sizeBytes == size);
    });
    if (chosen != nullptr)
        return GbaSaveChoice{chosen->kind, chosen->sizeBytes};
    *error = "save size " + std::to_string(size) +
             (type == GbaSaveType::None ? ": the cartridge has no save chip"
                                        : ": there is no such chip of that type");
    return std::nullopt;
}

std::unique_ptr<GbaSaveChip> makeGbaSaveChip(const GbaSaveChoice &choice,
                                             const FlashChipBehaviour &behaviour)
{
    switch (choice.kind) {
    case SaveKind::None:
        return nullptr;
    case SaveKind::Sram:
        return std::make_unique<GbaSram>(choice.sizeBytes);
    case SaveKind::Flash64k:
    case SaveKind::Flash128k:
        return std::make_unique<GbaFlash>(choice.kind, behaviour);
    case SaveKind::Eeprom512:
    case SaveKind::Eeprom8k:
        return std::make_unique<GbaEeprom>(choice.kind);
    }
    return nullptr;
}

} // namespace virtual_reader
