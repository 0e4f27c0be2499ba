// The command "selftest": a fixed set of jobs on virtual cartridges, on the user's own computer,
// with a result to paste into a bug report. No drive is looked at. The result names no user and no
// folder above the scripts'.
#pragma once

#include "cli/exit_code.h"
#include "cli/reporter.h"

#include <QString>

// Runs the self-test with the scripts in `scriptFolder` and prints its result as it comes. Call it
// from the main thread of an application; the process has no drive backend afterwards.
// JSON: events "detected" with "what": "selftest" and "part":
//   "system"  "program", "qt", "os", "kernel", "cpu", "codec", "scripts": texts
//   "script"  "file", and "sha1" unless the file cannot be read
//   "job"     "name", "bytes", "ms", "passed", and "problem" unless it passed
//   "total"   "jobs", "failed", "ms"
// Returns: Done, or DataMismatch if a job did not go as it should.
ExitCode runSelfTest(Reporter &reporter, const QString &scriptFolder);
