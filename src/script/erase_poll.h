// Waiting for a flash chip to erase itself. The reader reports nothing, so the host looks once a
// second whether erased bytes (0xFF) show up. The user's cancel is noticed after a look that showed
// anything but 0xFF. Without it the wait ends where the drive has reported an error in two looks in
// a row, as it does when the reader was unplugged, and when the slowest chip of this size would
// have ended long ago.
//
// Thread: the one that runs the job.
#pragma once

class JobListener;
struct CartridgeJob;

enum class EraseEnd { Erased, Cancelled, NoAnswer, TooLong };

struct EraseWait {
    EraseEnd end = EraseEnd::Erased;
    int longestSeconds = 0; // that were allowed
};

// Waits, once started by the script, for a GB flash cartridge's erase: byte 0 of the bus.
// A chip of unknown size counts as the largest that a GB bus reaches, one that says less than is
// to be written to it as that.
EraseWait waitForGbErase(JobListener &listener, const CartridgeJob &job);

// The same for the erase of a GBA FLASH save: byte 0 of the save, read as SRAM whatever save type
// is bound.
EraseWait waitForGbaSaveErase(JobListener &listener);

// Data sheets give a whole chip up to 64 seconds a megabyte: twice that, and five minutes for any.
int longestEraseSeconds(int chipSize);

// What passes the time between two looks; gets the time in milliseconds. Tests give a waiter that
// returns at once. Null restores the default, which puts the thread to sleep.
using PollWaiter = void (*)(unsigned long timeMs);
void setPollWaiter(PollWaiter waiter);
