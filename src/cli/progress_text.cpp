#include "cli/progress_text.h"

#include <QtGlobal>

namespace
{

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
