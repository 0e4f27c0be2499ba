// Reading the same memory again: what is different the second time was wrong at least once.
//
// Thread: as job_runner.h.
#pragma once

#include "cart/dump_differences.h"
#include "cli/job_runner.h"

// How the bytes of a memory are compared and named.
struct MemoryShape {
    std::uint32_t blockBytes = 0; // of a bank
    const char *block = "bank";   // what it is called, in the singular
    char bits = '\xFF';           // bits of every byte that the memory keeps
};

// Shape of what `job` reads: 16 KiB banks of a GB ROM, 8 KiB banks of a GB save, 64 KiB blocks of a
// GBA ROM, 4 KiB blocks of a GBA save. An MBC2 keeps half bytes.
MemoryShape shapeOf(const CliJob &job);

// What differs between two equally long copies: "banks 3, 7-9 of 64"; empty if nothing does.
QString differencesOf(const QByteArray &left, const QByteArray &right, const MemoryShape &shape);

// `bytes` with the bits that the memory does not keep set to 0: what is read there may be anything.
QByteArray keptBits(const QByteArray &bytes, const MemoryShape &shape);

// Reads `times` more times, until a read differs from `first`. `*differences` then names the
// blocks; otherwise it is empty. `*made`, if there is one, becomes the number of reads made.
// Returns: Cancelled, with the reason told, if the user asked to stop before or meanwhile; else the
// code of a read that failed.
ExitCode readAgain(const CliJob &job, const QByteArray &first, int times, Reporter &reporter,
                   QString *differences, int *made = nullptr);
