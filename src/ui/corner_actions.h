// What the menu in the corner of the tabs does, and what its text says of the reader.
//
// The reader is looked for when the program starts and when the system tells that drives have come
// or gone, never while a job runs and never again and again. A reader that was found that way is
// known to the file actions.
//
// Thread: GUI thread only. Looks and tasks run on the threads of GuardedJob.
#pragma once

#include "device/drive_finding.h"
#include "device/drive_watch.h"

#include <QObject>

#include <functional>

class MainTab;
class ReaderCorner;

class CornerActions : public QObject
{
    Q_OBJECT

public:
    // `useDemo` puts the demo reader in the place of the system's drives, or takes it away again,
    // and returns whether it is there now; it is called while nothing uses a drive, from any
    // thread. All outlive this object.
    CornerActions(MainTab *tab, ReaderCorner *corner, std::function<bool(bool isOn)> useDemo);

    // Judges a ROM file and tells it in the log. Not while a job runs.
    void checkFile(const QString &path);

private:
    void connectButtons();
    void connectTasks();
    void connectChoices();
    void look();
    struct FoundReader {
        NamedReader reader;
        bool endsDemo = false; // it is a real one, beside the demo
    };
    void showFound(const FoundReader &found);
    void onChanged();
    void askForFileToCheck();
    void backUp();
    void readAgain();
    void tellWhyNoReader();
    void openFolder();
    void switchDemo(bool isOn);
    void tickDemo();
    bool isReady();

    MainTab *m_tab;
    ReaderCorner *m_corner;
    std::function<bool(bool)> m_useDemo;
    DriveWatch m_watch;
    bool m_mustLook = false; // a notice came while a job ran
    bool m_isDemo = false;   // what useDemo() has said last
};
