#include "ui/reader_corner.h"

#include <QAction>
#include <QMenu>
#include <QPalette>

namespace
{
// Text that a drive gave, fit for one line: a reader's identity is 16 characters, but any drive may
// pass for one.
QString shownName(const QString &name)
{
    constexpr int kLongestName = 24;
    QString shown = name.trimmed();
    if (shown.size() > kLongestName)
        shown = shown.left(kLongestName - 1) + QChar(0x2026);
    for (QChar &character : shown) {
        if (!character.isPrint())
            character = QLatin1Char('?');
    }
    return shown;
}

QString stateText(const ReaderState &state)
{
    if (state.isDemo)
        return ReaderCorner::tr("Demo reader");
    if (state.letter == 0)
        return ReaderCorner::tr("No reader");
    const QString name = shownName(state.name);
    return QLatin1Char(state.letter) + QStringLiteral(": ") +
           (name.isEmpty() ? ReaderCorner::tr("nameless reader") : name);
}

QString stateDescription(const ReaderState &state)
{
    if (state.isDemo)
        return ReaderCorner::tr("This reader and its cartridge exist only in this program. "
                                "Opens the menu of all actions.");
    if (state.letter == 0)
        return ReaderCorner::tr("No reader has been found. Opens the menu of all actions.");
    return ReaderCorner::tr("The reader that jobs use, by its drive. "
                            "Opens the menu of all actions.");
}

// A demo must not be mistaken for a real cartridge, from across the room either.
QPalette stateColours(const ReaderState &state)
{
    QPalette colours;
    if (state.isDemo) {
        colours.setColor(QPalette::Button, QColor(255, 204, 0));
        colours.setColor(QPalette::ButtonText, Qt::black);
    }
    return colours;
}

QAction *addTo(QMenu *menu, const QString &text, const QString &toolTip,
               const QKeySequence &shortcut = QKeySequence())
{
    QAction *action = menu->addAction(text);
    action->setToolTip(toolTip);
    action->setShortcut(shortcut);
    return action;
}

QAction *addChoiceTo(QMenu *menu, const QString &text, const QString &toolTip,
                     const QKeySequence &shortcut, bool isOn)
{
    QAction *action = addTo(menu, text, toolTip, shortcut);
    action->setCheckable(true);
    action->setChecked(isOn);
    return action;
}
} // namespace

ReaderCorner::ReaderCorner(QWidget *parent) : QToolButton(parent)
{
    auto *menu = new QMenu(this);
    menu->setToolTipsVisible(true);
    addButtonActions(menu);
    cancelAction =
        addTo(menu, tr("Cancel"),
              tr("Asks the job that runs to stop; the log says how it leaves the cartridge."),
              Qt::CTRL | Qt::Key_Period);
    menu->addSeparator();
    addFurtherActions(menu);
    menu->addSeparator();
    addChoices(menu);
    menu->addSeparator();
    addHelpers(menu);

    setToolButtonStyle(Qt::ToolButtonTextOnly);
    setPopupMode(QToolButton::InstantPopup);
    setFocusPolicy(Qt::StrongFocus);
    setMenu(menu);
    showReader(ReaderState());
}

void ReaderCorner::addButtonActions(QMenu *menu)
{
    infoAction = addTo(menu, tr("Info"),
                       tr("Looks for the reader, says what it and its cartridge are, and chooses "
                          "the settings that fit."),
                       Qt::CTRL | Qt::Key_I);
    dumpAction = addTo(menu, tr("Dump"), tr("Copies the ROM of the cartridge into a file."),
                       Qt::CTRL | Qt::Key_D);
    flashAction =
        addTo(menu, tr("FLASH"), tr("Erases a rewritable cartridge and writes a ROM file into it."),
              Qt::CTRL | Qt::Key_F);
    readRamAction =
        addTo(menu, tr("Read RAM"), tr("Copies the save memory of the cartridge into a file."),
              Qt::CTRL | Qt::Key_R);
    writeRamAction =
        addTo(menu, tr("Write RAM"),
              tr("Writes a save file into the cartridge, over the save that is there."),
              Qt::CTRL | Qt::Key_W);
}

void ReaderCorner::addFurtherActions(QMenu *menu)
{
    backUpAction = addTo(menu, tr("Back up this cartridge…"),
                         tr("Copies ROM and save memory into a folder, with a report about both."),
                         Qt::CTRL | Qt::Key_B);
    readAgainAction =
        addTo(menu, tr("Read again and compare"),
              tr("Reads what was dumped last once more and says whether both reads are equal."),
              Qt::CTRL | Qt::Key_E);
    checkFileAction = addTo(menu, tr("Check a ROM file…"),
                            tr("Says what a ROM file is worth. No reader is needed for it."),
                            Qt::CTRL | Qt::Key_O);
    whyNoReaderAction = addTo(menu, tr("Why is no reader found?"),
                              tr("Looks at every drive and says in the log why it is or is not "
                                 "taken as the reader."),
                              Qt::CTRL | Qt::Key_Y);
}

void ReaderCorner::addChoices(QMenu *menu)
{
    guardWritesAction = addChoiceTo(menu, tr("Guard writes"),
                                    tr("Keeps what is in the cartridge in the backup folder before "
                                       "anything is written over it."),
                                    Qt::CTRL | Qt::Key_G, true);
    readTwiceAction =
        addChoiceTo(menu, tr("Read twice what no table knows"),
                    tr("Reads a ROM a second time if it is not among the known dumps, and "
                       "compares. Takes twice as long."),
                    Qt::CTRL | Qt::Key_T, false);
}

void ReaderCorner::addHelpers(QMenu *menu)
{
    openFolderAction = addTo(menu, tr("Open the backup folder"),
                             tr("Shows the folder in which old saves, ROMs and files are kept."),
                             Qt::CTRL | Qt::SHIFT | Qt::Key_O);
    copyLogAction =
        addTo(menu, tr("Copy the log"), tr("Puts the text of the whole log on the clipboard."),
              Qt::CTRL | Qt::SHIFT | Qt::Key_C);
    menu->addSeparator();
    demoAction = addChoiceTo(menu, tr("Use the demo reader"),
                             tr("Tries everything on a reader and a cartridge that exist only in "
                                "this program. Not beside a real reader."),
                             Qt::CTRL | Qt::SHIFT | Qt::Key_D, false);
}

void ReaderCorner::showReader(const ReaderState &state)
{
    m_state = state;
    const QString shown = stateText(state);
    // The text of a button takes a single one for the mark of a shortcut.
    setText(QString(shown).replace(QLatin1Char('&'), QStringLiteral("&&")));
    setAccessibleName(tr("Reader: %1").arg(shown));
    setAccessibleDescription(stateDescription(state));
    setToolTip(stateDescription(state));
    setPalette(stateColours(state));
    enableActions();
}

void ReaderCorner::setBusy(bool busy)
{
    m_isBusy = busy;
    enableActions();
}

void ReaderCorner::setCanReadAgain(bool can)
{
    m_canReadAgain = can;
    enableActions();
}

void ReaderCorner::enableActions()
{
    for (QAction *action : {infoAction, dumpAction, flashAction, readRamAction, writeRamAction,
                            backUpAction, checkFileAction, whyNoReaderAction})
        action->setEnabled(!m_isBusy);
    cancelAction->setEnabled(m_isBusy);
    readAgainAction->setEnabled(!m_isBusy && m_canReadAgain);
    demoAction->setEnabled(!m_isBusy && (m_state.isDemo || m_state.letter == 0));
}
