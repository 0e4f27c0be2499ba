// Names of the user's files on their way through the system's 8-bit calls: those that its code page
// holds, and those that it does not. The tests run with Western European, as on older Windows; the
// programs themselves speak UTF-8.
#include "job_bench.h"
#include "program_run.h"
#include "test_class.h"

#include <QtTest>

namespace
{

constexpr int kSize = 0x2000;
const QByteArray kNeighbour(kSize, 'n');

// What a name beyond the code page may turn into on its way: replaced, cut, or written with the
// most similar letters that there are.
const QStringList kNeighbours = {"__.sav", ".sav", "A.sav", "Gerat.sav"};

void addForeignNames()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("Japanese") << QString::fromUtf8(u8"日本.sav");
    QTest::newRow("Latin and Japanese") << QString::fromUtf8(u8"Gerät ゲーム.sav");
    QTest::newRow("beyond the first plane") << QString::fromUtf8(u8"🎮.sav");
    QTest::newRow("similar to another name") << QString::fromUtf8(u8"Ā.sav");
    QTest::newRow("composed of two characters") << QString::fromUtf8(u8"Gera\u0308t.sav");
}

// A user's folder in which a wrong name would find a file.
class NeighbourBench : public JobBench
{
public:
    NeighbourBench()
    {
        setScript(kMovingScript);
        job.ram_size = kSize;
        for (const QString &name : kNeighbours)
            addFile(name, kNeighbour);
    }

    // Neighbours that are not as they were.
    QStringList changedNeighbours() const
    {
        QStringList changed;
        for (const QString &name : kNeighbours) {
            if (fileBytes(name) != kNeighbour)
                changed.append(name);
        }
        return changed;
    }
};

} // namespace

class CodePageTest : public QObject
{
    Q_OBJECT

private slots:
    void foreignNameIsNotSaved_data() { addForeignNames(); }
    void foreignNameIsNotSaved();
    void foreignNameDoesNotOpen_data() { addForeignNames(); }
    void foreignNameDoesNotOpen();
    void foreignScriptIsMissing_data() { addForeignNames(); }
    void foreignScriptIsMissing();
    void commandLineRefusesAForeignName();
    void otherNamesWork_data();
    void otherNamesWork();
    void everyNameWorksInUtf8_data() { addForeignNames(); }
    void everyNameWorksInUtf8();
    void titlesKeepTheirAccentsInUtf8();
};

void CodePageTest::foreignNameIsNotSaved()
{
    QFETCH(QString, name);
    NeighbourBench bench;
    const QStringList names = bench.fileNames();
    bench.job.file_name = bench.path(name);
    QVERIFY(!bench.run(GB_READ_RAM));
    QCOMPARE(bench.logs().last(), QString("Save file error."));
    QCOMPARE(bench.fileNames(), names);
    QCOMPARE(bench.changedNeighbours(), QStringList());
}

void CodePageTest::foreignNameDoesNotOpen()
{
    QFETCH(QString, name);
    NeighbourBench bench;
    bench.job.file_name = bench.addFile(name, QByteArray(kSize, 's'));
    QVERIFY(!bench.run(GB_WRITE_RAM));
    QCOMPARE(bench.logs(), QStringList({"Read file :" + bench.job.file_name, "Open File error."}));
    QCOMPARE(bench.cartridge().written, QByteArray());
}

void CodePageTest::foreignScriptIsMissing()
{
    QFETCH(QString, name);
    NeighbourBench bench;
    bench.job.file_name = bench.path("dump.sav");
    const QByteArray script = "function save_dump(dev, size, max) {}";
    for (const QString &neighbour : kNeighbours)
        bench.addFile(neighbour, script);
    bench.job.script_name = bench.addFile(name, script);
    QVERIFY(!bench.run(GB_READ_RAM));
    QCOMPARE(bench.logs(), QStringList{"dump core script error\n"});
}

void CodePageTest::commandLineRefusesAForeignName()
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(QString::fromUtf8(u8"Jeu d'été 日本.sav"));
    const ProgramResult result = runProgram(
        CODE_PAGE_CLI_PROGRAM,
        QStringList{"read-ram", name, "--system", "gb", "--mapper", "mbc5", "--ram-size", "32K"},
        {"demo", ""});
    QCOMPARE(codeOf(result), ExitCode::FileError);
    QVERIFY2(result.err.contains("the system cannot hold this name in its 8-bit encoding"),
             qPrintable(result.err));
    QCOMPARE(QDir(folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
}

void CodePageTest::otherNamesWork_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("blanks") << "my  first save.sav";
    QTest::newRow("per cent") << "100%1 %s.sav";
    QTest::newRow("several dots") << "a.b.c.sav";
    QTest::newRow("Latin") << QString::fromUtf8(u8"für das Gerät.sav");
    QTest::newRow("of the code page, not of Latin-1") << QString::fromUtf8(u8"5 € – Œuvre.sav");
}

void CodePageTest::otherNamesWork()
{
    QFETCH(QString, name);
    NeighbourBench bench;
    bench.job.file_name = bench.path(name);
    QVERIFY(bench.run(GB_READ_RAM));
    const QByteArray bytes = TestCartridge::gbBytes(0xA000, kSize);
    QVERIFY(bench.fileNames().contains(name));
    QCOMPARE(bench.fileBytes(name), bytes);
    QCOMPARE(bench.changedNeighbours(), QStringList());
    QVERIFY(bench.run(GB_WRITE_RAM));
    QCOMPARE(bench.cartridge().written, bytes);
    bench.cartridge().looksUntilErased = 0;
    QVERIFY(bench.run(GB_WRITE_FLASH));
    QCOMPARE(bench.job.rom_size, kSize);
}

void CodePageTest::everyNameWorksInUtf8()
{
    QFETCH(QString, name);
    const QTemporaryDir folder;
    const QDir names(folder.filePath(QString::fromUtf8(u8"Jeux de 花子")));
    QVERIFY(names.mkpath("."));
    for (const QString command : {"read-ram", "write-ram"}) {
        const ProgramResult result =
            runProgram(CLI_PROGRAM,
                       QStringList{command, names.filePath(name), "--system", "gb", "--mapper",
                                   "mbc5", "--ram-size", "32K"} +
                           (command == "read-ram" ? QStringList() : QStringList{"--no-backup"}),
                       {"demo", ""});
        QVERIFY2(codeOf(result) == ExitCode::Done, qPrintable(result.err));
    }
    QCOMPARE(names.entryList(QDir::Files), QStringList{name});
}

// What the program prints is read in the code page of this test, and put back from it.
void CodePageTest::titlesKeepTheirAccentsInUtf8()
{
    const QTemporaryDir folder;
    const QString cart = folder.filePath("cart.gba");
    putFile(cart, gbaImage("BPRE", 1024 * 1024));
    const ProgramResult result = runProgram(CLI_PROGRAM, "info", {"cart=" + cart, ""});
    QVERIFY2(result.out.toLocal8Bit().contains(u8"Pokémon - FireRed Version (USA)"),
             qPrintable(result.out + result.err));
}

GBDRIVER_TEST(CodePageTest, core)
#include "code_page_test.moc"
