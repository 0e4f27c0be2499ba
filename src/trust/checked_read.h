// Reading a memory, and reading it again: what is different the second time was wrong at least
// once.
//
// Thread: as worker/job_run.h.
#pragma once

#include "cart/dump_differences.h"
#include "trust/outcome.h"

// How the bytes of a memory are compared and named.
struct MemoryShape {
    std::uint32_t blockBytes = 0;         // of a bank
    const BankWords *words = &kBankWords; // what it is called
    char bits = '\xFF';                   // bits of every byte that the memory keeps
};

// Shape of what `job` reads: 16 KiB banks of a GB ROM, 8 KiB banks of a GB save, 64 KiB blocks of a
// GBA ROM, 4 KiB blocks of a GBA save. An MBC2 keeps half bytes.
MemoryShape shapeOf(const CartridgeJob &job);

// What differs between two copies: "banks 3, 7-9 of 64"; empty if nothing does.
QString differencesOf(const QByteArray &left, const QByteArray &right, const MemoryShape &shape);

// `bytes` with the bits that the memory does not keep set to 0: what is read there may be anything.
QByteArray keptBits(const QByteArray &bytes, const MemoryShape &shape);

struct CheckedRead {
    Outcome outcome; // its state is of all reads
    QByteArray bytes;
    QByteArray sha1;     // of them; 20 bytes
    int reads = 0;       // made so far
    QString differences; // between reads; empty: none
};

// Runs one job with its phase told. Not whole is JobFailed.
Outcome runPhase(const CartridgeJob &job, const QByteArray &input, Phase phase,
                 TrustListener &listener, QByteArray *read = nullptr);

CheckedRead readOnce(const CartridgeJob &job, Phase phase, TrustListener &listener);

// Reads `times` more times, until a read differs from the first. Stopped if the user wants that
// before or behind a read.
void readAgain(const CartridgeJob &job, int times, TrustListener &listener, CheckedRead *read);
