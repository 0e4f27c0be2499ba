// The program's only window: a dialog with the tabs "GB", "Update" and "About".
//
// A job is not left because the window closed. Whatever asks the window to close while a job runs
// (close button, the user logging out) makes the job be asked to stop, and the window closes by
// itself when the job has ended. Who asks again some seconds later ends a job that only reads between
// two operations of the reader, and leaves it behind if that does not help, for a reader that hangs
// must not hold the window; never one that writes. Escape, too
// easily pressed, does nothing while a job runs.
//
// Thread: GUI thread only.
#pragma once

#include "app/demo_reader.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QString>
#include <QTimer>

class CornerActions;
class MainTab;
class QTabWidget;

class TabDialog : public QDialog
{
    Q_OBJECT

public:
    // `fileName`: the program's first argument, handed to the About tab.
    explicit TabDialog(const QString &fileName, QWidget *parent = nullptr);
    // Waits for a job that runs.
    ~TabDialog() override;

    // The system wants the program to end: closes it with all that is open, as soon as it may, and
    // without waiting for anybody to read the log.
    void endProgram();

    // Every way to close a dialog ends here. Does not close while a job runs, see above.
    void done(int result) override;

    // The window was closed over a job that only reads. It still runs and uses what this object
    // owns: the process must end without tearing anything down.
    bool hasLeftJob() const { return m_hasLeftJob; }

protected:
    void keyPressEvent(QKeyEvent *event) override;
    // A ROM file that is dropped on the window is checked.
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    bool isBusy() const;
    void askJobToEnd();
    void askAgain();
    void onJobChanged();
    void tellOnce(const QString &line);

    QTabWidget *tabWidget;
    MainTab *m_mainTab;
    CornerActions *m_corner;
    DemoReader m_demo;
    bool m_closesAfterJob = false;
    bool m_endsProgram = false;
    bool m_hasLeftJob = false;
    QElapsedTimer m_sinceAsked;
    QString m_lastTold;
    QTimer m_askTimer; // repeats the wish to stop, which a step that just begins would forget
};
