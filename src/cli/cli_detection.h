// What the command line learns from the cartridge itself.
#pragma once

#include "cart/setting_tables.h"
#include "cli/cli_command.h"
#include "cli/cli_options.h"
#include "worker/cartridge_report.h"

#include <QStringList>

#include <functional>

// Makes the cartridge report and passes its lines on, without the markup of rules. A
// cartridge that was not recognised while the drive failed is a ShortRead; lastDriveError() is then
// why. The reader is given up before the call returns. Blocks; no job may run.
CartridgeReport detectCartridge(const std::function<void(const QString &)> &line);

// The values that the report found. What it can not know (no save memory named, unknown game) is
// left open. Two things are taken as the cartridges mean them and not as the report, which follows
// the window, has them: RAM size codes 4 and 5 are 128 and 64 KiB, for half a save would be lost;
// and a TAMA5 has its own mapper script, for with the MBC5's one bank would come again and again.
// Source: Pan Docs, "The Cartridge Header".
CartridgeValues valuesFound(const CartridgeReport &report);

// What the user said, completed by what was found. Found values of another system than the user's
// are not taken.
CartridgeValues mergeValues(const CartridgeValues &said, const CartridgeValues &found);

// Label of the row of a settings table that keeps `value`, as the user types it; the number itself
// if there is none.
template <typename Table> QString labelOf(const Table &table, int value)
{
    const int row = rowWithValue(table, value);
    return row == kNoRow
               ? QString::number(value)
               : QString::fromLatin1(table[static_cast<std::size_t>(row)].label).toLower();
}

// Why this command must not be tried on this cartridge; empty as a rule.
QString dangerOf(const CartridgeReport &report, const CliCommand &command);

// What the header says and the report takes for something else, so that a job with these values
// would end well and still bring a wrong ROM or half a save. One sentence each, for the log.
QStringList doubtsAbout(const CartridgeReport &report, const CliCommand &command,
                        const CartridgeValues &used);
