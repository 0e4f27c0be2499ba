// The build steps that make the game table and the table of known dumps: what they refuse, and what
// becomes of the values that they take.
#include "files.h"
#include "process_run.h"
#include "test_class.h"

#include <QCryptographicHash>
#include <QDir>
#include <QtTest>

#include <algorithm>

namespace
{

// A kind of table: its build step, its columns, and a program that prints it row by row.
struct TableKind {
    const char *name;
    const char *script;
    QByteArray header;
    QByteArray printer;
    QStringList sources; // of the program
};

const TableKind kGames = {"games",
                          GAME_TABLE_SCRIPT,
                          "title\tyear\tpublisher\tcodes\trom_size\tsave_key\n",
                          R"(#include "cart/game_database.h"
#include <cstdio>
int main()
{
    for (const GbaGameRecord &game : gameDatabase)
        std::printf("%s\t%s\t%s\t%s\t%s\t%s\n", game.title, game.year,
                    game.publisher, game.codes, game.romSize, game.saveKey);
}
)",
                          {}};

// Looks up every image of the table; the other title stands behind the row.
const TableKind kDumps = {"dumps",
                          KNOWN_DUMPS_SCRIPT,
                          "system\ttitle\tsize\tcrc32\tsha1\n",
                          R"(#include "cart/known_dump_table.h"
#include "cart/known_dumps.h"
#include <algorithm>
#include <cstdio>
int main()
{
    for (std::size_t row = 0; row < knownDumpCount; ++row) {
        const KnownDumpRecord &record = knownDumpRecords[row];
        Sha1Digest digest;
        std::copy_n(record.sha1, 20, digest.begin());
        const auto dump = findKnownDump(record.size, digest);
        if (!dump)
            return 1;
        std::printf("%s\t%s\t%u\t%08x\t", dump->system, dump->title, dump->size,
                    dump->crc32);
        for (const std::uint8_t byte : digest)
            std::printf("%02x", byte);
        std::printf("%s\n", dump->otherTitle ? dump->otherTitle : "");
    }
}
)",
                          {SOURCE_FOLDER "/src/cart/known_dumps.cpp"}};

const TableKind &kindOf(const QByteArray &name)
{
    return name == kGames.name ? kGames : kDumps;
}

// Titles with characters that mean something to CMake or to C++.
const QList<QByteArray> kTitles = {"a \"quoted\" title",
                                   "back\\slash \\n \\",
                                   "what?"
                                   "?/ why?"
                                   "?' (",
                                   "a;b;;c",
                                   "[one] [[two]",
                                   "]]open[",
                                   "${columns} $ENV{HOME} @row@ %s",
                                   "Pok\xC3\xA9mon \xE3\x83\xBB"};

QByteArray replaced(const QByteArray &row, int column, const QByteArray &value)
{
    QList<QByteArray> values = row.trimmed().split('\t');
    values[column] = value;
    return values.join('\t') + '\n';
}

const QByteArray kGame = "Some Game (Euro)\t2001\tSomeone\tAGB-ABCP-EUR\t4194304\tgba_sram\n";

QByteArray gameWith(int column, const QByteArray &value)
{
    return replaced(kGame, column, value);
}

// Each value as long as its field takes it, in a row of its own.
const QByteArray kLongestGames =
    gameWith(0, QByteArray(139, 'x')) + gameWith(1, QByteArray(9, '2')) +
    gameWith(2, QByteArray(29, 'x')) + gameWith(3, QByteArray(39, 'X')) +
    gameWith(4, QByteArray(9, '9')) + gameWith(5, QByteArray(19, 'x'));

QByteArray sha1Of(const QByteArray &seed)
{
    return QCryptographicHash::hash(seed, QCryptographicHash::Sha1).toHex();
}

QByteArray makeDump(const QByteArray &title)
{
    return "GBA\t" + title + "\t4194304\t0123abcd\t" + sha1Of(title) + '\n';
}

const QByteArray kDump = makeDump("Some Game (Europe)");

QByteArray dumpWith(int column, const QByteArray &value)
{
    return replaced(kDump, column, value);
}

// The program finds dumps by their digests, and so does the table.
QByteArray sortedBySha1(const QByteArray &rows)
{
    QList<QByteArray> lines = rows.trimmed().split('\n');
    std::stable_sort(lines.begin(), lines.end(), [](const QByteArray &a, const QByteArray &b) {
        return a.split('\t')[4] < b.split('\t')[4];
    });
    return lines.join('\n') + '\n';
}

ProcessRun makeTable(const UserFolder &folder, const TableKind &kind, const QByteArray &table)
{
    return runProcess(CMAKE_PROGRAM, {"-DINPUT=" + folder.addFile("table.tsv", table),
                                      "-DOUTPUT=" + folder.path("table.cpp"), "-P", kind.script});
}

// The record of a game as the program declares it, for a table of `count` games. `folder` comes
// before the project's own headers.
void writeDeclaration(const UserFolder &folder, int count)
{
    QDir(folder.path()).mkdir("cart");
    folder.addFile("cart/game_database.h",
                   contentOf(SOURCE_FOLDER "/src/cart/game_database.h")
                       .replace("kGameCount = 2499", "kGameCount = " + QByteArray::number(count)));
}

// Runs the compiler with the warnings that the project has.
ProcessRun compile(const QStringList &arguments)
{
    return runProcess(CXX_COMPILER, QStringList{"-std=c++17", "-Wall", "-Wextra", "-Wpedantic",
                                                "-Wconversion", "-Werror"} +
                                        arguments);
}

ProcessRun printTable(const UserFolder &folder, const TableKind &kind)
{
    const QString program = folder.path("print");
    const QString source = folder.addFile("print.cpp", kind.printer);
    const ProcessRun compiled =
        compile(QStringList{"-I" + folder.path(), "-I" SOURCE_FOLDER "/src",
                            folder.path("table.cpp"), source, "-o", program} +
                kind.sources);
    return compiled.exitCode == 0 ? runProcess(program, {}) : compiled;
}

} // namespace

class TableScriptTest : public QObject
{
    Q_OBJECT

private slots:
    void valuesArriveByteForByte_data();
    void valuesArriveByteForByte();
    void wrongTablesStopTheBuild_data();
    void wrongTablesStopTheBuild();
    void programDoesNotCompileWithAnotherNumberOfRows();
};

void TableScriptTest::valuesArriveByteForByte_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QByteArray>("printed");
    QTest::newRow("game: longest values") << QByteArray("games") << kLongestGames << kLongestGames;
    QByteArray games = gameWith(3, "AGB-BABJ ") +
                       gameWith(1, "19?"
                                   "?") +
                       gameWith(5, "");
    for (const QByteArray &title : kTitles)
        games += gameWith(0, title);
    QTest::newRow("game: characters") << QByteArray("games") << games << games;
    QTest::newRow("game: line ends of another system")
        << QByteArray("games") << QByteArray(kGame + kGame).replace("\n", "\r\n") << kGame + kGame;

    const auto dump = [](const char *name, const QByteArray &rows, const QByteArray &printed) {
        QTest::addRow("dump: %s", name) << QByteArray("dumps") << rows << printed;
    };
    QByteArray dumps;
    for (const QByteArray &title : kTitles + QList<QByteArray>{"1942", "7", " ", "ON"})
        dumps += makeDump(title);
    dump("characters", dumps, sortedBySha1(dumps));
    const QByteArray largest = "GB\tfirst\t1\t00000000\t" + QByteArray(40, '0') +
                               "\nGBC\tmiddle\t32768\t00000001\t" + sha1Of("middle") +
                               "\nGBA\tlast\t999999999\tffffffff\t" + QByteArray(40, 'f') + '\n';
    dump("systems and largest values", largest, largest);
    // Both rows of one image lead to the first of them.
    const QByteArray end = "\t4194304\t0123abcd\t" + QByteArray(40, 'f');
    dump("image with two titles", "GBA\tZ" + end + '\n' + kDump + "GBA\tA" + end + '\n',
         kDump + ("GBA\tZ" + end + "A\n") + ("GBA\tZ" + end + "A\n"));
}

void TableScriptTest::valuesArriveByteForByte()
{
    QFETCH(QByteArray, kind);
    QFETCH(QByteArray, rows);
    const UserFolder folder;
    const ProcessRun made = makeTable(folder, kindOf(kind), kindOf(kind).header + rows);
    QVERIFY2(made.exitCode == 0, made.errors);
    if (kind == kGames.name)
        writeDeclaration(folder, rows.count('\n'));
    const ProcessRun printed = printTable(folder, kindOf(kind));
    QVERIFY2(printed.exitCode == 0, printed.errors);
    QTEST(printed.output, "printed");
}

void TableScriptTest::wrongTablesStopTheBuild_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<QByteArray>("table");
    QTest::addColumn<QByteArray>("problem");
    const auto file = [](const TableKind &kind, const char *name, const QByteArray &table,
                         const char *problem) {
        QTest::addRow("%s: %s", kind.name, name)
            << QByteArray(kind.name) << table << QByteArray(problem);
    };
    const auto row = [&](const TableKind &kind, const QByteArray &before, const char *name,
                         const QByteArray &wrong, const char *problem, const QByteArray &behind) {
        file(kind, name, kind.header + before + wrong + behind,
             QByteArray("row 2 (line 4): ") + problem);
    };
    const auto game = [&](const char *name, const QByteArray &values, const char *problem) {
        row(kGames, kGame + kGame, name, values, problem, kGame);
    };
    game("title too long", gameWith(0, QByteArray(140, 'x')), "title has 140 bytes");
    game("two bytes a letter", gameWith(0, QByteArray("\xC3\xA9").repeated(70)),
         "title has 140 bytes");
    game("year too long", gameWith(1, QByteArray(10, '2')), "year has 10 bytes");
    game("publisher too long", gameWith(2, QByteArray(30, 'x')), "publisher has 30 bytes");
    game("codes too long", gameWith(3, QByteArray(40, 'X')), "codes has 40 bytes");
    game("ROM size too long", gameWith(4, QByteArray(10, '9')), "rom_size has 10 bytes");
    game("save key too long", gameWith(5, QByteArray(20, 'x')), "save_key has 20 bytes");
    game("no title", gameWith(0, ""), "title is empty");
    game("no codes", gameWith(3, ""), "codes is empty");
    game("no ROM size", gameWith(4, ""), "rom_size is empty");
    game("ROM size with unit", gameWith(4, "4M"), "rom_size is not a number of bytes");
    game("ROM size of zero", gameWith(4, "0"), "rom_size is not a number of bytes");
    game("control character", gameWith(2, "Some\x01one"), "holds a control character");
    game("carriage return", gameWith(2, "Some\rone"), "holds a control character");
    game("five values", "a\t2001\tb\tAGB-ABCP\t4194304\n", "not 6 values");
    game("seven values", gameWith(5, "gba_sram\t"), "not 6 values");
    game("empty line", "\n", "not 6 values");

    const auto dump = [&](const char *name, const QByteArray &values, const char *problem) {
        row(kDumps, kDump + dumpWith(1, "Second"), name, values, problem, makeDump("Behind"));
    };
    dump("unknown system", dumpWith(0, "NES"), "not a system: NES");
    dump("no system", dumpWith(0, ""), "not a system:");
    dump("no title", dumpWith(1, ""), "not a title:");
    dump("control character", dumpWith(1, "Some\x01Game"), "holds a control character");
    dump("size of zero", dumpWith(2, "0"), "not a size: 0");
    dump("size with unit", dumpWith(2, "4M"), "not a size: 4M");
    dump("size of ten digits", dumpWith(2, "1000000000"), "not a size: 1000000000");
    dump("CRC-32 in capitals", dumpWith(3, "0123ABCD"), "not a crc32: 0123ABCD");
    dump("CRC-32 too short", dumpWith(3, "0123abc"), "not a crc32: 0123abc");
    dump("SHA-1 too short", dumpWith(4, QByteArray(39, 'a')), "not a sha1: aaa");
    dump("SHA-1 too long", dumpWith(4, QByteArray(41, 'a')), "not a sha1: aaa");
    dump("SHA-1 not hexadecimal", dumpWith(4, QByteArray(40, 'g')), "not a sha1: ggg");
    dump("four values", "GBA\ta\t4194304\t0123abcd\n", "not 5 values");
    dump("six values", dumpWith(4, sha1Of("a") + '\t'), "not 5 values");
    dump("empty line", "\n", "not 5 values");
    dump("same image, other size", dumpWith(2, "8388608"), "has the SHA-1 of another row");
    dump("same image, other system", dumpWith(0, "GB"), "has the SHA-1 of another row");
    dump("third title", kDump, "is the third title of the image");

    file(kGames, "no header line", kGame, "does not name the columns");
    file(kGames, "columns swapped", "year\ttitle\tpublisher\tcodes\trom_size\tsave_key\n" + kGame,
         "does not name the columns");
    file(kGames, "cut off", kGames.header + kGame + "Some Game", "does not end in a line feed");
    file(kGames, "empty", {}, "does not end in a line feed");
    file(kDumps, "no header line", kDump, "does not name the columns");
    file(kDumps, "cut off", kDumps.header + kDump + "GBA", "does not end in a line feed");
    file(kDumps, "no row", kDumps.header, "holds no row");
}

void TableScriptTest::wrongTablesStopTheBuild()
{
    QFETCH(QByteArray, kind);
    QFETCH(QByteArray, table);
    QFETCH(QByteArray, problem);
    const UserFolder folder;
    const ProcessRun run = makeTable(folder, kindOf(kind), table);
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.errors.simplified().contains(problem), run.errors);
    QVERIFY(!folder.fileNames().contains("table.cpp"));
}

void TableScriptTest::programDoesNotCompileWithAnotherNumberOfRows()
{
    const UserFolder folder;
    QCOMPARE(makeTable(folder, kGames, kGames.header + kGame).exitCode, 0);
    writeDeclaration(folder, 2);
    const ProcessRun run =
        compile({"-I" + folder.path(), "-fsyntax-only", folder.path("table.cpp")});
    QVERIFY(run.exitCode > 0);
    QVERIFY2(run.errors.contains("the number of rows of the game table differ"), run.errors);
}

GBDRIVER_TEST(TableScriptTest, core)
#include "table_script_test.moc"
