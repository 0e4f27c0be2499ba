// What the command line learns from the cartridge itself.
#pragma once

#include "cli/cli_command.h"
#include "cli/cli_options.h"
#include "worker/cartridge_report.h"

#include <QStringList>

#include <functional>

// Makes the cartridge report and passes its lines on, without the markup of rules. The reader is
// given up before the call returns. Blocks; no job may run.
CartridgeReport detectCartridge(const std::function<void(const QString &)> &line);

// The values that the report found. What it can not know (no save memory named, unknown game) is
// left open.
CartridgeValues valuesFound(const CartridgeReport &report);

// What the user said, completed by what was found. Found values of another system than the user's
// are not taken.
CartridgeValues mergeValues(const CartridgeValues &said, const CartridgeValues &found);

// One line that names the values, for the log: "system gb, mapper mbc5, ROM 8388608 bytes, ...".
QString describeValues(const CartridgeValues &values);

// Why this command must not be tried on this cartridge; empty as a rule.
QString dangerOf(const CartridgeReport &report, const CliCommand &command);

// What the header says and the report takes for something else, so that a job with these values
// would end well and still bring a wrong ROM or half a save. One sentence each, for the log.
QStringList doubtsAbout(const CartridgeReport &report, const CliCommand &command,
                        const CartridgeValues &used);
