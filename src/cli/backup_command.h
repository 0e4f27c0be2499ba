// The command backup: a stack of cartridges, one after the other, ROM and save of each into one
// folder.
//
// Thread: as job_runner.h.
#pragma once

#include "cli/cli_options.h"
#include "cli/exit_code.h"
#include "cli/reporter.h"

// Between two looks at the slot. A header that stays the same for so long is the cartridge's.
constexpr int kPauseBetweenLooksMs = 300;

// Waits for a cartridge, reads what it holds, tells to swap it and goes on, until the user presses
// Ctrl-C or `options.count` cartridges are done.
// Returns: Done if everything that was read is verified or consistent; else the first other code.
ExitCode runBackup(const CliOptions &options, Reporter &reporter,
                   int pauseMs = kPauseBetweenLooksMs);
