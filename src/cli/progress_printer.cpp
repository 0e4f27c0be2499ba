#include "cli/progress_printer.h"

#include "cli/progress_text.h"

namespace
{

// A terminal is drawn at most this often, so that drawing costs nothing beside the transfer.
constexpr qint64 kRedrawMs = 100;

// Longest name of a phase, "compare", and a blank.
constexpr int kPhaseWidth = 8;

} // namespace

ProgressPrinter::ProgressPrinter(std::FILE *stream, bool isTerminal, qint64 totalBytes,
                                 const QString &phase)
    : m_stream(stream), m_isTerminal(isTerminal), m_totalBytes(totalBytes),
      m_phase(phase.isEmpty() ? QString() : phase.leftJustified(kPhaseWidth))
{
    m_clock.start();
}

void ProgressPrinter::printLine(const QString &line)
{
    finish();
    // What comes before the first bytes, an erase say, does not count for the rate.
    if (!m_hasProgress)
        m_clock.restart();
    QString text = line;
    while (text.endsWith(QLatin1Char('\n')))
        text.chop(1);
    std::fprintf(m_stream, "%s\n", text.toLocal8Bit().constData());
}

bool ProgressPrinter::isDue(qint64 doneBytes)
{
    const bool isLast = doneBytes >= m_totalBytes;
    if (m_isTerminal) {
        const qint64 now = m_clock.elapsed();
        if (!isLast && m_lastShownMs >= 0 && now - m_lastShownMs < kRedrawMs)
            return false;
        m_lastShownMs = now;
        return true;
    }
    const int tenth = progressPercent(doneBytes, m_totalBytes) / 10;
    if (tenth == m_lastTenth)
        return false;
    m_lastTenth = tenth;
    return true;
}

void ProgressPrinter::showProgress(qint64 doneBytes)
{
    m_hasProgress = true;
    if (m_totalBytes <= 0 || !isDue(doneBytes))
        return;
    const QByteArray text =
        (m_phase + progressText(doneBytes, m_totalBytes, m_clock.elapsed())).toLocal8Bit();
    // "\033[K" clears what a longer line left behind.
    std::fprintf(m_stream, m_isTerminal ? "\r%s\033[K" : "%s\n", text.constData());
    std::fflush(m_stream);
    m_barIsOpen = m_isTerminal;
}

void ProgressPrinter::finish()
{
    if (m_barIsOpen)
        std::fputc('\n', m_stream);
    m_barIsOpen = false;
}
