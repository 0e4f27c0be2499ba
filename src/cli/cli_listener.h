// What the careful steps tell, on its way to the user: phases, progress, log lines, and the user's
// Ctrl-C on its way back.
//
// Thread: the one that runs the steps. While a job runs, which may wait for the reader, a watch of
// its own tells that Ctrl-C was noticed.
#pragma once

#include "cli/interrupt.h"
#include "cli/reporter.h"
#include "trust/outcome.h"

#include <QMutex>
#include <QStringList>

#include <memory>

// Whose log lines the user sees as they come. Those of steps around what the user asked for are
// told only if the step fails.
enum class ToldLines { OfReadsAndWrites, OfFailures };

class CliListener : public TrustListener
{
public:
    explicit CliListener(Reporter &reporter, ToldLines told = ToldLines::OfReadsAndWrites)
        : m_reporter(reporter), m_told(told)
    {
    }

    void onPhase(Phase phase, int totalBytes) override;
    void onPhaseEnd(const JobResult &result) override;
    void onLine(const QString &line) override;
    void onProgress(int doneBytes, int maximum) override;
    bool isStopWanted() override;
    bool isLeaveWanted() override;
    void onEraseWait(int seconds, int longestSeconds) override;

private:
    void tellInterrupt();

    Reporter &m_reporter;
    ToldLines m_told;
    bool m_isRunning = false; // a job
    bool m_tellsLines = false;
    bool m_isWriting = false;
    bool m_hasToldInterrupt = false;
    QStringList m_kept;                      // lines that are told only on failure
    QMutex m_mutex;                          // guards what is above while the watch runs
    std::unique_ptr<InterruptWatch> m_watch; // of a job
};
