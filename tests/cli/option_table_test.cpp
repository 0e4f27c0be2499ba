// What is taken for a slip of the fingers, and what is not.
#include "cli/option_table.h"

#include "cli/command_table.h"
#include "test_class.h"

#include <QtTest>

class OptionTableTest : public QObject
{
    Q_OBJECT

private slots:
    void nearWords_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("nearest");
        QTest::newRow("the word") << "dump"
                                  << "dump";
        QTest::newRow("capitals") << "DUMP"
                                  << "dump";
        QTest::newRow("letter left out") << "dmp"
                                         << "dump";
        QTest::newRow("letter added") << "dummp"
                                      << "dump";
        QTest::newRow("letter exchanged") << "dunp"
                                          << "dump";
        QTest::newRow("letters swapped") << "dupm"
                                         << "dump";
        QTest::newRow("two slips in a long word") << "ovrewirte"
                                                  << "overwrite";
        QTest::newRow("beginning") << "over"
                                   << "overwrite";
        QTest::newRow("the closer of two") << "rom-sise"
                                           << "rom-size";
        QTest::newRow("two slips in a short word") << "dxxp"
                                                   << "";
        QTest::newRow("too short a beginning") << "ov"
                                               << "";
        QTest::newRow("another word") << "erase"
                                      << "";
        QTest::newRow("nothing") << ""
                                 << "";
    }
    void nearWords()
    {
        QFETCH(QString, typed);
        QTEST(nearWord(typed, {"dump", "ram-size", "rom-size", "overwrite"}), "nearest");
    }

    void noWordsNoSuggestion() { QCOMPARE(nearWord("dump", {}), QString()); }

    void commandsAreFoundByTheirWholeName()
    {
        for (const char *name : {"dump", "read-ram", "write-ram"})
            QVERIFY2(findCommand(name) != nullptr, name);
        for (const char *name : {"", "Dump", "dum", "dumps"})
            QVERIFY2(findCommand(name) == nullptr, name);
    }
};

GBDRIVER_TEST(OptionTableTest, core)
#include "option_table_test.moc"
