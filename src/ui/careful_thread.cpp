#include "ui/careful_thread.h"

void CarefulThread::run(const Steps &steps)
{
    wait(); // it may have told its end and still be on the way out
    m_steps = steps;
    m_isStopWanted = false;
    m_isLeaveWanted = false;
    start();
}

void CarefulThread::run()
{
    m_steps(*this);
}

void CarefulThread::onPhase(Phase phase, int totalBytes)
{
    emit phaseBegan(static_cast<int>(phase), totalBytes);
}

void CarefulThread::onProgress(int doneBytes, int maximum)
{
    emit progressed(doneBytes, maximum);
}
