// Jobs of the built program that look at the cartridge first: what they use, what they ask for, and
// what wins over the header.
#include "program_run.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace
{

constexpr std::uint32_t kRomSize = 512 * 1024;
constexpr std::uint32_t kRamSize = 32 * 1024;
constexpr std::uint8_t kRomOnly = 0x00;
constexpr std::uint8_t kMbc1RamBattery = 0x03;
const char kUsingMbc5[] = "Using: system gb, mapper mbc5, ROM 524288 bytes, save 32768 bytes.\n";
const char kOnlyLookedAt[] = "\nTry \"gbdriver-cli --help\". The cartridge was only looked at.\n";

// Dumps a GBA ROM from address 0, as much as the job asks for.
const char kGbaScript[] = "function cpu_dump(dev, size, max)\n"
                          "{\n"
                          "    local piece = size < 0x8000 ? size : 0x8000;\n"
                          "    for (local at = 0; at < size; at += piece)\n"
                          "        cpu_read(dev, at / 2, piece);\n"
                          "}\n";

} // namespace

class CliAutoTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        QVERIFY(writeFile(path("file"), "old"));
    }

    void dumpNeedsNoOption_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("romSize");
        QTest::addColumn<int>("ramSize");
        QTest::addColumn<QString>("values");
        QTest::newRow("no mapper")
            << int(kRomOnly) << 32768 << 0 << "system gb, mapper none, ROM 32768 bytes";
        QTest::newRow("MBC1") << int(kMbc1RamBattery) << 2097152 << 8192
                              << "system gb, mapper mbc1, ROM 2097152 bytes, save 8192 bytes";
        QTest::newRow("MBC5") << 0x1B << 1048576 << 32768
                              << "system gb, mapper mbc5, ROM 1048576 bytes, save 32768 bytes";
    }
    void dumpNeedsNoOption()
    {
        QFETCH(int, type);
        QFETCH(int, romSize);
        QFETCH(int, ramSize);
        QFETCH(QString, values);
        const QByteArray image =
            gbImage(static_cast<std::uint8_t>(type), static_cast<std::uint32_t>(romSize),
                    static_cast<std::uint32_t>(ramSize));
        insert(image);
        for (const char *option : {"", " --auto", " --auto --system gb"}) {
            QVERIFY(QFile::remove(path("file")));
            const ProgramResult result = run("dump FILE" + QString(option));
            QVERIFY2(result.exitCode == 0, qPrintable(result.err));
            QVERIFY(fileBytes(path("file")) == image);
            QVERIFY2(result.err.contains("\nUsing: " + values + ".\n"), qPrintable(result.err));
            QCOMPARE(result.out, QString());
        }
    }

    void saveJobsNeedNoOption()
    {
        insert(mbc5Image(kRomSize, kRamSize));
        const QByteArray original = noise(kRamSize, 1);
        const QByteArray other = noise(kRamSize, 2);
        QVERIFY(writeFile(path("kept.sav"), original));
        const ReaderChoice reader = {"cart=" + path("cart") + ",save=" + path("kept.sav"), ""};

        const ProgramResult read = runProgram(CLI_PROGRAM, "read-ram " + path("read.sav"), reader);
        QVERIFY2(read.exitCode == 0, qPrintable(read.err));
        QVERIFY2(read.err.contains(kUsingMbc5), qPrintable(read.err));
        QVERIFY(fileBytes(path("read.sav")) == original);

        QVERIFY(writeFile(path("new.sav"), other));
        const ProgramResult write = runProgram(CLI_PROGRAM, "write-ram " + path("new.sav"), reader);
        QVERIFY2(write.exitCode == 0, qPrintable(write.err));
        QVERIFY2(write.err.contains(kUsingMbc5), qPrintable(write.err));
        QVERIFY(fileBytes(path("kept.sav")) == other);
    }

    void saveThatDoesNotArriveIsNoSuccess()
    {
        insert(mbc5Image(kRomSize, kRamSize));
        QVERIFY(writeFile(path("new.sav"), noise(kRamSize, 2)));
        const ProgramResult result =
            runProgram(CLI_PROGRAM, "write-ram " + path("new.sav"),
                       {"cart=" + path("cart") + ",save=" + path("none/kept.sav"), ""});
        QCOMPARE(result.exitCode, 1);
        QVERIFY2(result.err.contains(path("none/kept.sav")), qPrintable(result.err));
        QVERIFY2(result.err.endsWith(">Operation failure.\n"), qPrintable(result.err));
    }

    void reportIsPrintedFirst()
    {
        insert(mbc5Image(kRomSize, kRamSize));
        const ProgramResult result = run("dump FILE");
        QVERIFY2(result.err.startsWith("--Device information--\n"
                                       "Driver label: VIRTUAL\n"
                                       "Device firmware: QDX_PCB02_FW303\n"
                                       "\n"
                                       "--GB/GBC Cartridge information--\n"
                                       "Title: VIRTUAL\n"
                                       "Cart type: ROM+MBC5+RAM+BATT\n"
                                       "ROM Size: 512KB\n"
                                       "RAM Size: 32KB\n" +
                                       QString(kUsingMbc5) + "Start dump rom...\n"),
                 qPrintable(result.err));
    }

    void givenSystemIsTakenUnseen()
    {
        insert(mbc5Image(kRomSize, kRamSize));
        const ProgramResult result = run("dump FILE --system gb --mapper mbc5 --rom-size 512K");
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        QVERIFY2(result.err.startsWith("Start dump rom...\n"), qPrintable(result.err));
    }

    void romSizeWinsOverTheHeader()
    {
        const QByteArray image = mbc5Image(kRomSize, kRamSize);
        insert(image);
        const ProgramResult result = run("dump FILE --rom-size 256K");
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        QVERIFY(fileBytes(path("file")) == image.left(256 * 1024));
        QVERIFY2(result.err.contains("mapper mbc5, ROM 262144 bytes"), qPrintable(result.err));
    }

    void ramSizeWinsOverTheHeader()
    {
        insert(mbc5Image(kRomSize, kRamSize));
        const ProgramResult result = run("read-ram FILE --ram-size 8K --auto");
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        QCOMPARE(fileBytes(path("file")).size(), 8192);
    }

    void mapperWinsOverTheHeader()
    {
        insert(mbc5Image(kRomSize, kRamSize));
        const ProgramResult result = run("dump FILE --mapper mbc1");
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        QVERIFY2(result.err.contains("Using: system gb, mapper mbc1, ROM 524288 bytes"),
                 qPrintable(result.err));
    }

    void headerThatMisleadsIsNotFollowedInSilence()
    {
        const QByteArray image = gbImage(0xFD, kRomSize, 0);
        insert(image);
        const ProgramResult misled = run("dump FILE");
        QVERIFY2(misled.err.contains("\nUsing: system gb, mapper mbc5, ROM 524288 bytes.\n"
                                     "The header names the mapper TAMA5"),
                 qPrintable(misled.err));
        QVERIFY(fileBytes(path("file")) != image);

        const ProgramResult advised = run("dump FILE --mapper tama5");
        QCOMPARE(advised.exitCode, 0);
        QVERIFY(!advised.err.contains("The header names"));
        QVERIFY(fileBytes(path("file")) == image);
    }

    // Neither mapper that takes saves of this size may touch it.
    void saveOfATama5IsLeftAlone_data()
    {
        QTest::addColumn<QString>("words");
        QTest::newRow("write") << "write-ram FILE --ram-size 8K";
        QTest::newRow("write with its own script")
            << "write-ram FILE --ram-size 8K --mapper tama5 --auto";
        QTest::newRow("read") << "read-ram FILE --ram-size 8K";
    }
    void saveOfATama5IsLeftAlone()
    {
        QFETCH(QString, words);
        insert(gbImage(0xFD, kRomSize, 0));
        const QByteArray file = noise(8192, 1);
        QVERIFY(writeFile(path("file"), file));
        const ProgramResult result = run(words);
        QCOMPARE(result.exitCode, 1);
        QVERIFY2(result.err.contains("The save of a TAMA5 can not be read or written"),
                 qPrintable(result.err));
        QVERIFY(result.err.endsWith(kOnlyLookedAt));
        QVERIFY(fileBytes(path("file")) == file);
    }

    void otherSystemIsRefused_data()
    {
        QTest::addColumn<bool>("isGba"); // the cartridge
        QTest::addColumn<QString>("words");
        QTest::addColumn<QString>("found");
        QTest::newRow("GB cartridge") << false << "dump FILE --system gba --auto"
                                      << "system gb, mapper mbc5, ROM 524288 bytes, save 32768 "
                                         "bytes";
        QTest::newRow("GB cartridge, all said")
            << false << "dump FILE --auto --system gba --rom-size 4M"
            << "system gb, mapper mbc5, ROM 524288 bytes, save 32768 bytes";
        QTest::newRow("GBA cartridge") << true << "read-ram FILE --auto --system gb"
                                       << "system gba, ROM 4194304 bytes, save type eep, save 512 "
                                          "bytes";
    }
    void otherSystemIsRefused()
    {
        QFETCH(bool, isGba);
        QFETCH(QString, words);
        QFETCH(QString, found);
        insert(isGba ? gbaImage("ALXP", 64 * 1024) : mbc5Image(kRomSize, kRamSize));
        const ProgramResult result = run(words);
        QCOMPARE(result.exitCode, 1);
        QVERIFY2(result.err.endsWith("\nFound: " + found +
                                     ".\nThe cartridge is of another system than --system says." +
                                     kOnlyLookedAt),
                 qPrintable(result.err));
        QCOMPARE(fileBytes(path("file")), QByteArray("old"));
    }

    // "CART" is the game code of a GBA cartridge, "gb" one without save memory, "none" no
    // cartridge.
    void missingValuesAreAskedFor_data()
    {
        QTest::addColumn<QString>("cart");
        QTest::addColumn<QString>("words");
        QTest::addColumn<QString>("problem");
        const auto add = [](const char *name, const char *cart, const char *words,
                            const char *problem) {
            QTest::newRow(name) << cart << words << problem;
        };
        add("GB without save", "gb", "read-ram FILE",
            "system gb, mapper none, ROM 32768 bytes.\n"
            "Missing --ram-size: the size can not be guessed.");
        add("unknown game, ROM", "ZZZZ", "dump FILE",
            "system gba.\nMissing --rom-size: the size can not be guessed.");
        add("unknown game, save", "ZZZZ", "read-ram FILE",
            "system gba.\nMissing --save-type: one of sram, flash, eep.");
        add("unknown game, save of a type", "ZZZZ", "write-ram FILE --save-type eep",
            "system gba.\nMissing --ram-size: the size can not be guessed.");
        add("game whose save is not known", "AC9E", "read-ram FILE",
            "system gba, ROM 4194304 bytes.\nMissing --save-type: one of sram, flash, eep.");
        add("type that does not fit the size found", "ALXP", "read-ram FILE --save-type flash",
            "system gba, ROM 4194304 bytes, save type eep, save 512 bytes.\n"
            "--ram-size 512: a save of type flash has 65536 or 131072 bytes.");
        add("no cartridge", "none", "dump FILE", "nothing.\nMissing --system: one of gb, gba.");
        add("no cartridge, some values", "none", "dump FILE --mapper mbc5 --rom-size 64K",
            "nothing.\nMissing --system: one of gb, gba.");
        add("no cartridge, system said", "none", "dump FILE --auto --system gb",
            "nothing.\nMissing --mapper: one of none, mbc1, mbc2, mbc3, mbc5, mbc7, tama5.");
    }
    void missingValuesAreAskedFor()
    {
        QFETCH(QString, cart);
        QFETCH(QString, words);
        QFETCH(QString, problem);
        insert(cart == "gb" ? gbImage(kRomOnly, 32 * 1024, 0)
                            : gbaImage(cart.leftJustified(4), 64 * 1024));
        const ProgramResult result =
            runProgram(CLI_PROGRAM, words.replace("FILE", path("file")),
                       {"cart=" + (cart == "none" ? cart : path("cart")), ""});
        QCOMPARE(result.exitCode, 1);
        QVERIFY2(result.err.endsWith("\nFound: " + problem + kOnlyLookedAt),
                 qPrintable(result.err));
        QVERIFY2(!result.err.contains("Using"), qPrintable(result.err));
        QCOMPARE(fileBytes(path("file")), QByteArray("old"));
    }

    // An empty slot reads 0xFF; who says everything gets that.
    void unrecognisedCartridgeTakesWhatIsSaid()
    {
        const ProgramResult result =
            runProgram(CLI_PROGRAM,
                       "dump " + path("file") + " --auto --system gb --mapper mbc5 --rom-size 32K",
                       {"cart=none", ""});
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        QVERIFY2(result.err.contains("\nUsing: system gb, mapper mbc5, ROM 32768 bytes.\n"),
                 qPrintable(result.err));
        QCOMPARE(fileBytes(path("file")), QByteArray(32768, '\xFF'));
    }

    void gbaDumpUsesTheTable()
    {
        const QByteArray image = gbaImage("ALXP", 4 * 1024 * 1024);
        insert(image);
        const ProgramResult result = runWithGbaScript("dump FILE");
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        QVERIFY2(result.err.contains("\nUsing: system gba, ROM 4194304 bytes, save type eep, save "
                                     "512 bytes.\n"),
                 qPrintable(result.err));
        QVERIFY(fileBytes(path("file")) == image);
    }

    void unknownGbaGameTakesTheSizeSaid()
    {
        const QByteArray image = gbaImage("ZZZZ", 64 * 1024);
        insert(image);
        const ProgramResult result = runWithGbaScript("dump FILE --rom-size 64K");
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        QVERIFY2(result.err.contains("\nUsing: system gba, ROM 65536 bytes.\n"),
                 qPrintable(result.err));
        QVERIFY(fileBytes(path("file")) == image);
    }

    void failedReportEndsTheJob()
    {
        for (const char *words : {"", " --auto --system gb --mapper mbc5 --rom-size 32K"}) {
            const ProgramResult result =
                runProgram(CLI_PROGRAM, "dump " + path("file") + words, {"", ";"});
            QCOMPARE(result.exitCode, 1);
            QCOMPARE(result.err, QString("Can not found dump device.\n"));
            QCOMPARE(result.out, QString());
            QCOMPARE(fileBytes(path("file")), QByteArray("old"));
        }
    }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    void insert(const QByteArray &image) { QVERIFY(writeFile(path("cart"), image)); }

    // "FILE" stands for the user's file.
    ProgramResult run(QString words) const
    {
        return runProgram(CLI_PROGRAM, words.replace("FILE", path("file")),
                          {"cart=" + path("cart"), ""});
    }

    // A copy of the program that has the test's script for GBA cartridges beside it.
    ProgramResult runWithGbaScript(QString words) const
    {
        const QString program = path("gbdriver-cli");
        if (!QFile::copy(CLI_PROGRAM, program) || !QDir(path("")).mkdir("mapper") ||
            !writeFile(path("mapper/gba.nut"), kGbaScript))
            return {-1, {}, "cannot lay out the program"};
        return runProgram(program, words.replace("FILE", path("file")),
                          {"cart=" + path("cart"), ""});
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(CliAutoTest)
#include "cli_auto_test.moc"
