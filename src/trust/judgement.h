// The one word that a careful task ends with, and the sentence behind it.
//
// Thread: pure functions; any thread.
#pragma once

#include "trust/outcome.h"
#include "trust/verdict.h"

// The first five are verdicts, in their order.
enum class JudgementKind {
    Verified,
    Consistent,
    Unverified,
    Unstable,
    Suspicious,
    Written,
    Incomplete, // fewer bytes arrived than were asked for, or the drive reported an error
    Failed,
    Refused, // by a check of ours or by the script, before anything was sent
    Stopped  // the user asked for it
};

JudgementKind judgementOf(VerdictKind kind);

bool isVerdict(JudgementKind kind);

// Of anything but Trouble::None.
JudgementKind judgementOf(const Outcome &outcome);

// "verified", "incomplete", ...
const char *wordOf(JudgementKind kind);
