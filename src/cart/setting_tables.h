// What a user can choose about a cartridge: the rows of the settings box as constant data, and
// look-ups over them for the settings box and the command line.
//
// In every table a row's index equals its position. Labels are not translated. Sizes are in bytes.
// Thread: constant data and pure functions; any thread.
#pragma once

#include <QString>
#include <QStringList>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

// One choice.
struct SettingRow {
    std::int32_t index; // position in its combo box
    std::int32_t value; // what is kept: a code, or a size in bytes
    const char *label;  // shown in the combo box
};

// One GB mapper and the mapper script that drives it.
struct MapperRow : SettingRow {
    const char *script; // file name in the mapper folder
};

constexpr std::int32_t kSystemGb = 0;
constexpr std::int32_t kSystemGba = 1;

constexpr std::int32_t kSaveSram = 0;
constexpr std::int32_t kSaveFlash = 1;
constexpr std::int32_t kSaveEeprom = 2;

constexpr int kMapperMbc5Row = 4;

// No row holds what was looked for.
constexpr int kNoRow = -1;

extern const std::array<SettingRow, 2> kSystems;
extern const std::array<MapperRow, 7> kMappers;
extern const std::array<SettingRow, 9> kGbRomSizes;
// The one script of all GBA cartridges.
constexpr char kGbaScript[] = "gba.nut";

extern const std::array<SettingRow, 5> kGbRamSizes;
extern const std::array<SettingRow, 7> kGbaRomSizes;
extern const std::array<SettingRow, 3> kGbaSaveTypes;

// Only kOfferedSaveSizes adjacent rows of this table fit a save type; offeredSaveSizes() says where
// they begin.
extern const std::array<SettingRow, 6> kGbaSaveSizes;
constexpr int kOfferedSaveSizes = 2;

// First row of kGbaSaveSizes that is offered for `saveType`; kNoRow for any other type.
int offeredSaveSizes(std::int32_t saveType);

// True if the two texts are equal, the case of ASCII letters aside.
bool sameLabel(const std::string &left, const std::string &right);

// True if `row` is a position in `table`.
template <typename Table> bool hasRow(const Table &table, int row)
{
    return row >= 0 && static_cast<std::size_t>(row) < table.size();
}

// Position of the first row that keeps `value`, or kNoRow.
template <typename Table> int rowWithValue(const Table &table, std::int32_t value)
{
    for (const auto &row : table) {
        if (row.value == value)
            return row.index;
    }
    return kNoRow;
}

// Position of the first row labelled `label` (see sameLabel), or kNoRow.
template <typename Table> int rowWithLabel(const Table &table, const std::string &label)
{
    for (const auto &row : table) {
        if (sameLabel(row.label, label))
            return row.index;
    }
    return kNoRow;
}

// Label of the row that keeps `value`, as a person types it; the number itself if there is none.
template <typename Table> QString labelOf(const Table &table, std::int32_t value)
{
    const int row = rowWithValue(table, value);
    return row == kNoRow
               ? QString::number(value)
               : QString::fromLatin1(table[static_cast<std::size_t>(row)].label).toLower();
}
