// The commands dump and verify: a ROM and what it is worth.
//
// Thread: as job_runner.h; verify needs no reader.
#pragma once

#include "cli/cli_options.h"
#include "cli/exit_code.h"
#include "cli/reporter.h"

// Reads the ROM into a file and judges it. It is read a second time only if its content stands in
// no table of known dumps, unless the user says otherwise.
ExitCode runDump(const CliOptions &options, Reporter &reporter);

// Judges a file.
ExitCode runVerify(const CliOptions &options, Reporter &reporter);
