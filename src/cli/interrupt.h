// The user's Ctrl-C, or another signal that asks to stop: noticed once, so that a job can be asked
// to stop; a second one ends the program at once.
//
// Thread: the main thread; the flag and the lists may be read from any.
#pragma once

#include <vector>

// From now on a first interrupt only raises the flag.
void watchForInterrupt();

bool wasInterrupted();

// This system's signals that mean the same as Ctrl-C: SIGINT, and what a closed terminal or a
// shutdown sends.
const std::vector<int> &stopSignals();

// And those that mean nothing: a reader of the output that goes away must not end a program that
// writes to a cartridge.
const std::vector<int> &ignoredSignals();
