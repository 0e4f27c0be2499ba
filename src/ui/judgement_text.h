// How the log shows a judgement: one coloured line that begins with its word, a line or two of
// advice in the terms of the window, a rule.
//
// Thread: GUI thread only.
#pragma once

#include "trust/judged_job.h"
#include "trust/write_guard.h"

#include <QStringList>

// Closes a block of the log. The only log text that is not translated.
extern const char kLogRule[];

// What is told beside the judgement itself.
struct JudgementNotes {
    QString backupPath;     // of what a write has replaced; empty: there is none
    QString oldFilePath;    // of the file that a dump has replaced; empty: there is none
    int savedBytes = 0;     // of save memory, as far as Info knows; 0: it does not
    QStringList leftBehind; // by ended programs, where files are written
    // The backup is what the mapper shows of a chip that does not say how large it is.
    bool keepsWhatIsShown = false;
};

// Log entries, one append each, the rule last. Everything that does not come from this program is
// escaped.
QStringList judgementEntries(const JudgedJob &judged, const JudgementNotes &notes);

// Likewise for a job that was not begun. The reason itself stands before the rule of the job.
QStringList refusalEntries(const WriteGuard &guard);

// Likewise for any other task that ended with `outcome`.
QStringList outcomeEntries(const Outcome &outcome);

// Likewise for a bus mode that could not be selected, if that has a reason of its own: see
// modeFault(). Empty if it has none.
QStringList modeFaultEntries(JobEnd fault, const QString &driveError);

// One entry of the kind's colour; `line` is plain text and begins with the kind's word.
QString judgementEntry(JudgementKind kind, const QString &line);

// One entry in the colour of warnings; `warning` is plain text.
QString warningEntry(const QString &warning);

// One entry about a DAT file that could not be used; `problem` begins with its path.
QString tableProblemEntry(const QString &problem);

// One entry of plain text below a judgement. Markup in any case: text without would take the
// colours of the entry before.
QString adviceEntry(const QString &advice);
