#include "cli/cli_listener.h"

#include "cli/interrupt.h"
#include "trust/words.h"
#include "worker/job_words.h"

void CliListener::onPhase(Phase phase, int totalBytes)
{
    m_isRunning = true;
    m_isWriting = phase == Phase::Write;
    setAtWork(m_isWriting ? AtWork::OnWrite : AtWork::OnRead);
    m_tellsLines =
        m_told == ToldLines::OfReadsAndWrites && (phase == Phase::Read || phase == Phase::Write);
    m_hasToldInterrupt = false;
    m_kept.clear();
    m_reporter.startPhase(wordOf(phase), totalBytes);
    m_watch = std::make_unique<InterruptWatch>([this] { tellInterrupt(); });
}

void CliListener::onPhaseEnd(const JobResult &result)
{
    m_watch.reset();
    m_isRunning = false;
    setAtWork(AtWork::OnNothing);
    const QString line = jobEndLine(result.end);
    if (!line.isEmpty())
        onLine(line);
    if (!result.isWhole())
        for (const QString &kept : m_kept)
            m_reporter.log(kept);
    m_kept.clear();
    m_reporter.endPhase();
}

void CliListener::onLine(const QString &line)
{
    const QMutexLocker lock(&m_mutex);
    if (m_tellsLines)
        m_reporter.log(line);
    else
        m_kept << line.trimmed();
}

void CliListener::onProgress(int doneBytes, int /*maximum*/)
{
    {
        const QMutexLocker lock(&m_mutex);
        m_reporter.progress(doneBytes);
    }
    tellInterrupt();
}

bool CliListener::isStopWanted()
{
    tellInterrupt();
    return wasInterrupted();
}

bool CliListener::isLeaveWanted()
{
    return wasInterruptedAgain();
}

// A line now and then, and none of an erase that takes its usual time.
void CliListener::onEraseWait(int seconds, int longestSeconds)
{
    constexpr int kSecondsOfALine = 15;
    if (seconds % kSecondsOfALine != 0)
        return;
    const QMutexLocker lock(&m_mutex);
    m_reporter.log(QStringLiteral("The chip is being erased: %1 seconds, and %2 are the longest. "
                                  "Ctrl-C ends the wait.")
                       .arg(seconds)
                       .arg(longestSeconds));
}

// A job can only stop while it waits for an erase; anything else it finishes, because half a save
// or half a ROM is worth nothing.
void CliListener::tellInterrupt()
{
    const QMutexLocker lock(&m_mutex);
    if (!m_isRunning || m_hasToldInterrupt || !wasInterrupted())
        return;
    m_hasToldInterrupt = true;
    m_reporter.log(
        m_isWriting
            ? QStringLiteral("Asked to stop. The cartridge is being written; only the wait for an "
                             "erase can be cut short, anything else is finished first. If the "
                             "reader hangs, unplug it: that ends the write.")
            : QStringLiteral("Asked to stop. The cartridge is only being read; the read is "
                             "finished first, and nothing more is done. Ctrl-C again leaves the "
                             "read, and a third time ends at once; the cartridge stays as it is."));
}
