#include "ui/job_bar.h"

namespace
{

constexpr int kTickMs = 1000;

} // namespace

JobBar::JobBar(QWidget *parent) : QProgressBar(parent)
{
    m_tick.setInterval(kTickMs);
    QObject::connect(&m_tick, &QTimer::timeout, this, [this] {
        if (maximum() != 0)
            m_tick.stop();
        update();
    });
}

void JobBar::showStep(const QString &what)
{
    const QString percent = QStringLiteral("%p%");
    setFormat(what.isEmpty() ? percent : what + QLatin1Char(' ') + percent);
}

void JobBar::showWaiting(const QString &what)
{
    m_waiting = what;
    m_since.start();
    m_tick.start();
    setRange(0, 0);
}

QString JobBar::text() const
{
    if (maximum() != 0 || m_waiting.isEmpty() || !m_tick.isActive())
        return QProgressBar::text();
    constexpr int kMsOfMinute = 60 * kTickMs;
    const int ms = static_cast<int>(m_since.elapsed());
    return QStringLiteral("%1 %2:%3")
        .arg(m_waiting)
        .arg(ms / kMsOfMinute)
        .arg(ms % kMsOfMinute / kTickMs, 2, 10, QLatin1Char('0'));
}
