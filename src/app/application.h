// The whole program but for its main function.
#pragma once

// Runs the program until its window has closed: picks what serves as the reader's drive, sets the
// style, installs a translation if one stands beside the program, and shows the window.
// Input:   the arguments of main(); the toolkit takes its own options out of them. The first one
//          left names a file for the About tab.
//          The environment variable GBDRIVER_VIRTUAL_READER puts a virtual reader in place of the
//          system's drives.
// Returns: exit code of the event loop; 1, with a message on the standard error stream, if the
//          virtual reader cannot be set up.
// Thread:  the main thread, once per process.
int startApplication(int &argc, char **argv);
