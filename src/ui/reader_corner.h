// The button in the corner of the tabs: its text says which reader is there, its menu lists every
// action with its shortcut. It knows neither drives nor jobs: whoever owns it tells it the state
// and connects the actions. The choices are back at their defaults in every run.
//
// The shortcuts work wherever in the window the keyboard's focus is.
//
// Thread: GUI thread only.
#pragma once

#include <QString>
#include <QToolButton>

class QAction;
class QMenu;

struct ReaderState {
    char letter = 0; // drive of the reader; 0: there is none
    QString name;    // the identity that the reader gives; may be blank
    bool isDemo = false;
};

class ReaderCorner : public QToolButton
{
    Q_OBJECT

public:
    explicit ReaderCorner(QWidget *parent = nullptr);

    void showReader(const ReaderState &state);
    // While a job runs only Cancel, the choices about jobs, the folder and the log can be used.
    void setBusy(bool busy);
    // Whether there is a last dump to compare with; there is none at first.
    void setCanReadAgain(bool can);

    // In the order of the menu; owned by this button.
    QAction *infoAction;
    QAction *dumpAction;
    QAction *flashAction;
    QAction *readRamAction;
    QAction *writeRamAction;
    QAction *cancelAction; // enabled while a job runs
    QAction *backUpAction;
    QAction *readAgainAction;
    QAction *checkFileAction;
    QAction *whyNoReaderAction;
    QAction *guardWritesAction; // checkable, checked at first
    QAction *readTwiceAction;   // checkable
    QAction *openFolderAction;
    QAction *copyLogAction;
    QAction *demoAction; // checkable; disabled while a real reader is shown

private:
    void addButtonActions(QMenu *menu);
    void addFurtherActions(QMenu *menu);
    void addChoices(QMenu *menu);
    void addHelpers(QMenu *menu);
    void enableActions();

    ReaderState m_state;
    bool m_isBusy = false;
    bool m_canReadAgain = false;
};
