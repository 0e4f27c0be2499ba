// Careful steps off the GUI thread: looks, backups and comparisons around the worker's job.
//
// Thread: made, started and asked to stop by the GUI thread; signals are sent by its own and arrive
// queued.
#pragma once

#include "trust/outcome.h"

#include <QThread>

#include <atomic>
#include <functional>

class CarefulThread : public QThread, private TrustListener
{
    Q_OBJECT

public:
    using Steps = std::function<void(TrustListener &)>;

    // Runs `steps` on this thread; finished() tells their end. Not while others run.
    void run(const Steps &steps);

    // The user wants the steps to end where nothing is left half done.
    void requestStop() { m_isStopWanted = true; }
    // The same, and jobs that read are left.
    void requestLeave()
    {
        m_isStopWanted = true;
        m_isLeaveWanted = true;
    }
    // Whether they were asked, since they began.
    bool isStopRequested() const { return m_isStopWanted; }

signals:
    // A job of the steps begins that is to move `totalBytes`. `phase`: a Phase.
    void phaseBegan(int phase, int totalBytes);
    void progressed(int doneBytes, int totalBytes);

protected:
    void run() override;

private:
    void onPhase(Phase phase, int totalBytes) override;
    void onPhaseEnd(const JobResult & /*result*/) override {}
    void onLine(const QString & /*line*/) override {}
    void onProgress(int doneBytes, int maximum) override;
    bool isStopWanted() override { return m_isStopWanted; }
    bool isLeaveWanted() override { return m_isLeaveWanted; }

    Steps m_steps;
    std::atomic<bool> m_isStopWanted{false};
    std::atomic<bool> m_isLeaveWanted{false};
};
