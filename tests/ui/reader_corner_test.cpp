// The corner of the tabs: what it says of the reader, what its menu offers when, and its shortcuts.
#include "translators.h"

#include "test_class.h"
#include "ui/console.h"
#include "ui/reader_corner.h"

#include <QAccessible>
#include <QComboBox>
#include <QMenu>
#include <QSignalSpy>
#include <QTabWidget>
#include <QVBoxLayout>
#include <QtTest>

#include <memory>

namespace
{
using Action = QAction *ReaderCorner::*;

struct MenuRow {
    Action action; // null: a separator
    const char *text;
    const char *shortcut;
    bool isChoice;
    bool isOn;
};

const MenuRow kSeparator = {nullptr, "", "", false, false};
const MenuRow kMenuRows[] = {
    {&ReaderCorner::infoAction, "Info", "Ctrl+I", false, false},
    {&ReaderCorner::dumpAction, "Dump", "Ctrl+D", false, false},
    {&ReaderCorner::flashAction, "FLASH", "Ctrl+F", false, false},
    {&ReaderCorner::readRamAction, "Read RAM", "Ctrl+R", false, false},
    {&ReaderCorner::writeRamAction, "Write RAM", "Ctrl+W", false, false},
    {&ReaderCorner::cancelAction, "Cancel", "Ctrl+.", false, false},
    kSeparator,
    {&ReaderCorner::backUpAction, "Back up this cartridge…", "Ctrl+B", false, false},
    {&ReaderCorner::readAgainAction, "Read again and compare", "Ctrl+E", false, false},
    {&ReaderCorner::checkFileAction, "Check a ROM file…", "Ctrl+O", false, false},
    {&ReaderCorner::whyNoReaderAction, "Why is no reader found?", "Ctrl+Y", false, false},
    kSeparator,
    {&ReaderCorner::guardWritesAction, "Guard writes", "Ctrl+G", true, true},
    {&ReaderCorner::readTwiceAction, "Read twice what no table knows", "Ctrl+T", true, false},
    kSeparator,
    {&ReaderCorner::openFolderAction, "Open the backup folder", "Ctrl+Shift+O", false, false},
    {&ReaderCorner::copyLogAction, "Copy the log", "Ctrl+Shift+C", false, false},
    kSeparator,
    {&ReaderCorner::demoAction, "Use the demo reader", "Ctrl+Shift+D", true, false},
};

ReaderState realReader(const QString &name = "QDX_PCB02_FW303")
{
    return {'E', name, false};
}

ReaderState demoReader()
{
    return {'D', "QDX_PCB02_FW303", true};
}

// What assistive programs are told.
QString spoken(QWidget *widget, QAccessible::Text what)
{
    const QAccessibleInterface *face = QAccessible::queryAccessibleInterface(widget);
    return face != nullptr ? face->text(what) : QString();
}

// A window of tabs with the corner in its place, and with what takes keys in the real one.
struct Window {
    Window()
    {
        auto *page = new QWidget;
        auto *layout = new QVBoxLayout(page);
        list = new QComboBox;
        list->addItems({"one", "two"});
        log = new Console(page);
        layout->addWidget(list);
        layout->addWidget(log);
        corner = new ReaderCorner;
        tabs.addTab(page, "GB");
        tabs.addTab(new QWidget, "About");
        tabs.setCornerWidget(corner);
        tabs.show();
        tabs.activateWindow();
        if (!QTest::qWaitForWindowActive(&tabs))
            qFatal("the window does not become active");
    }

    QTabWidget tabs;
    ReaderCorner *corner;
    QComboBox *list;
    Console *log;
};
} // namespace

class ReaderCornerTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void menuListsEveryActionInOrder();
    void everyActionSaysWhatItDoes();
    void everyTextIsTranslated();

    void readerIsShown_data();
    void readerIsShown();
    void stateIsSpoken();
    void demoHasAColourOfItsOwn();
    void longStateHasRoomInTheCorner();

    void actionsFollowTheJob_data();
    void actionsFollowTheJob();
    void demoIsNeverBesideARealReader();
    void lastDumpAllowsReadingAgain();
    void choicesStayDuringAJob();

    void cancelIsForAJobThatRuns();
    void shortcutsWorkEverywhere_data();
    void shortcutsWorkEverywhere();
    void shortcutsRestDuringAJob();
    void menuOpensByKeyboard();

private:
    ReaderCorner &corner() { return *m_window->corner; }

    std::unique_ptr<Window> m_window;
};

void ReaderCornerTest::init()
{
    QApplication::setStyle("fusion"); // the program's
    m_window = std::make_unique<Window>();
    QVERIFY(QTest::qWaitForWindowExposed(&m_window->tabs));
}

void ReaderCornerTest::cleanup()
{
    m_window.reset();
}

void ReaderCornerTest::menuListsEveryActionInOrder()
{
    const QList<QAction *> actions = corner().menu()->actions();
    QCOMPARE(actions.size(), static_cast<int>(std::size(kMenuRows)));
    for (int i = 0; i < actions.size(); ++i) {
        const MenuRow &row = kMenuRows[i];
        QCOMPARE(actions[i]->isSeparator(), row.action == nullptr);
        if (row.action == nullptr)
            continue;
        QCOMPARE(actions[i], corner().*row.action);
        QCOMPARE(actions[i]->text(), QString::fromUtf8(row.text));
        QCOMPARE(actions[i]->shortcut(), QKeySequence(row.shortcut));
        QCOMPARE(actions[i]->isCheckable(), row.isChoice);
        QCOMPARE(actions[i]->isChecked(), row.isOn);
    }
}

// The tool tip of an action without one of its own is its text.
void ReaderCornerTest::everyActionSaysWhatItDoes()
{
    QVERIFY(corner().menu()->toolTipsVisible());
    for (const MenuRow &row : kMenuRows) {
        if (row.action != nullptr)
            QVERIFY2((corner().*row.action)->toolTip().endsWith('.'), row.text);
    }
}

void ReaderCornerTest::everyTextIsTranslated()
{
    MarkingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    ReaderCorner translated;
    for (const MenuRow &row : kMenuRows) {
        if (row.action == nullptr)
            continue;
        const QAction *action = translated.*row.action;
        QCOMPARE(action->text(), "[ReaderCorner]" + QString::fromUtf8(row.text));
        QVERIFY2(action->toolTip().startsWith("[ReaderCorner]"), row.text);
    }
    QCOMPARE(translated.text(), QString("[ReaderCorner]No reader"));
    translated.showReader(demoReader());
    QCOMPARE(translated.text(), QString("[ReaderCorner]Demo reader"));
    translated.showReader(realReader());
    QCOMPARE(translated.text(), QString("E: QDX_PCB02_FW303"));
    translated.showReader(realReader(""));
    QCOMPARE(translated.text(), QString("E: [ReaderCorner]nameless reader"));
}

void ReaderCornerTest::readerIsShown_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("name spoken");
    const auto row = [](const char *tag, const QString &name, const QString &text,
                        const QString &spokenText) {
        QTest::newRow(tag) << name << text << spokenText;
    };
    row("usual", "QDX_PCB02_FW303", "E: QDX_PCB02_FW303", "Reader: E: QDX_PCB02_FW303");
    row("blank", "  ", "E: nameless reader", "Reader: E: nameless reader");
    row("ampersand", "A&B", "E: A&&B", "Reader: E: A&B");
    row("unprintable", QString("A\tB\nC") + QChar(0x7f) + QChar(0x80), "E: A?B?C??",
        "Reader: E: A?B?C??");
    row("markup", "<b>X</b>", "E: <b>X</b>", "Reader: E: <b>X</b>");
    const QString longest(24, 'x');
    row("longest", longest, "E: " + longest, "Reader: E: " + longest);
    const QString cut = QString(23, 'x') + QChar(0x2026);
    row("too long", longest + 'x', "E: " + cut, "Reader: E: " + cut);
}

void ReaderCornerTest::readerIsShown()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    QCOMPARE(corner().text(), QString("No reader"));
    corner().showReader(realReader(name));
    QCOMPARE(corner().text(), text);
    QTEST(spoken(&corner(), QAccessible::Name), "name spoken");
    corner().showReader(ReaderState());
    QCOMPARE(corner().text(), QString("No reader"));
}

void ReaderCornerTest::stateIsSpoken()
{
    QCOMPARE(spoken(&corner(), QAccessible::Name), QString("Reader: No reader"));
    QVERIFY(spoken(&corner(), QAccessible::Description).startsWith("No reader has been found."));
    corner().showReader(realReader());
    QCOMPARE(spoken(&corner(), QAccessible::Name), QString("Reader: E: QDX_PCB02_FW303"));
    QVERIFY(spoken(&corner(), QAccessible::Description).startsWith("The reader that jobs use"));
    corner().showReader(demoReader());
    QCOMPARE(spoken(&corner(), QAccessible::Name), QString("Reader: Demo reader"));
    QVERIFY(spoken(&corner(), QAccessible::Description).contains("only in this program"));
}

void ReaderCornerTest::demoHasAColourOfItsOwn()
{
    const auto middle = [this] {
        // Beside the text, inside the frame.
        return corner().grab().toImage().pixelColor(corner().width() / 2, 3);
    };
    const QColor usual = middle();
    corner().showReader(demoReader());
    const QColor demo = middle();
    QVERIFY2(demo.saturation() > usual.saturation() + 100, qPrintable(demo.name()));
    corner().showReader(realReader());
    QCOMPARE(middle(), usual);
}

void ReaderCornerTest::longStateHasRoomInTheCorner()
{
    m_window->tabs.resize(600, 300);
    corner().showReader(realReader(QString(24, 'W')));
    QTRY_VERIFY(corner().width() >= corner().sizeHint().width());
    QVERIFY(corner().geometry().right() <= m_window->tabs.width());
}

void ReaderCornerTest::actionsFollowTheJob_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("enabled during a job");
    for (int i = 0; i < static_cast<int>(std::size(kMenuRows)); ++i) {
        const Action action = kMenuRows[i].action;
        // Cancel is the other way round, see cancelIsForAJobThatRuns().
        if (action != nullptr && action != &ReaderCorner::cancelAction)
            QTest::newRow(kMenuRows[i].text) << i
                                             << (action == &ReaderCorner::guardWritesAction ||
                                                 action == &ReaderCorner::readTwiceAction ||
                                                 action == &ReaderCorner::openFolderAction ||
                                                 action == &ReaderCorner::copyLogAction);
    }
}

void ReaderCornerTest::actionsFollowTheJob()
{
    QFETCH(int, index);
    const QAction *action = corner().*kMenuRows[index].action;
    corner().setCanReadAgain(true);
    QVERIFY(action->isEnabled());
    corner().setBusy(true);
    QTEST(action->isEnabled(), "enabled during a job");
    corner().setCanReadAgain(true);
    corner().showReader(ReaderState());
    QTEST(action->isEnabled(), "enabled during a job");
    corner().setBusy(false);
    QVERIFY(action->isEnabled());
    QVERIFY(corner().isEnabled());
}

void ReaderCornerTest::demoIsNeverBesideARealReader()
{
    QVERIFY(corner().demoAction->isEnabled());
    corner().showReader(realReader());
    QVERIFY(!corner().demoAction->isEnabled());
    corner().showReader(demoReader());
    QVERIFY(corner().demoAction->isEnabled()); // to end it
    corner().showReader(ReaderState());
    QVERIFY(corner().demoAction->isEnabled());
}

void ReaderCornerTest::lastDumpAllowsReadingAgain()
{
    QVERIFY(!corner().readAgainAction->isEnabled());
    corner().setCanReadAgain(true);
    QVERIFY(corner().readAgainAction->isEnabled());
    corner().setCanReadAgain(false);
    QVERIFY(!corner().readAgainAction->isEnabled());
}

void ReaderCornerTest::choicesStayDuringAJob()
{
    corner().guardWritesAction->trigger();
    corner().readTwiceAction->trigger();
    corner().setBusy(true);
    corner().showReader(realReader());
    corner().setBusy(false);
    QVERIFY(!corner().guardWritesAction->isChecked());
    QVERIFY(corner().readTwiceAction->isChecked());
    // The next window starts anew.
    const ReaderCorner next;
    QVERIFY(next.guardWritesAction->isChecked());
    QVERIFY(!next.readTwiceAction->isChecked());
}

void ReaderCornerTest::cancelIsForAJobThatRuns()
{
    QVERIFY(!corner().cancelAction->isEnabled());
    corner().setBusy(true);
    QVERIFY(corner().cancelAction->isEnabled());
    corner().setBusy(false);
    QVERIFY(!corner().cancelAction->isEnabled());
}

void ReaderCornerTest::shortcutsWorkEverywhere_data()
{
    QTest::addColumn<QString>("focus");
    for (const char *focus : {"log", "list", "corner", "tabs"})
        QTest::newRow(focus) << focus;
}

// Some of these keys move the cursor in a text that can be edited; the log leaves them alone.
void ReaderCornerTest::shortcutsWorkEverywhere()
{
    QFETCH(QString, focus);
    QWidget *widget = &m_window->tabs;
    if (focus == "log")
        widget = m_window->log;
    else if (focus == "list")
        widget = m_window->list;
    else if (focus == "corner")
        widget = m_window->corner;
    widget->setFocus();
    appendLog(m_window->log, "text");
    corner().setCanReadAgain(true);
    for (const MenuRow &row : kMenuRows) {
        if (row.action == nullptr)
            continue;
        const QKeySequence keys(row.shortcut);
        corner().setBusy(row.action == &ReaderCorner::cancelAction);
        const QSignalSpy triggered(corner().*row.action, &QAction::triggered);
        QTest::keySequence(widget, keys);
        QVERIFY2(triggered.count() == 1, row.text);
    }
}

void ReaderCornerTest::shortcutsRestDuringAJob()
{
    const QSignalSpy triggered(corner().flashAction, &QAction::triggered);
    corner().setBusy(true);
    QTest::keyClick(m_window->log, Qt::Key_F, Qt::ControlModifier);
    QCOMPARE(triggered.count(), 0);
    corner().setBusy(false);
    QTest::keyClick(m_window->log, Qt::Key_F, Qt::ControlModifier);
    QCOMPARE(triggered.count(), 1);
}

void ReaderCornerTest::menuOpensByKeyboard()
{
    corner().setFocus();
    const QSignalSpy triggered(corner().dumpAction, &QAction::triggered);
    // The menu has an event loop of its own.
    QTimer::singleShot(0, corner().menu(), [menu = corner().menu()] {
        QVERIFY(menu->isVisible());
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
        menu->close();
    });
    QTest::keyClick(&corner(), Qt::Key_Space);
    QCOMPARE(triggered.count(), 1);
}

GBDRIVER_TEST(ReaderCornerTest, gui)
#include "reader_corner_test.moc"
