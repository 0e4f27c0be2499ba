// The headless program.
#pragma once

// Reads the command line, chooses the drive backend, runs the job. Log lines and progress go to
// standard error, help and version to standard output.
// Returns: the exit code, 0 or 1.
int runCli(int &argc, char **argv);
