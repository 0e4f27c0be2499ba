// What a dump or a save that was read is worth, and why.
//
// Thread: pure functions; any thread.
#pragma once

#include "cart/dump_checks.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <optional>

enum class VerdictKind {
    Verified,   // size and SHA-1 are those of a known good dump
    Consistent, // not known, but everything that can be checked is right, two reads equal
    Unverified, // a check was not made, or there is none
    Unstable,   // two reads differ
    Suspicious  // the bytes cannot be right
};

enum class ReasonKind {
    // For and against a ROM
    NoBytes,
    AllBytesEqual,
    NoLogo,
    HeaderChecksumWrong,
    GlobalChecksumWrong,
    Mirrored,      // `number`: the byte from which everything repeats what is before
    OpenBus,       // `number`: the byte from which no memory answers
    OtherSize,     // `number`: bytes that the header speaks of; `otherNumber`: that there are
    NotKnown,      // in no table of known dumps
    NoChecksum,    // a ROM of this system has none over all of its bytes
    NeverSeenRead, // a file, whose reading nobody saw
    ReadOnce,
    ReadsDiffer, // `blocks`
    ChecksumsRight,
    OrderNotSeen, // a checksum that is a sum is right whatever the order of the banks
    EqualReads,   // `number` of them
    // and a save
    SaveIsBlank,
    SaveRepeats // `number`: the byte from which everything repeats what is before
};

struct Reason {
    ReasonKind kind = ReasonKind::NoBytes;
    std::uint32_t number = 0;
    std::uint32_t otherNumber = 0;
    QString blocks; // "banks 3, 7-9 of 64"
};

struct Verdict {
    VerdictKind kind = VerdictKind::Unverified;
    QString title;           // Verified: of the known dump
    QString source;          // Verified: whose table
    QVector<Reason> reasons; // none for Verified
};

// A row of a table of known dumps.
struct KnownTitle {
    QString title;
    QString source;
};

// What speaks for and against a ROM.
struct RomEvidence {
    DumpChecks checks;
    std::uint32_t size = 0; // bytes
    std::optional<KnownTitle> known;
    int reads = 0;       // 0: a file, whose reading nobody saw
    QString differences; // between reads; empty: none
};
Verdict judgeRom(const RomEvidence &evidence);

struct SaveEvidence {
    bool allBytesEqual = false;
    int size = 0;        // bytes
    int contentSize = 0; // smaller if the rest only repeats the beginning
    int reads = 0;
    QString differences;
};
Verdict judgeSave(const SaveEvidence &evidence);

// Fills in what the bytes themselves say.
void describeSave(const QByteArray &save, SaveEvidence *evidence);
