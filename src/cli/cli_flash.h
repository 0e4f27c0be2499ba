// What the command "flash" does before its job: asks the flash chip what it is, as the window does.
#pragma once

#include "cli/cli_options.h"
#include "worker/flash_chip_probe.h"

#include <functional>
#include <optional>

// Looks for the reader, queries the chip and sets the job's flash width. Without a reader nothing
// is asked, and the job itself says so. Blocks; no job may run.
// Returns: what the chip said, no size if it said none; nothing if it said something else when asked
// again. A backup as large as a misheard size would be half of one.
std::optional<FlashChip> probeForFlashJob(CliJob *job,
                                          const std::function<void(const QString &)> &line);
