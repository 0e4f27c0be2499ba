// The words for people about everything that this folder can find, in one place. They say what is
// so; what to do about it in the terms of options or of buttons is each face's own.
//
// Thread: pure functions; any thread.
#pragma once

#include "trust/cartridge_contradiction.h"
#include "trust/checked_write.h"
#include "trust/flash_check.h"
#include "trust/outcome.h"
#include "trust/verdict.h"

#include <QStringList>

// One sentence: "The cartridge was only looked at."
QString stateText(CartridgeState state);

// "read", "compare", "backup", "write", "check"
const char *wordOf(Phase phase);

// "verified", "consistent", ...
const char *wordOf(VerdictKind kind);

// One short clause: "the header's checksum is wrong"
QString reasonText(const Reason &reason);
QStringList reasonTexts(const Verdict &verdict);

// What a verdict rests on: "Title (table)", "all bytes are equal"
QString groundsOf(const Verdict &verdict);

// "verified: Title (table)", "suspicious: all bytes are equal"
QString summaryOf(const Verdict &verdict);

// The text as a sentence: with its full stop, if it has none.
QString withStop(const QString &text);

// Two sentences, one behind the other.
QString sentences(const QString &first, const QString &second);

// Why a save cannot be moved; empty for None.
QString dangerText(Danger danger);

// Which of the two is right nobody knows; empty for None.
QString contradictionText(Contradiction contradiction);

// Of a save file whose bytes are all equal, before it is written.
QString blankFileText(const QString &path);

// What a header means that a job would take for something else; no stop at its end, for the way out
// follows.
QString doubtText(Doubt doubt);

// Why the file cannot be flashed; empty for None. `allowedBytes`: of the mapper, the chip, or what
// may be in the chip; `bytes`: of the file or of the backup.
QString flashFaultText(FlashFault fault, int bytes, int allowedBytes);

// What a job's end means, one sentence; empty for Refused, where the script says it itself.
// `scriptPath`: of a job without a script.
QString jobFailureText(JobEnd end, const QString &scriptPath = {});

// What a job's failure is put down to, a line each: what it said itself, the drive's own words, how
// many bytes moved.
QStringList failureLines(const JobResult &result);

// One sentence: "Cannot write PATH: it is a folder." Empty for None.
QString fileTroubleText(const FileTrouble &trouble);

// What happened, without the state of the cartridge. Empty for None; of JobFailed and NotReadBack
// what the job's failure means, see failureLines() for its causes.
QString troubleText(const Outcome &outcome);

// "The cartridge does not hold what was written: 3 of 32768 bytes differ (bank 0 of 4)." and the
// first places, a line each.
QString mismatchText(const WriteMismatch &mismatch);
