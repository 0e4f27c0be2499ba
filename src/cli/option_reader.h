// From the words behind a command's name to the record of what is asked for.
// Pure; any thread.
#pragma once

#include "cli/cli_options.h"
#include "cli/command_table.h"

#include <QCommandLineParser>

// `parser` has parsed a command line whose first word is the name of `command`, without an error of
// its own. Returns: false with the reason in `*problem`; `*options` is then unchanged.
bool readOptions(const QCommandLineParser &parser, const CommandRow &command, CliOptions *options,
                 QString *problem);
