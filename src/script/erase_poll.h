// Waiting for a flash chip to erase itself. The reader reports nothing, so the host looks once a
// second whether erased bytes (0xFF) show up. There is no time limit: large chips take minutes, and
// only the user can tell a slow chip from a dead one. The user's cancel is noticed after a look
// that showed anything but 0xFF.
//
// Thread: the one that runs the job.
#pragma once

class JobListener;

// Waits, once started by the script, for a GB flash cartridge's erase: byte 0 of the bus.
// Returns: true when it reads 0xFF, false when the user cancelled.
bool waitForGbErase(JobListener &listener);

// The same for the erase of a GBA FLASH save: byte 0 of the save, read as SRAM whatever save type
// is bound.
bool waitForGbaSaveErase(JobListener &listener);

// What passes the time between two looks; gets the time in milliseconds. Tests give a waiter that
// returns at once. Null restores the default, which puts the thread to sleep.
using PollWaiter = void (*)(unsigned long timeMs);
void setPollWaiter(PollWaiter waiter);
