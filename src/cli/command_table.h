// The commands of the headless program as data. The parser, the help, the manual page and the
// shells' completions are all made from these rows.
// Thread: constant data and pure functions; any thread.
#pragma once

#include "cli/cli_options.h"
#include "cli/exit_code.h"
#include "cli/option_table.h"

#include <vector>

// What follows a command's name.
enum class ArgumentKind {
    None,
    File,
    Folder,
    Shell,  // a name of argumentChoices()
    Command // a command's name, or nothing
};

struct CommandExample {
    const char *words; // behind the program's name
    const char *meaning;
};

struct CommandRow {
    const char *name;
    CliRequest request;
    ArgumentKind argument;
    const char *summary;                    // one sentence
    std::vector<const char *> description;  // paragraphs
    std::vector<const OptionRow *> options; // in the order of the help
    std::vector<CommandExample> examples;   // at least one
    std::vector<ExitCode> exitCodes;        // ascending
};

constexpr char kCliProgram[] = "gbdriver-cli";
constexpr char kCliPurpose[] =
    "Reads and writes Game Boy, Game Boy Color and Game Boy Advance cartridges.";

// In the order of the help.
const std::vector<CommandRow> &commandTable();

// Returns: null if there is no such command.
const CommandRow *findCommand(const QString &name);

QStringList commandNames();

// The name of the command that a request comes from; the first one of several.
const char *commandName(CliRequest request);

// What a request does to a cartridge; nothing for one that is no single job.
std::optional<CartridgeTask> taskOf(CliRequest request);

// The row of `command` for the option called `name`. Returns: null if the command has none.
const OptionRow *findOption(const CommandRow &command, const QString &name);

// Every option row that stands in a command or before one, once, in the order of the table.
std::vector<const OptionRow *> allOptions();

// The same with one row for each name, the first one.
std::vector<const OptionRow *> optionsByName();

// "dump FILE", "help [COMMAND]"
QString commandUsage(const CommandRow &command);

// What a command's argument can be, as it is typed. Returns: empty where any text goes.
QStringList argumentChoices(ArgumentKind kind);
