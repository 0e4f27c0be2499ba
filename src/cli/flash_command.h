// The command flash.
//
// Thread: as job_runner.h.
#pragma once

#include "cli/cli_options.h"
#include "cli/exit_code.h"
#include "cli/reporter.h"

// Keeps what the flash chip holds in a backup, erases and writes it, reads it back and compares.
ExitCode runFlash(const CliOptions &options, Reporter &reporter);
