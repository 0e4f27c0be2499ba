// The tab "Update": tells how to prepare a firmware update, starts it with one button, and shows
// log and progress. It owns the one worker that runs every update.
//
// While an update runs the button is disabled; the worker's end enables it again.
//
// Thread: GUI thread only.
#pragma once

#include <QWidget>

class Console;
class QHBoxLayout;
class QProgressBar;
class QPushButton;
class QVBoxLayout;
class UpdateThread;

class FirmwareUpdateTab : public QWidget
{
    Q_OBJECT

public:
    explicit FirmwareUpdateTab(QWidget *parent = nullptr);
    // Waits until a running update has ended.
    ~FirmwareUpdateTab() override;

    // Open to the window, as in the other tab with a worker; owned by the tab.
    Console *console;
    QProgressBar *progress;
    QPushButton *updateButton;
    QVBoxLayout *buttonLayout;
    QVBoxLayout *consoleLayout;
    QHBoxLayout *progressLayout;
    QVBoxLayout *mainLayout;
    UpdateThread *worker;

public slots:
    void push_update();                // starts an update
    void info(QString msg);            // appends a log line
    void setEnabledButtons(bool stan); // true: idle, false: an update runs
    void setProgress(int ile, int max);
    void print_error(int err); // end of an update: 1 succeeded, 0 failed
};
