// The commands read-ram and write-ram.
//
// Thread: as job_runner.h.
#pragma once

#include "cli/cli_options.h"
#include "cli/exit_code.h"
#include "cli/reporter.h"

// Reads the save into a file, twice unless told otherwise, and says what it is worth.
ExitCode runReadRam(const CliOptions &options, Reporter &reporter);

// Keeps the cartridge's save in a backup, writes the file, reads it back and compares. At every
// moment the old save is in the cartridge or in the backup, unless the user wants no backup.
ExitCode runWriteRam(const CliOptions &options, Reporter &reporter);
