// Everything that a job tells, as texts in one list, so that a test compares the whole order of
// events at once: "log TEXT", "progress 512/32768" and, of a worker, "error 1".
#pragma once

#include "script/job.h"

#include <QStringList>

class FamicomThread;

// A listener that appends what it hears to `events`, which must outlive it.
class JobRecorder : public JobListener
{
public:
    explicit JobRecorder(QStringList *events) : m_events(events) {}

    void onLine(const QString &line) override;
    void onProgress(int doneBytes, int maximum) override;
    bool isStopWanted() override { return isStopped || --looksUntilStopped == 0; }
    bool isLeaveWanted() override { return --operationsUntilLeft == 0; }

    bool isStopped = false;      // what a user who wants to stop answers
    int looksUntilStopped = 0;   // of an erase poll; 0: never
    int operationsUntilLeft = 0; // of a job that reads; 0: never

private:
    QStringList *m_events;
};

// The same of a worker, from now on, on the thread that emits and in the order of emission.
void recordEvents(FamicomThread *job, QStringList *events);

// The texts of the log lines among `events`.
QStringList logTexts(const QStringList &events);

// The messages of the runtime errors among `logs`, from lines like "\nAN ERROR HAS OCCURED
// [text]\n". Distributions correct the spelling of that line, so tests must not compare it whole.
QStringList scriptErrors(const QStringList &logs);
