// What a dump or a save that was read is worth, and why.
//
// Thread: pure functions, but for tellVerdict(), which belongs to the main thread.
#pragma once

#include "cart/dump_checks.h"
#include "cli/exit_code.h"
#include "cli/reporter.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

enum class VerdictKind {
    Verified,   // size and SHA-1 are those of a known good dump
    Consistent, // not known, but everything that can be checked is right, two reads equal
    Unverified, // a check was not made, or there is none
    Unstable,   // two reads differ
    Suspicious  // the bytes can not be right
};

struct Verdict {
    VerdictKind kind = VerdictKind::Unverified;
    QString title;       // Verified: of the known dump
    QString source;      // Verified: whose table
    QStringList reasons; // one short clause each; none for Verified
};

// The word in JSON and in the printed line.
const char *wordOf(VerdictKind kind);

// Done for Verified and Consistent.
ExitCode exitCodeOf(VerdictKind kind);

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

// "verified: Title (table)", "suspicious: all bytes are equal"; without colour.
QString summaryOf(const Verdict &verdict);

// Prints the verdict as the command's answer, or as an event "verdict" with `facts` about the file
// in it.
void tellVerdict(const Verdict &verdict, const QJsonObject &facts, Reporter &reporter);
