// The firmware update off the GUI thread. It transfers nothing to the reader: it reports success at
// once. A real transfer would take its place in run() and report through the same three signals.
//
// One object serves any number of updates, one after the other.
//
// Thread: the object belongs to the thread that made it; run() and the signals to the worker.
#pragma once

#include <QString>
#include <QThread>

class UpdateThread : public QThread
{
    Q_OBJECT

signals:
    void log(QString);
    void set_progress(int ile, int max);
    // 1 = the update succeeded. Once per update, after the last set_progress(1, 1).
    void error(int err);

protected:
    void run() override;
};
