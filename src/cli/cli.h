// The headless program.
#pragma once

// Reads the command line, chooses the drive backend, runs the command. The answer goes to standard
// output, everything else to standard error; see cli/reporter.h.
// Returns: the number of an ExitCode.
int runCli(int &argc, char **argv);
