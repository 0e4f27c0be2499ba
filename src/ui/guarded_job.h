// A job of the main tab with what stands around it: what the cartridge or the file holds is kept
// before the worker starts, and behind the job's rule the log says what it was worth.
//
//   Idle -> Before -> Job -> After -> Idle
//
// Before and After run on a thread of their own, through src/trust; the worker knows nothing of
// them. The same thread does the tasks of the corner's menu. Without a guard, and for a read onto a
// new file, the worker starts at once, unless it would write where saves are.
//
// Thread: GUI thread only.
#pragma once

#include "ui/judgement_text.h"

#include <QObject>
#include <QTimer>

#include <functional>

class Announcement;
class CarefulThread;
class DriveBackend;
class MainTab;

class GuardedJob : public QObject
{
    Q_OBJECT

public:
    // `tab` has its worker and its widgets, owns this object and outlives it.
    explicit GuardedJob(MainTab *tab);
    // Asks the steps to stop and waits for them.
    ~GuardedJob() override;

    // The user's choices, from one start of the program to its end.
    bool guardsWrites = true;
    bool readsUnknownTwice = false;
    QString backupFolder; // empty: the default one

    // How long a short use of the reader is waited for, and from when on a call of a job is said to
    // hang: a single read or command takes a second at most.
    int longestUseMs = 5000;
    int hangingMs = 10000;

    // Begins the job for which the tab's worker has been filled. The tab shows that it is busy.
    void start();
    // The tab has told the worker's end.
    void onWorkerEnd();

    // The user wants to stop; the worker is asked by the tab.
    void stop();
    // The user wants a job that only reads to be left between two operations of the reader. Waits a
    // little for its end. Not for one that writes.
    // Returns: whether it has ended; else the reader hangs.
    bool leave();

    bool isBusy() const { return m_stage != Stage::Idle; }
    // True while nothing that runs could leave a cartridge half written.
    bool mayBeLeft() const;

    // What Info has just found: the design's settings take less than some cartridges have.
    void noteReport(const CartridgeReport &report);

    // Runs steps that use the reader, with the tab busy meanwhile. `done` is called behind them, on
    // the GUI thread, and tells what came of it. Not while busy.
    void runTask(const std::function<void(TrustListener &)> &steps,
                 const std::function<void()> &done);

    // Runs `steps`, a short look at drives, beside everything; `done` as above. While a job runs,
    // or another look, nothing is done.
    // Returns: whether the look was begun.
    bool look(const std::function<void()> &steps, const std::function<void()> &done);
    // Before anything else uses the reader: waits for a look that runs, some seconds at most.
    // Returns: false, told in the log, if it has not ended; its drive hangs, and nothing may use
    // the reader.
    bool waitForLook();
    // Runs `steps`, a short use of the reader, while the window waits: some seconds at most.
    // Returns: false, told in the log, if they have not ended. What they use must belong to them,
    // for they may go on.
    bool useReader(const std::function<void()> &steps);
    // The backend that the user has seen: a look may have another in its place for a moment.
    const DriveBackend *shownBackend() const;
    // No look begins from the moment an action asks for its file until it has begun or was given
    // up: what it finds would not be what the user has seen.
    void holdLooks(bool isHeld);

    // The last dump or save that was read into a file: whether there is one, and reading it again.
    bool canReadAgain() const { return !m_lastRead.path.isEmpty(); }
    void readAgain();
    // What it was read from is no longer there to be compared with.
    void forgetLastRead();

    // Whether the last job's end names the only copy of what it replaced or was to replace. While
    // idle.
    bool namesCopy() const;
    // Of the copy of the file that the worker's dump replaces; empty: there is none, or no worker
    // runs. Around it the steps' thread has the path.
    QString oldFilePath() const { return m_stage == Stage::Job ? m_oldFile : QString(); }

    // Adds entries to the log and tells assistive programs of the first.
    void tell(const QStringList &entries);

signals:
    // Busy or idle, and what canReadAgain() says.
    void changed();

private:
    enum class Stage { Idle, Before, Job, After };

    void runSteps(Stage stage, const std::function<void(TrustListener &)> &steps,
                  const std::function<void()> &behind);
    void onStepsEnd();
    void guard();
    void guardRead();
    void keepOldFile();
    void startUnlessRefused();
    void refuse(GuardFault fault);
    void endRefused();
    void startWorker();
    void dropOldFile();
    void tellJudgement();
    void becomeIdle();
    void showPhase(int phase, int totalBytes);
    void tellIfReaderHangs();

    MainTab *m_tab;
    Announcement *m_announcement = nullptr; // from the first one on
    CarefulThread *m_thread;
    CarefulThread *m_lookThread;
    std::function<void()> m_behindLook;
    bool m_isLooking = false; // until what follows the look has been done
    bool m_isHeld = false;
    QTimer m_hangTimer; // while busy
    bool m_hasToldHang = false;
    const DriveBackend *m_shownBackend = nullptr; // while a look runs
    int m_savedBytes = 0;                         // of save memory, see JudgementNotes
    Stage m_stage = Stage::Idle;
    std::function<void()> m_behind; // what the steps that run are followed by
    WriteGuard m_guard;
    QStringList m_leftBehind; // by ended programs, in the folder that is written to
    QString m_oldFile;        // copy of the file that a dump replaces
    FinishedJob m_finished;
    JudgedJob m_judged;
    FinishedJob m_lastRead; // its path is empty: none
};
