// The user's Ctrl-C, or another signal that asks to stop: noticed once, so that a job can be asked to stop; a second one ends the
// program at once.
//
// Thread: the main thread; the flag may be read from any.
#pragma once

// From now on a first interrupt only raises the flag.
void watchForInterrupt();

bool wasInterrupted();
