// Prints a job's log lines and its progress to a stream: on a terminal one bar that is drawn over,
// elsewhere a plain line for every tenth.
//
// Thread: the application's main thread; the functions are pure.
#pragma once

#include <QElapsedTimer>
#include <QString>

#include <cstdio>

// How far a transfer has come, as a line of text: bar, bytes, rate, time left. `done` and `total`
// in bytes, `elapsedMs` since the transfer began. `done` may be anything; it is shown between 0
// and `total`.
QString progressText(qint64 done, qint64 total, qint64 elapsedMs);

// Whole percent of `total`, 0 to 100.
int progressPercent(qint64 done, qint64 total);

class ProgressPrinter
{
public:
    // `phase` goes before the bar; empty: nothing does.
    ProgressPrinter(std::FILE *stream, bool isTerminal, qint64 totalBytes,
                    const QString &phase = {});

    // One log line as the worker sent it, without trailing line breaks.
    void printLine(const QString &line);

    void showProgress(qint64 doneBytes);

    // Ends the bar's line.
    void finish();

private:
    bool isDue(qint64 doneBytes);

    std::FILE *m_stream;
    bool m_isTerminal;
    bool m_barIsOpen = false;
    bool m_hasProgress = false;
    qint64 m_totalBytes;
    QString m_phase;
    qint64 m_lastShownMs = -1;
    int m_lastTenth = -1;
    QElapsedTimer m_clock;
};
