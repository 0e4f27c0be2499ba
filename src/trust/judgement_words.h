// The words for people about a judgement and what led to it; all others are in trust/words.h. What
// to do about it in the terms of options or of buttons is each face's own.
//
// Thread: pure functions; any thread.
#pragma once

#include "trust/judged_job.h"
#include "trust/write_guard.h"

// "failed: TEXT"
QString judgedText(JudgementKind kind, const QString &text);

// What stands behind the judgement's word for an outcome that is not Done: why, in one sentence. Of
// a script's refusal its reason alone.
QString whyText(const Outcome &outcome);

// The same, and what can be said of the cartridge.
QString judgementText(const Outcome &outcome);

// The line itself: "consistent: 2 equal reads", "written: 32768 bytes, read back and equal".
QString judgementLine(const JudgedJob &judged);

// Why a job must not begin; empty for None.
QString guardText(const WriteGuard &guard);
