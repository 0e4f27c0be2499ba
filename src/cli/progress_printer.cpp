#include "cli/progress_printer.h"

#include "cli/print_line.h"

#include <QtGlobal>

namespace
{

// A terminal is drawn at most this often, so that drawing costs nothing beside the transfer.
constexpr qint64 kRedrawMs = 100;

// Longest name of a phase, "compare", and a blank.
constexpr int kPhaseWidth = 8;

// A whole line with a phase before it fits a terminal of 80 columns.
constexpr int kBarWidth = 12;
constexpr qint64 kKibibyte = 1024;
constexpr qint64 kMebibyte = 1024 * 1024;

QString amount(double bytes)
{
    if (bytes >= kMebibyte)
        return QString::number(bytes / kMebibyte, 'f', 2) + QStringLiteral(" MiB");
    if (bytes >= kKibibyte)
        return QString::number(bytes / kKibibyte, 'f', 1) + QStringLiteral(" KiB");
    return QString::number(bytes, 'f', 0) + QStringLiteral(" B");
}

QString duration(qint64 seconds)
{
    return QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

QString bar(int percent)
{
    const int filled = kBarWidth * percent / 100;
    return QString(filled, QLatin1Char('#')) + QString(kBarWidth - filled, QLatin1Char('.'));
}

} // namespace

int progressPercent(qint64 done, qint64 total)
{
    return total <= 0 ? 0 : static_cast<int>(qBound<qint64>(0, done, total) * 100 / total);
}

QString progressText(qint64 done, qint64 total, qint64 elapsedMs)
{
    const qint64 shown = qBound<qint64>(0, done, qMax<qint64>(total, 0));
    const int percent = progressPercent(shown, total);
    QString text = QStringLiteral("[%1] %2%  %3 of %4")
                       .arg(bar(percent))
                       .arg(percent, 3)
                       .arg(amount(static_cast<double>(shown)), amount(static_cast<double>(total)));
    if (shown <= 0 || elapsedMs <= 0)
        return text;
    const double bytesPerMs = static_cast<double>(shown) / static_cast<double>(elapsedMs);
    const auto leftMs = static_cast<qint64>(static_cast<double>(total - shown) / bytesPerMs);
    return text + QStringLiteral("  %1/s  %2 left")
                      .arg(amount(bytesPerMs * 1000), duration((leftMs + 999) / 1000));
}

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
    ::printLine(m_stream, line);
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
