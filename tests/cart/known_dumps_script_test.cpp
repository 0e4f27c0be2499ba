// The build step that makes the table of known dumps: what it refuses, and what the lookup finds in
// a table of our own.
#include "table_script.h"
#include "test_class.h"

#include <QCryptographicHash>
#include <QFile>
#include <QtTest>

namespace
{

const QByteArray kHeader = "system\ttitle\tsize\tcrc32\tsha1\n";

QByteArray sha1Of(const QByteArray &seed)
{
    return QCryptographicHash::hash(seed, QCryptographicHash::Sha1).toHex();
}

QByteArray makeRow(const QByteArray &title)
{
    return "GBA\t" + title + "\t4194304\t0123abcd\t" + sha1Of(title) + '\n';
}

// A row whose value in `column` is `value`.
QByteArray rowWith(int column, const QByteArray &value)
{
    QByteArray row = makeRow("Some Game (Europe)");
    row.chop(1);
    QList<QByteArray> values = row.split('\t');
    values[column] = value;
    return values.join('\t') + '\n';
}

const QByteArray kRow = rowWith(1, "Some Game (Europe)");

Outcome makeDumpTable(const QTemporaryDir &folder, const QByteArray &table)
{
    return makeTable(folder, KNOWN_DUMPS_SCRIPT, table);
}

// Runs a program that looks up every image of the table and prints its row, the other title behind
// it.
Outcome printTable(const QTemporaryDir &folder)
{
    return runWithTable(
        folder,
        "#include \"cart/known_dump_table.h\"\n"
        "#include \"cart/known_dumps.h\"\n"
        "#include <algorithm>\n"
        "#include <cstdio>\n"
        "int main()\n"
        "{\n"
        "    for (std::size_t row = 0; row < knownDumpCount; ++row) {\n"
        "        const KnownDumpRecord &record = knownDumpRecords[row];\n"
        "        Sha1Digest digest;\n"
        "        std::copy_n(record.sha1, 20, digest.begin());\n"
        "        const auto dump = findKnownDump(record.size, digest);\n"
        "        if (!dump)\n"
        "            return 1;\n"
        "        std::printf(\"%s\\t%s\\t%u\\t%08x\\t\", dump->system, dump->title, dump->size,\n"
        "                    dump->crc32);\n"
        "        for (const std::uint8_t byte : digest)\n"
        "            std::printf(\"%02x\", byte);\n"
        "        std::printf(\"%s\\n\", dump->otherTitle ? dump->otherTitle : \"\");\n"
        "    }\n"
        "}\n",
        {SOURCE_FOLDER "/src/cart/known_dumps.cpp"});
}

QByteArray sortedBySha1(const QByteArray &rows)
{
    QList<QByteArray> lines = rows.trimmed().split('\n');
    std::stable_sort(lines.begin(), lines.end(), [](const QByteArray &a, const QByteArray &b) {
        return a.split('\t')[4] < b.split('\t')[4];
    });
    return lines.join('\n') + '\n';
}

} // namespace

class KnownDumpsScriptTest : public QObject
{
    Q_OBJECT

private slots:
    void rowsArriveByteForByte();
    void systemsAndLargestValuesArrive();
    void imageWithTwoTitlesIsOneImage();
    void wrongValuesStopTheBuild_data();
    void wrongValuesStopTheBuild();
    void wrongFilesStopTheBuild_data();
    void wrongFilesStopTheBuild();
};

// Characters that mean something to CMake or to C++, and digits behind the end of a title.
void KnownDumpsScriptTest::rowsArriveByteForByte()
{
    const QByteArray rows =
        makeRow("a \"quoted\" title") + makeRow("back\\slash \\n \\") + makeRow("1942") +
        makeRow("what?"
                "?/ why?"
                "?' (") +
        makeRow("a;b;;c") + makeRow("[one] [[two]") + makeRow("]]open[") +
        makeRow("${columns} $ENV{HOME} @row@ %s") + makeRow("Pok\xC3\xA9mon \xE3\x83\xBB") +
        makeRow("7") + makeRow(" ") + makeRow("ON");
    QTemporaryDir folder;
    const Outcome made = makeDumpTable(folder, kHeader + rows);
    QVERIFY2(made.exitCode == 0, made.errors);
    const Outcome printed = printTable(folder);
    QVERIFY2(printed.exitCode == 0, printed.errors);
    QCOMPARE(printed.output, sortedBySha1(rows));
}

void KnownDumpsScriptTest::systemsAndLargestValuesArrive()
{
    const QByteArray zeros(40, '0');
    const QByteArray ones(40, 'f');
    const QByteArray rows = "GB\tfirst\t1\t00000000\t" + zeros +
                            "\nGBC\tmiddle\t32768\t00000001\t" + sha1Of("middle") +
                            "\nGBA\tlast\t999999999\tffffffff\t" + ones + '\n';
    QTemporaryDir folder;
    const Outcome made = makeDumpTable(folder, kHeader + rows);
    QVERIFY2(made.exitCode == 0, made.errors);
    const Outcome printed = printTable(folder);
    QVERIFY2(printed.exitCode == 0, printed.errors);
    QCOMPARE(printed.output, rows);
}

void KnownDumpsScriptTest::imageWithTwoTitlesIsOneImage()
{
    const QByteArray end = "\t4194304\t0123abcd\t" + QByteArray(40, 'f');
    QTemporaryDir folder;
    const Outcome made =
        makeDumpTable(folder, kHeader + "GBA\tZ" + end + '\n' + kRow + "GBA\tA" + end + '\n');
    QVERIFY2(made.exitCode == 0, made.errors);
    const Outcome printed = printTable(folder);
    QVERIFY2(printed.exitCode == 0, printed.errors);
    // Both rows lead to the first of them.
    QCOMPARE(printed.output, kRow + ("GBA\tZ" + end + "A\n") + ("GBA\tZ" + end + "A\n"));
}

void KnownDumpsScriptTest::wrongValuesStopTheBuild_data()
{
    QTest::addColumn<QByteArray>("row");
    QTest::addColumn<QByteArray>("problem");
    const auto add = [](const char *name, const QByteArray &row, const char *problem) {
        QTest::newRow(name) << row << QByteArray(problem);
    };
    add("unknown system", rowWith(0, "NES"), "not a system: NES");
    add("no system", rowWith(0, ""), "not a system:");
    add("no title", rowWith(1, ""), "not a title:");
    add("control character", rowWith(1, "Some\x01Game"), "holds a control character");
    add("size of zero", rowWith(2, "0"), "not a size: 0");
    add("size with unit", rowWith(2, "4M"), "not a size: 4M");
    add("size of ten digits", rowWith(2, "1000000000"), "not a size: 1000000000");
    add("CRC-32 in capitals", rowWith(3, "0123ABCD"), "not a crc32: 0123ABCD");
    add("CRC-32 too short", rowWith(3, "0123abc"), "not a crc32: 0123abc");
    add("SHA-1 too short", rowWith(4, QByteArray(39, 'a')), "not a sha1: aaa");
    add("SHA-1 too long", rowWith(4, QByteArray(41, 'a')), "not a sha1: aaa");
    add("SHA-1 not hexadecimal", rowWith(4, QByteArray(40, 'g')), "not a sha1: ggg");
    add("four values", "GBA\ta\t4194304\t0123abcd\n", "not 5 values");
    add("six values", rowWith(4, sha1Of("a") + '\t'), "not 5 values");
    add("empty line", "\n", "not 5 values");
    add("same image, other size", rowWith(2, "8388608"), "has the SHA-1 of another row");
    add("same image, other system", rowWith(0, "GB"), "has the SHA-1 of another row");
    add("third title", kRow, "is the third title of the image");
}

void KnownDumpsScriptTest::wrongValuesStopTheBuild()
{
    QFETCH(QByteArray, row);
    QFETCH(QByteArray, problem);
    QTemporaryDir folder;
    const Outcome outcome =
        makeDumpTable(folder, kHeader + kRow + rowWith(1, "Second") + row + makeRow("Behind"));
    QCOMPARE(outcome.exitCode, 1);
    const QByteArray errors = outcome.errors.simplified();
    QVERIFY2(errors.contains("row 2 (line 4): " + problem), errors);
    QVERIFY(!QFile::exists(folder.filePath("table.cpp")));
}

void KnownDumpsScriptTest::wrongFilesStopTheBuild_data()
{
    QTest::addColumn<QByteArray>("table");
    QTest::addColumn<QByteArray>("problem");
    QTest::newRow("no header line") << kRow << QByteArray("does not name the columns");
    QTest::newRow("cut off") << kHeader + kRow + "GBA" << QByteArray("does not end in a line feed");
    QTest::newRow("no row") << kHeader << QByteArray("holds no row");
}

void KnownDumpsScriptTest::wrongFilesStopTheBuild()
{
    QFETCH(QByteArray, table);
    QFETCH(QByteArray, problem);
    QTemporaryDir folder;
    const Outcome outcome = makeDumpTable(folder, table);
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY2(outcome.errors.simplified().contains(problem), outcome.errors);
    QVERIFY(!QFile::exists(folder.filePath("table.cpp")));
}

GBDRIVER_TEST(KnownDumpsScriptTest, core)
#include "known_dumps_script_test.moc"
