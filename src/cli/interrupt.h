// The user's Ctrl-C, or another signal that asks to stop: the first is noticed, so that a job can
// be asked to stop, and the second ends the program at once. A job that reads notices the second as
// well, and is left; the third ends the program. A job that writes is never ended by any.
//
// Thread: the main thread; the flag and the lists may be read from any.
#pragma once

#include <QMutex>
#include <QThread>
#include <QWaitCondition>

#include <functional>
#include <vector>

// From now on a first interrupt only raises the flag.
void watchForInterrupt();

bool wasInterrupted();
// Whether the user has pressed Ctrl-C again.
bool wasInterruptedAgain();

// Whether the next one ends the program at once.
bool nextInterruptEnds();

// What the program is at, as far as an interrupt may end it.
enum class AtWork { OnNothing, OnRead, OnWrite };
void setAtWork(AtWork work);

// This system's signals that mean the same as Ctrl-C: SIGINT, and what a closed terminal or a
// shutdown sends.
const std::vector<int> &stopSignals();

// And those that mean nothing: a reader of the output that goes away must not end a program that
// writes to a cartridge.
const std::vector<int> &ignoredSignals();

// Notices the user's Ctrl-C while the thread that could tell of it waits for the reader.
// Thread: made and destroyed by one; calls back on a thread of its own.
class InterruptWatch : private QThread
{
public:
    // Calls `tell` at most once, when the user has pressed Ctrl-C, as long as this object exists.
    explicit InterruptWatch(std::function<void()> tell);
    ~InterruptWatch() override;

private:
    void run() override;

    std::function<void()> m_tell;
    QMutex m_mutex;
    QWaitCondition m_end;
    bool m_isEnded = false; // guarded by m_mutex
};
