// The progress bar of the main tab: says what the job is at, and for how long it has waited where
// no progress can be told, which is during an erase.
//
// Thread: GUI thread only.
#pragma once

#include <QElapsedTimer>
#include <QProgressBar>
#include <QTimer>

class JobBar : public QProgressBar
{
public:
    explicit JobBar(QWidget *parent);

    // From now on the percentage stands behind `what`; empty: alone.
    void showStep(const QString &what);

    // Shows the bar busy with `what` and the time since this call, until a maximum is set.
    void showWaiting(const QString &what);

    QString text() const override;

private:
    QString m_waiting;
    QElapsedTimer m_since;
    QTimer m_tick;
};
