// What --help prints, made from the tables of commands and options. Plain ASCII.
// Pure; any thread.
#pragma once

#include <QString>

struct CommandRow;

// Lines end before this column: some consoles break a line that fills the last of their 80.
constexpr int kHelpColumns = 79;

// The overview: all commands, examples, exit codes.
QString overviewHelp();

// Usage, description, options, examples and exit codes of one command.
QString commandHelp(const CommandRow &command);
