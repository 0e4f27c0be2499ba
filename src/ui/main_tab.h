// The tab "GB": settings, the five cartridge actions, log, progress and Cancel. It owns the one
// worker that runs every cartridge job.
//
// Each file action asks for a file, puts the reader on the right bus, fills the worker's job fields
// from the settings and has it started. The worker's signals come back as log lines, progress and
// the line that ends the job; what stands before and behind the worker's part, a backup and a
// judgement, is guarded_job.h. While a job runs the actions are disabled and Cancel is enabled;
// that alone keeps the device link single-user.
//
// Thread: GUI thread only. Short device traffic (report, mode selection, flash chip probe) runs on
// it too, never while a job runs.
#pragma once

#include "ui/job_bar.h"

#include <QWidget>

class Console;
class FamicomThread;
class GuardedJob;
class QHBoxLayout;
class QPushButton;
class QVBoxLayout;
class Settings;

class MainTab : public QWidget
{
    Q_OBJECT

public:
    explicit MainTab(QWidget *parent = nullptr);
    // Asks a running job to stop and waits until it has ended.
    ~MainTab() override;

    // Open to the window, which has to know when a job ends; owned by the tab.
    Settings *settings;
    Console *console;
    JobBar *progress;
    QPushButton *cancelButton;
    QPushButton *infoButton;
    QPushButton *dumpButton;
    QPushButton *readRamButton;
    QPushButton *flashButton;
    QPushButton *writeRamButton;
    QVBoxLayout *buttonLayout;
    QHBoxLayout *topLayout;
    QVBoxLayout *consoleLayout;
    QHBoxLayout *progressLayout;
    QVBoxLayout *mainLayout;
    FamicomThread *worker;
    GuardedJob *guarded; // what stands around the worker's jobs

public slots:
    void push_info();        // reports reader and cartridge, selects the settings that fit
    void push_read_rom();    // dumps the ROM into a file
    void push_read_ram();    // reads the save memory into a file
    void push_write_flash(); // writes a ROM file into a flash cartridge
    void push_write_ram();   // writes a save file into the cartridge

    void info(QString msg); // appends a log line
    void setProgress(int ile, int max);
    void setEnabledButtons(bool stan); // true: idle, false: a job runs
    void print_error(int err);         // end of a job: 1 succeeded, 0 failed

private:
    // Puts the reader on the bus that the settings name and fills the worker's job fields for
    // `fileName`, in this order: mode command, script check, file name check. A cancelled file
    // dialog (empty name) therefore still reaches the reader.
    // Returns: false if the job must not start; the reason, if any, is in the log and the reader is
    //          free to be unmounted.
    bool prepareJob(const QString &fileName);

    QPushButton *m_pressed = nullptr; // the action that had the keyboard when a job began
};
