// The program's only window: a dialog with the tabs "GB", "Update" and "About".
//
// A job is never left because the window closed. Whatever asks the window to close while a job runs
// (close button, Escape, the user logging out) makes the job be asked to cancel and the
// window closes by itself when the job has ended.
//
// Thread: GUI thread only.
#pragma once

#include <QDialog>
#include <QString>
#include <QTimer>

class MainTab;
class QTabWidget;

class TabDialog : public QDialog
{
    Q_OBJECT

public:
    // `fileName`: the program's first argument, handed to the About tab.
    explicit TabDialog(const QString &fileName, QWidget *parent = nullptr);

    // Every way to close a dialog ends here. Does not close while a job runs, see above.
    void done(int result) override;

private:
    void askJobToEnd();
    void onJobEnded();

    QTabWidget *tabWidget;
    MainTab *m_mainTab;
    bool m_closesAfterJob = false;
    QTimer m_cancelTimer; // repeats the wish to cancel, which a job that just begins would forget
};
