// The build step that makes the game table: what it refuses, and what becomes of the values that it
// takes.
#include "table_script.h"
#include "test_class.h"

#include <QDir>
#include <QFile>
#include <QtTest>

namespace
{

const QByteArray kHeader = "title\tyear\tpublisher\tcodes\trom_size\tsave_key\n";
const QByteArray kRow = "Some Game (Euro)\t2001\tSomeone\tAGB-ABCP-EUR\t4194304\tgba_sram\n";

Outcome makeGameTable(const QTemporaryDir &folder, const QByteArray &table)
{
    return makeTable(folder, GAME_TABLE_SCRIPT, table);
}

// A row whose value in `column` is `value`.
QByteArray rowWith(int column, const QByteArray &value)
{
    QList<QByteArray> values = kRow.trimmed().split('\t');
    values[column] = value;
    return values.join('\t') + '\n';
}

// The record as the program declares it, for a table of `count` games.
bool writeDeclaration(const QTemporaryDir &folder, int count)
{
    QFile original(SOURCE_FOLDER "/src/cart/game_database.h");
    if (!original.open(QIODevice::ReadOnly) || !QDir(folder.path()).mkdir("cart"))
        return false;
    const QByteArray changed = original.readAll().replace(
        "kGameCount = 2499", "kGameCount = " + QByteArray::number(count));
    return writeText(folder.filePath("cart/game_database.h"), changed);
}

Outcome printTable(const QTemporaryDir &folder)
{
    return runWithTable(
        folder,
        "#include \"cart/game_database.h\"\n"
        "#include <cstdio>\n"
        "int main()\n"
        "{\n"
        "    for (const GbaGameRecord &game : gameDatabase)\n"
        "        std::printf(\"%s\\t%s\\t%s\\t%s\\t%s\\t%s\\n\", game.title, game.year,\n"
        "                    game.publisher, game.codes, game.romSize, game.saveKey);\n"
        "}\n",
        {});
}

} // namespace

class GameTableScriptTest : public QObject
{
    Q_OBJECT

private slots:
    void valuesThatFillTheirFieldsAreTaken_data();
    void valuesThatFillTheirFieldsAreTaken();
    void wrongValuesStopTheBuild_data();
    void wrongValuesStopTheBuild();
    void wrongFilesStopTheBuild_data();
    void wrongFilesStopTheBuild();
    void valuesArriveByteForByte();
    void lineEndsOfAnotherSystemChangeNothing();
    void programDoesNotCompileWithAnotherNumberOfRows();
};

void GameTableScriptTest::valuesThatFillTheirFieldsAreTaken_data()
{
    QTest::addColumn<QByteArray>("row");
    QTest::newRow("title") << rowWith(0, QByteArray(139, 'x'));
    QTest::newRow("year") << rowWith(1, QByteArray(9, '2'));
    QTest::newRow("publisher") << rowWith(2, QByteArray(29, 'x'));
    QTest::newRow("codes") << rowWith(3, QByteArray(39, 'X'));
    QTest::newRow("ROM size") << rowWith(4, QByteArray(9, '9'));
    QTest::newRow("save key") << rowWith(5, QByteArray(19, 'x'));
    QTest::newRow("no save key") << rowWith(5, "");
}

void GameTableScriptTest::valuesThatFillTheirFieldsAreTaken()
{
    QFETCH(QByteArray, row);
    QTemporaryDir folder;
    const Outcome made = makeGameTable(folder, kHeader + row);
    QVERIFY2(made.exitCode == 0, made.errors);
    QVERIFY(writeDeclaration(folder, 1));
    const Outcome printed = printTable(folder);
    QVERIFY2(printed.exitCode == 0, printed.errors);
    QCOMPARE(printed.output, row);
}

void GameTableScriptTest::wrongValuesStopTheBuild_data()
{
    QTest::addColumn<QByteArray>("row");
    QTest::addColumn<QByteArray>("problem");
    const auto add = [](const char *name, const QByteArray &row, const char *problem) {
        QTest::newRow(name) << row << QByteArray(problem);
    };
    add("title too long", rowWith(0, QByteArray(140, 'x')), "title has 140 bytes");
    add("two bytes a letter", rowWith(0, QByteArray("\xC3\xA9").repeated(70)),
        "title has 140 bytes");
    add("year too long", rowWith(1, QByteArray(10, '2')), "year has 10 bytes");
    add("publisher too long", rowWith(2, QByteArray(30, 'x')), "publisher has 30 bytes");
    add("codes too long", rowWith(3, QByteArray(40, 'X')), "codes has 40 bytes");
    add("ROM size too long", rowWith(4, QByteArray(10, '9')), "rom_size has 10 bytes");
    add("save key too long", rowWith(5, QByteArray(20, 'x')), "save_key has 20 bytes");
    add("no title", rowWith(0, ""), "title is empty");
    add("no codes", rowWith(3, ""), "codes is empty");
    add("no ROM size", rowWith(4, ""), "rom_size is empty");
    add("ROM size with unit", rowWith(4, "4M"), "rom_size is not a number of bytes");
    add("ROM size of zero", rowWith(4, "0"), "rom_size is not a number of bytes");
    add("control character", rowWith(2, "Some\x01one"), "holds a control character");
    add("carriage return", rowWith(2, "Some\rone"), "holds a control character");
    add("five values", "a\t2001\tb\tAGB-ABCP\t4194304\n", "not 6 values");
    add("seven values", rowWith(5, "gba_sram\t"), "not 6 values");
    add("empty line", "\n", "not 6 values");
}

void GameTableScriptTest::wrongValuesStopTheBuild()
{
    QFETCH(QByteArray, row);
    QFETCH(QByteArray, problem);
    QTemporaryDir folder;
    const Outcome outcome = makeGameTable(folder, kHeader + kRow + kRow + row + kRow);
    QCOMPARE(outcome.exitCode, 1);
    const QByteArray errors = outcome.errors.simplified();
    QVERIFY2(errors.contains("row 2 (line 4): " + problem), errors);
    QVERIFY(!QFile::exists(folder.filePath("table.cpp")));
}

void GameTableScriptTest::wrongFilesStopTheBuild_data()
{
    QTest::addColumn<QByteArray>("table");
    QTest::addColumn<QByteArray>("problem");
    QTest::newRow("no header line") << kRow << QByteArray("does not name the columns");
    QTest::newRow("columns swapped") << QByteArray("year\ttitle\tpublisher\tcodes\trom_size\t"
                                                   "save_key\n") +
                                            kRow
                                     << QByteArray("does not name the columns");
    QTest::newRow("cut off") << kHeader + kRow + "Some Game"
                             << QByteArray("does not end in a line feed");
    QTest::newRow("empty") << QByteArray() << QByteArray("does not end in a line feed");
}

void GameTableScriptTest::wrongFilesStopTheBuild()
{
    QFETCH(QByteArray, table);
    QFETCH(QByteArray, problem);
    QTemporaryDir folder;
    const Outcome outcome = makeGameTable(folder, table);
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY2(outcome.errors.simplified().contains(problem), outcome.errors);
    QVERIFY(!QFile::exists(folder.filePath("table.cpp")));
}

// Characters that mean something to CMake or to C++.
void GameTableScriptTest::valuesArriveByteForByte()
{
    const QByteArray rows = rowWith(0, "a \"quoted\" title") + rowWith(0, "back\\slash \\n \\") +
                            rowWith(0, "what?"
                                       "?/ why?"
                                       "?' (") +
                            rowWith(0, "a;b;;c") + rowWith(0, "[one] [[two]") +
                            rowWith(0, "]]open[") + rowWith(0, "${columns} $ENV{HOME} @row@ %s") +
                            rowWith(0, "Pok\xC3\xA9mon \xE3\x83\xBB") + rowWith(3, "AGB-BABJ ") +
                            rowWith(1, "19?"
                                       "?") +
                            rowWith(5, "");
    QTemporaryDir folder;
    const Outcome made = makeGameTable(folder, kHeader + rows);
    QVERIFY2(made.exitCode == 0, made.errors);
    QVERIFY(writeDeclaration(folder, rows.count('\n')));
    const Outcome printed = printTable(folder);
    QVERIFY2(printed.exitCode == 0, printed.errors);
    QCOMPARE(printed.output, rows);
}

void GameTableScriptTest::lineEndsOfAnotherSystemChangeNothing()
{
    QTemporaryDir folder;
    QByteArray table = kHeader + kRow + kRow;
    const Outcome made = makeGameTable(folder, table.replace("\n", "\r\n"));
    QVERIFY2(made.exitCode == 0, made.errors);
    QVERIFY(writeDeclaration(folder, 2));
    QCOMPARE(printTable(folder).output, kRow + kRow);
}

void GameTableScriptTest::programDoesNotCompileWithAnotherNumberOfRows()
{
    QTemporaryDir folder;
    QCOMPARE(makeGameTable(folder, kHeader + kRow).exitCode, 0);
    QVERIFY(writeDeclaration(folder, 2));
    const Outcome outcome =
        compile({"-I" + folder.path(), "-fsyntax-only", folder.filePath("table.cpp")});
    QVERIFY(outcome.exitCode > 0);
    QVERIFY2(outcome.errors.contains("the number of rows of the game table differ"),
             outcome.errors);
}

GBDRIVER_TEST(GameTableScriptTest, core)
#include "game_table_script_test.moc"
