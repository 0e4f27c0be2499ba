// File names in commands that users paste.
#include "cli/shell_word.h"

#include "test_class.h"

#include <QtTest>

class ShellWordTest : public QObject
{
    Q_OBJECT

private slots:
    void wordsOfCmd_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("word");
        QTest::newRow("plain") << "C:/saves/a b.sav"
                               << "\"C:/saves/a b.sav\"";
        QTest::newRow("operators") << "a&b|c^d(e).sav"
                                   << "\"a&b|c^d(e).sav\"";
        QTest::newRow("variable") << "%PATH%.sav"
                                  << R"(""^%"PATH"^%".sav")";
    }
    void wordsOfCmd()
    {
        QFETCH(QString, text);
        QTEST(cmdWord(text), "word");
    }

    void wordsOfPosix_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("word");
        QTest::newRow("plain") << "/saves/a b.sav"
                               << "'/saves/a b.sav'";
        QTest::newRow("quote") << "it's"
                               << "'it'\\''s'";
        QTest::newRow("command") << "$(touch PWN)`x`"
                                 << "'$(touch PWN)`x`'";
        QTest::newRow("control") << "a\nb'c\\"
                                 << "$'a\\x0Ab\\'c\\\\'";
    }
    void wordsOfPosix()
    {
        QFETCH(QString, text);
        QTEST(posixWord(text), "word");
    }
};

GBDRIVER_TEST(ShellWordTest, none)
#include "shell_word_test.moc"
