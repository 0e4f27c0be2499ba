// Everything that a job tells its owner, as texts in one list, so that a test compares the whole
// order of events at once.
#pragma once

#include <QStringList>

class FamicomThread;

// From now on appends "log TEXT", "progress 512/32768" and "error 1" to `events`, on the thread
// that emits and in the order of emission. `events` must outlive the job.
void recordEvents(FamicomThread *job, QStringList *events);

// The texts of the log lines among `events`.
QStringList logTexts(const QStringList &events);

// The messages of the runtime errors among `logs`, from lines like "\nAN ERROR HAS OCCURED
// [text]\n". Distributions correct the spelling of that line, so tests must not compare it whole.
QStringList scriptErrors(const QStringList &logs);
