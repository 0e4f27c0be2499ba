// The signals that mean the same as Ctrl-C on this system, and those that mean nothing.
// Thread: constant data; any thread.
#pragma once

#include <vector>

// SIGINT, and what a closed terminal or a shutdown sends.
const std::vector<int> &stopSignals();

// A reader of the output that goes away must not end a program that writes to a cartridge.
const std::vector<int> &ignoredSignals();
