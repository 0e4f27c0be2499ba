// The log view: its look, and that it follows what is appended.
#include "ui/console.h"

#include "test_class.h"

#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>
#include <QtTest>

namespace
{
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

GBDRIVER_TEST(ConsoleTest, gui)
#include "console_test.moc"
