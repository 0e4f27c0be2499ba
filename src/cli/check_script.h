// The command "check-script": what a mapper script defines and how it does on virtual cartridges.
#pragma once

#include "cli/exit_code.h"
#include "cli/reporter.h"

#include <QString>

// Tells about each operation of the script. `kindName` is the name of the shipped script whose kind
// of cartridge is meant; empty: the script's own file name tells.
// Returns: Done if the script defines something and nothing that it defines went wrong (a refusal
// of the script itself is no fault); DataMismatch if bytes were not where they belong;
// TransferFailed if nothing worked; FileError or Usage if there is nothing to try.
ExitCode runCheckScript(const QString &path, const QString &kindName, Reporter &reporter);
