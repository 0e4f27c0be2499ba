// What a command knows of the cartridge before its job: what the cartridge says, what the user
// says, and who said what.
//
// Thread: the one that runs the command; blocks. The drive backend of the process must be set; no
// job may run.
#pragma once

#include "cli/cli_options.h"
#include "cli/exit_code.h"
#include "cli/reporter.h"
#include "trust/cartridge_values.h"

struct CartridgeLook {
    ExitCode code = ExitCode::Done;
    CartridgeValues values; // the user's, completed by what was found
    CartridgeValues found;  // the cartridge's alone
    CartridgeValues named;  // those of them that are not merely assumed
    CartridgeReport report; // empty if the cartridge was not looked at
    QString title;          // of the header or the game table; empty if unknown
};

// Looks at the cartridge, unless the user said not to, and tells what was found. If the reader
// cannot be used, the problem is told and the code says so. A cartridge that is not recognised is
// no failure yet: the user may have said all that is needed.
CartridgeLook lookAtCartridge(const CliOptions &options, CartridgeTask task, Reporter &reporter);

// Makes the job of a task. What is missing is told.
// Returns: Done; NotRecognised if the cartridge should have told it; Usage if it was not looked at;
// Refused if there is no such memory in the cartridge, or if the user contradicts it.
ExitCode makeLookedAtJob(const CliOptions &options, CartridgeTask task, const CartridgeLook &look,
                         Reporter &reporter, CartridgeJob *job);

// Tells look.values, and for each whether the user `said` it or it was found.
void tellValues(const CartridgeLook &look, const CartridgeValues &said, Reporter &reporter);
