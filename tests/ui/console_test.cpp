// The log view: its look, and that it follows what is appended.
#include "ui/console.h"

#include "test_class.h"

#include <QAccessible>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>
#include <QVBoxLayout>
#include <QtTest>

namespace
{
// Lines of different lengths, so that a narrow view breaks some of them.
void fill(Console *console, int lines)
{
    for (int i = 0; i < lines; ++i)
        appendLog(console, QString("line %1 ").arg(i).repeated(1 + i % 20));
}

// True if the whole last line stands inside the view.
bool showsItsEnd(const Console &console)
{
    const QRect end = console.cursorRect();
    return console.textCursor().atEnd() && end.top() >= 0 &&
           end.bottom() <= console.viewport()->height();
}
} // namespace

class ConsoleTest : public QObject
{
    Q_OBJECT

private slots:
    void looksLikeTheLog();
    void eachLineIsAParagraph();
    void markupIsRendered();
    void ruleEndsABlock();
    void newestLineIsVisible();
    void appendingMovesTheCursorToTheEnd();
    void userCannotType();

    void newestLineStaysVisibleOnResize();
    void scrolledUpStaysThereOnResize();
    void oldestLinesAreDropped();
    void tabKeyLeavesTheLog();
    void isSpokenAsTheLog();
};

void ConsoleTest::looksLikeTheLog()
{
    Console console(nullptr);
    QCOMPARE(console.minimumWidth(), 400);
    QVERIFY(console.isReadOnly());
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        const QBrush base = console.palette().brush(group, QPalette::Base);
        QCOMPARE(base.color(), QColor(112, 146, 190, 255));
        QCOMPARE(base.style(), Qt::SolidPattern);
    }
    QCOMPARE(console.font().family(), QString("Courier"));
    QCOMPARE(console.font().pointSize(), 9);
    QVERIFY(!console.font().italic());
    QVERIFY(!console.font().bold());
    QCOMPARE(console.metaObject(), &QTextEdit::staticMetaObject);
}

void ConsoleTest::eachLineIsAParagraph()
{
    Console console(nullptr);
    appendLog(&console, "first");
    appendLog(&console, "second");
    QCOMPARE(console.document()->blockCount(), 2);
    QCOMPARE(console.document()->firstBlock().text(), QString("first"));
    QCOMPARE(console.document()->lastBlock().text(), QString("second"));
}

void ConsoleTest::markupIsRendered()
{
    Console console(nullptr);
    appendLog(&console, "need <span style=\"color: #ffcc00;\">NAME</span> firmware.");
    QCOMPARE(console.toPlainText(), QString("need NAME firmware."));
    QTextCursor cursor = console.document()->find("NAME");
    QCOMPARE(cursor.charFormat().foreground().color(), QColor("#ffcc00"));
}

void ConsoleTest::ruleEndsABlock()
{
    Console console(nullptr);
    appendLog(&console, ">Success!");
    appendLog(&console, "<hr><br>");
    bool hasRule = false;
    for (QTextBlock block = console.document()->begin(); block.isValid(); block = block.next())
        hasRule |= block.blockFormat().hasProperty(QTextFormat::BlockTrailingHorizontalRulerWidth);
    QVERIFY(hasRule);
    QVERIFY(!console.toPlainText().contains("hr"));
}

void ConsoleTest::newestLineIsVisible()
{
    Console console(nullptr);
    console.resize(400, 100);
    console.show();
    QVERIFY(QTest::qWaitForWindowExposed(&console));
    for (int i = 0; i < 100; ++i) {
        appendLog(&console, QString("line %1").arg(i));
        QVERIFY(showsItsEnd(console));
    }
    QVERIFY(console.verticalScrollBar()->maximum() > 0);

    // Also when the user has scrolled up meanwhile.
    console.verticalScrollBar()->setValue(0);
    QVERIFY(!showsItsEnd(console));
    appendLog(&console, "last");
    QVERIFY(showsItsEnd(console));
}

void ConsoleTest::appendingMovesTheCursorToTheEnd()
{
    Console console(nullptr);
    appendLog(&console, "some text");
    console.selectAll();
    appendLog(&console, "more");
    QVERIFY(console.textCursor().atEnd());
    QVERIFY(!console.textCursor().hasSelection());
    QCOMPARE(console.toPlainText(), QString("some text\nmore"));
}

void ConsoleTest::userCannotType()
{
    Console console(nullptr);
    appendLog(&console, "text");
    QTest::keyClicks(&console, "abc");
    QTest::keyClick(&console, Qt::Key_Backspace);
    QCOMPARE(console.toPlainText(), QString("text"));
}

void ConsoleTest::newestLineStaysVisibleOnResize()
{
    Console console(nullptr);
    console.resize(800, 400);
    console.show();
    QVERIFY(QTest::qWaitForWindowExposed(&console));
    fill(&console, 100);
    // A line that comes while the user has scrolled up is shown without the margin below it.
    console.verticalScrollBar()->setValue(0);
    appendLog(&console, "last");
    QVERIFY(showsItsEnd(console));
    for (const QSize &size :
         {QSize(800, 100), QSize(400, 100), QSize(900, 120), QSize(401, 90), QSize(600, 500)}) {
        console.resize(size);
        QTRY_COMPARE(console.size(), size);
        QTRY_VERIFY2(showsItsEnd(console), qPrintable(QString::number(size.height())));
    }
}

void ConsoleTest::scrolledUpStaysThereOnResize()
{
    Console console(nullptr);
    console.resize(400, 400);
    console.show();
    QVERIFY(QTest::qWaitForWindowExposed(&console));
    fill(&console, 100);
    console.verticalScrollBar()->setValue(20);
    console.resize(400, 100);
    QTRY_COMPARE(console.height(), 100);
    QCOMPARE(console.verticalScrollBar()->value(), 20);
}

void ConsoleTest::oldestLinesAreDropped()
{
    Console console(nullptr);
    for (int i = 1; i <= 5000; ++i)
        appendLog(&console, QString::number(i));
    QCOMPARE(console.document()->blockCount(), 5000);
    for (int i = 5001; i <= 6002; ++i) {
        appendLog(&console, QString::number(i));
        QVERIFY(console.document()->blockCount() <= 5000);
        QCOMPARE(console.document()->lastBlock().text(), QString::number(i));
        QVERIFY(console.textCursor().atEnd());
    }
    QCOMPARE(console.document()->blockCount(), 4000);
    QCOMPARE(console.document()->firstBlock().text(), QString("2003"));
}

void ConsoleTest::tabKeyLeavesTheLog()
{
    QWidget window;
    QVBoxLayout layout(&window);
    auto *console = new Console(&window);
    auto *after = new QPushButton(&window);
    layout.addWidget(console);
    layout.addWidget(after);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    console->setFocus();
    QTest::keyClick(console, Qt::Key_Tab);
    QVERIFY(after->hasFocus());
    QTest::keyClick(after, Qt::Key_Backtab);
    QVERIFY(console->hasFocus());
}

void ConsoleTest::isSpokenAsTheLog()
{
    Console console(nullptr);
    appendLog(&console, "text");
    const QAccessibleInterface *face = QAccessible::queryAccessibleInterface(&console);
    QCOMPARE(face->text(QAccessible::Name), QString("Log"));
    QCOMPARE(face->text(QAccessible::Value), QString("text"));
}

GBDRIVER_TEST(ConsoleTest, gui)
#include "console_test.moc"
