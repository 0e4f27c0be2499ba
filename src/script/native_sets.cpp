// Which natives the scripts of each operation get.
#include "script/natives.h"

#include "script/job.h"

namespace
{

constexpr NativeEntry kGbDump[] = {{"cpu_write", nat_cpu_write}, {"cpu_read", nat_cpu_read_gb}};
constexpr NativeEntry kGbFlash[] = {{"cpu_write", nat_cpu_write},
                                    {"rom_write", nat_rom_write},
                                    {"rom_flash_cfg", nat_rom_flash_cfg}};
constexpr NativeEntry kGbSaveWrite[] = {{"cpu_write", nat_cpu_write},
                                        {"ram_write", nat_ram_write_gb}};
constexpr NativeEntry kGbaDump[] = {{"cpu_read", nat_cpu_read_gba}};
constexpr NativeEntry kGbaSaveDump[] = {{"ram_read", nat_ram_read}};
constexpr NativeEntry kGbaSaveWrite[] = {{"ram_write", nat_ram_write_gba},
                                         {"ram_erase", nat_ram_erase}};

template <int count> constexpr NativeSet setOf(const NativeEntry (&entries)[count])
{
    return {entries, count};
}

} // namespace

NativeSet nativesOf(int operate)
{
    switch (operate) {
    case GBA_READ_ROM:
        return setOf(kGbaDump);
    case GB_READ_ROM:
    case GB_READ_RAM:
        return setOf(kGbDump);
    case GB_WRITE_RAM:
        return setOf(kGbSaveWrite);
    case GBA_WRITE_RAM:
        return setOf(kGbaSaveWrite);
    case GB_WRITE_FLASH:
        return setOf(kGbFlash);
    case GBA_READ_RAM:
        return setOf(kGbaSaveDump);
    default:
        return {nullptr, 0};
    }
}
