// The command "check-script": what a mapper script defines and how it does on virtual cartridges.
#pragma once

#include <QString>

// Prints one paragraph for each operation to standard output. `kindName` is the name of the shipped
// script whose kind of cartridge is meant; empty: the script's own file name tells.
// Returns: true if the script defines something and nothing that it defines went wrong. A refusal
// of the script itself is no fault.
bool runCheckScript(const QString &path, const QString &kindName);
