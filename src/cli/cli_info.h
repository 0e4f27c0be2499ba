// The command "info": the cartridge report as the command's answer, or as one event.
#pragma once

#include "cli/cli_options.h"
#include "cli/exit_code.h"
#include "cli/reporter.h"

// Looks at the cartridge. Beyond the window's report it says whether the header's checksums are
// right; the global checksum of a GB cartridge needs the whole ROM, which is read for it unless
// `options.isQuick`.
ExitCode runInfo(const CliOptions &options, Reporter &reporter);
