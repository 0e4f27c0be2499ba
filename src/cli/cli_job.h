// Runs one job of the command line: the same worker as the window's, in an event loop of its own,
// with its log lines and progress printed.
#pragma once

#include "cli/cli_options.h"

#include <cstdio>

enum class CliJobOutput {
    LogAndProgress,
    Progress // the log only of a job that failed
};

// Runs `job` against the drive backend set for the process and prints to `stream`. Needs a
// QCoreApplication; blocks its thread until the job has ended.
// Returns: true if the job succeeded and every byte of a dump arrived.
bool runCliJob(const CliJob &job, std::FILE *stream, bool isTerminal,
               CliJobOutput output = CliJobOutput::LogAndProgress);
