#include "cart/setting_tables.h"

#include <algorithm>

const std::array<SettingRow, 2> kSystems = {{
    {0, kSystemGb, "GB/GBC"},
    {1, kSystemGba, "GBA"},
}};

const std::array<MapperRow, 7> kMappers = {{
    {{0, 0, "NONE"}, "gb_mbc0.nut"},
    {{1, 1, "MBC1"}, "gb_mbc1.nut"},
    {{2, 2, "MBC2"}, "gb_mbc2.nut"},
    {{3, 3, "MBC3"}, "gb_mbc3.nut"},
    {{4, 4, "MBC5"}, "gb_mbc5.nut"},
    {{5, 5, "MBC7"}, "gb_mbc7.nut"},
    {{6, 6, "TAMA5"}, "gb_tama5.nut"},
}};

// Cartridge makers count ROM in bits: 32 KiB are 256 Kbit.
const std::array<SettingRow, 9> kGbRomSizes = {{
    {0, 32768, "256 Kbit"},
    {1, 65536, "512 Kbit"},
    {2, 131072, "1 Mbit"},
    {3, 262144, "2 Mbit"},
    {4, 524288, "4 Mbit"},
    {5, 1048576, "8 Mbit"},
    {6, 2097152, "16 Mbit"},
    {7, 4194304, "32 Mbit"},
    {8, 8388608, "64 Mbit"},
}};

const std::array<SettingRow, 5> kGbRamSizes = {{
    {0, 512, "512 B"},
    {1, 8192, "8 K"},
    {2, 32768, "32 K"},
    {3, 65536, "64 K"},
    {4, 131072, "128 K"},
}};

const std::array<SettingRow, 7> kGbaRomSizes = {{
    {0, 1048576, "8 Mb"},
    {1, 2097152, "16 Mb"},
    {2, 4194304, "32 Mb"},
    {3, 8388608, "64 Mb"},
    {4, 16777216, "128 Mb"},
    {5, 33554432, "256 Mb"},
    {6, 67108864, "512 Mb"},
}};

const std::array<SettingRow, 3> kGbaSaveTypes = {{
    {0, kSaveSram, "SRAM"},
    {1, kSaveFlash, "FLASH"},
    {2, kSaveEeprom, "EEP"},
}};

const std::array<SettingRow, 6> kGbaSaveSizes = {{
    {0, 0, "NONE"},
    {1, 512, "512 B"},
    {2, 8192, "8 K"},
    {3, 32768, "32 K"},
    {4, 65536, "64 K"},
    {5, 131072, "128 K"},
}};

int offeredSaveSizes(std::int32_t saveType)
{
    switch (saveType) {
    case kSaveSram:
        return 3;
    case kSaveFlash:
        return 4;
    case kSaveEeprom:
        return 1;
    default:
        return kNoRow;
    }
}

bool sameLabel(const std::string &left, const std::string &right)
{
    const auto upper = [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; };
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [&](char a, char b) { return upper(a) == upper(b); });
}
