#include "cli/cli_command.h"

#include "worker/famicom_thread.h"

namespace
{

constexpr CliCommand kCommands[] = {
    {"dump", GB_READ_ROM, GBA_READ_ROM, MovedData::Rom},
    {"read-ram", GB_READ_RAM, GBA_READ_RAM, MovedData::Save},
    {"write-ram", GB_WRITE_RAM, GBA_WRITE_RAM, MovedData::Save},
    {"flash", GB_WRITE_FLASH, GBA_WRITE_FLASH, MovedData::RomFile},
};

} // namespace

const CliCommand *findCliCommand(const QString &name)
{
    for (const CliCommand &row : kCommands) {
        if (name == QLatin1String(row.name))
            return &row;
    }
    return nullptr;
}
