// The command "drives": what the program sees, and why a drive is or is not taken as the reader.
#pragma once

#include "cli/exit_code.h"
#include "cli/reporter.h"

// Looks at every drive of the process's backend and lists them; writes nothing.
// JSON: one event "detected" a drive, with "what": "drive" and
//   "drive"     its letter
//   "type"      "unknown", "none", "removable", "fixed", "remote", "cdrom" or "ramdisk"
//   "place"     folder and device; only where the letter does not say it all
//   "verdict"   "taken", "also-passes", "no-identity" or "not-removable"
//   "reason"    the same for people
// and of removable drives
//   "label"     missing if it could not be read, which "labelError" then explains
//   "identity"  missing if it could not be read, as "identityFile" tells
//   "identityFile", "commandFile", "dumpFile"  "opens", "missing" or "fails: ..."
// Returns: Done if a drive is taken, else NoReader.
ExitCode runDrives(Reporter &reporter);
