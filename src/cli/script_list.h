// The command "scripts": the mapper scripts, and what they can do.
#pragma once

#include "cli/exit_code.h"
#include "cli/reporter.h"

#include <QString>

// Lists the scripts in `folder`. Their top levels are run; nothing reaches a reader.
// JSON: one event "detected" a script, with "what": "script" and
//   "file"        its name
//   "role"        "mapper", "helper" or "other"
//   "state"       "sound", "missing", "not-compiled" or "error"
//   "usedBy"      the mapper's label, or "GBA"; only of role "mapper"
//   "operations"  of "dump", "flash", "read-ram", "write-ram" those that it defines
//   "sha1"        of the file; missing if it cannot be read
//   "problem"     what the compiler or the script said; only where it is not sound
// Returns: Done, or FileError if a script that the program needs is missing or does not load.
ExitCode runScripts(Reporter &reporter, const QString &folder);
