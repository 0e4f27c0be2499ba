// The first three descriptors of a program.
#pragma once

// Gives those of standard input, output and error that were closed when the program started a place
// that cannot be read or written. Without it the next file that is opened gets the descriptor, and
// a message meant for the user would be written into it, the reader's command file for one.
//
// Call it first in main(), before any other thread.
void fillStandardStreams();
