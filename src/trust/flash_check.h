// What has to be right before a ROM is written into a flash cartridge.
//
// Thread: pure functions, but for probeFlashChipTwice(), which is as worker/job_run.h.
#pragma once

#include "trust/cartridge_task.h"
#include "worker/flash_chip_probe.h"

#include <QByteArray>

#include <optional>

// The most that a mapper brings to a flash chip, as its script has it. Behind an MBC1 more would
// switch banks while it is written. In bytes.
struct FlashLimit {
    int mapper; // row of the mapper table
    int writtenBytes;
    int readBytes;
    int bankBytes; // what is programmed in one go
};

// Returns: null if no flash chip stands behind such a mapper. Constant data.
const FlashLimit *flashLimitOf(const CartridgeValues &values);

// Fewer bytes than this at the end of a bank the reader cannot decipher.
constexpr int kShortestFlashTail = 8;

enum class FlashFault {
    None,
    GbaRom,      // the reader has no command for it
    NoFlashChip, // behind this mapper
    EmptyFile,
    BeyondMapper,   // the file is larger than the mapper's limit
    ShortTail,      // the last bank has too few bytes
    BeyondChip,     // the file is larger than the chip
    BackupTooSmall, // a backup of what the user asks for, or the mapper shows, may be a part of
                    // what is erased
    BackupRepeats   // what is read of the chip is not as large as the chip
};

// Whether the file can be written at all. A refusal by the script would come only when the program
// already waits for an erase.
FlashFault flashFileFault(int fileBytes, const CartridgeValues &values);

// The file beside what the chip says.
FlashFault flashChipFault(int fileSize, const FlashChipAnswer &chip);

// Whether a backup of `backupBytes` can be of all that the erase will destroy. `bytesToKeep`: see
// flashBytesToKeep().
FlashFault flashBackupFault(int backupBytes, int bytesToKeep);

// Whether `backup`, of a chip that names its size, is. Behind another mapper than the board's a
// part of the chip comes again and again, and two reads of that are equal.
FlashFault flashContentFault(const QByteArray &backup, const FlashChipAnswer &chip);

// As many first bytes as make up all of `bytes`, repeated.
int repeatedBytesOf(const QByteArray &bytes);

// All that the erase will destroy: the chip as it says itself, else all that the mapper reaches. It
// may be more than the mapper reaches.
int flashBytesToKeep(const FlashChipAnswer &chip, const FlashLimit &limit);

// The smallest ROM size that holds the file: a power of two from 32 KiB on.
int romSizeOf(int fileBytes);

enum class ProbeEnd {
    Asked,
    NotAsked, // because there is no reader, or it does not answer; see `fault`
    Unclear   // it said something else when asked again
};

struct ProbedChip {
    ProbeEnd end = ProbeEnd::NotAsked;
    JobEnd fault = JobEnd::Done; // of NotAsked: NoReader or NoMode
    FlashChipAnswer chip;        // of Asked
};

// Looks for the reader and queries the chip, twice: a backup as large as a misheard size would be
// half of one.
ProbedChip probeFlashChipTwice();
