// Foreign text in the log: it shows the very same characters, whatever they look like.
#include "worker/log_text.h"

#include "ui/console.h"

#include "test_class.h"

#include <QTextBlock>
#include <QtTest>

class LogTextTest : public QObject
{
    Q_OBJECT

private slots:
    void harmlessTextStaysAsItIs_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text : {"", "POKEMON RED", "  two  spaces ", "a > b", "line\nbreak",
                                 "\r\n", "\"quoted\" 'text'", "E:\\CMD.CMD", "tab\there"})
            QTest::newRow(text) << QString(text);
    }
    void harmlessTextStaysAsItIs()
    {
        QFETCH(QString, text);
        QCOMPARE(logText(text), text);
    }

    void everyCharacterIsShown_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text : {"<b>X</b>",
                                 "Title: <b>X</b>",
                                 "<img src=x>",
                                 "&lt;",
                                 "&amp;lt;",
                                 "a & b",
                                 "&",
                                 "<",
                                 "a\nb<c",
                                 "<hr><br>",
                                 "   <- three spaces",
                                 "a   <   b",
                                 "<a>   ",
                                 "tab\t<here>",
                                 "\nAN ERROR HAS OCCURRED [<b>]\n",
                                 "\n\n<two empty lines>\n\n",
                                 "</span>no way out",
                                 "<!-- comment -->",
                                 "<?xml version=\"1.0\"?>",
                                 "x<y\"z'",
                                 "%1 <%2>",
                                 "/home/R&D/<old>/dump.gb",
                                 "<script>alert(1)</script>",
                                 "<table><tr><td>x"})
            QTest::newRow(text) << QString(text);
        QTest::newRow("beyond Latin") << QString::fromUtf8("\u30dd\u30b1 <\u00e9> \U0001F600");
    }
    void everyCharacterIsShown()
    {
        QFETCH(QString, text);
        Console console(nullptr);
        appendLog(&console, "before");
        appendLog(&console, logText(text));
        appendLog(&console, "behind");
        QCOMPARE(console.toPlainText(), "before\n" + text + "\nbehind");
    }

    // The log is copied, into a terminal too.
    void controlsAreWrittenOut()
    {
        QCOMPARE(logText("A\033[2J"), QString("A\\x1B[2J"));
        Console console(nullptr);
        appendLog(&console, logText("<b>\033]0;x\007"));
        QCOMPARE(console.toPlainText(), QString("<b>\\x1B]0;x\\x07"));
    }

    // As in a text without markup.
    void everyKindOfLineBreakIsOne()
    {
        const QString text = "a\rb\r\nc\n\rd";
        Console plain(nullptr);
        appendLog(&plain, text + ">");
        Console escaped(nullptr);
        appendLog(&escaped, logText(text + "<"));
        QCOMPARE(escaped.toPlainText(), plain.toPlainText().replace('>', '<'));
    }

    // The look of the log is that of its other lines, and what follows is not touched.
    void formatIsThatOfAnyLine()
    {
        Console console(nullptr);
        appendLog(&console, "before");
        appendLog(&console, logText("<b>X</b>"));
        appendLog(&console, "behind");
        const QTextDocument &document = *console.document();
        QCOMPARE(document.blockCount(), 3);
        for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
            QTextCursor cursor(block);
            cursor.movePosition(QTextCursor::NextCharacter);
            QCOMPARE(cursor.charFormat().font(), document.defaultFont());
            QCOMPARE(cursor.charFormat().foreground(), QBrush());
            QCOMPARE(cursor.blockFormat().topMargin(), 0.0);
            QCOMPARE(cursor.blockFormat().bottomMargin(), 0.0);
        }
    }

    // Without it the log would lie.
    void unescapedTextIsMarkup()
    {
        Console console(nullptr);
        appendLog(&console, "Title: <b>X</b>");
        QCOMPARE(console.toPlainText(), QString("Title: X"));
    }
};

GBDRIVER_TEST(LogTextTest, gui)
#include "log_text_test.moc"
