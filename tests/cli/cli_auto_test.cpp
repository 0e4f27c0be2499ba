// Jobs of the built program that look at the cartridge first: what they use, what they ask for, and
// what wins over the header.
#include "program_run.h"
#include "test_class.h"

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
const char kUsingMbc5[] = "Using:\n"
                          "  system     gb               header\n"
                          "  mapper     mbc5             header\n"
                          "  ROM        524288 bytes     header\n"
                          "  save       32768 bytes      header\n";

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
            << int(kRomOnly) << 32768 << 0 << "mapper none header, ROM 32768 bytes header";
        QTest::newRow("MBC1") << int(kMbc1RamBattery) << 2097152 << 8192
                              << "mapper mbc1 header, ROM 2097152 bytes header, "
                                 "save 8192 bytes header";
        QTest::newRow("MBC5") << 0x1B << 1048576 << 32768
                              << "mapper mbc5 header, ROM 1048576 bytes header, "
                                 "save 32768 bytes header";
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
        for (const QString option : {"", " --auto", " --system gb"}) {
            QVERIFY(QFile::remove(path("file")));
            const ProgramResult result = run("dump FILE" + option);
            QVERIFY2(result.exitCode == 0, qPrintable(result.err));
            QVERIFY(fileBytes(path("file")) == image);
            const bool isSaid = option.contains("--system");
            QCOMPARE(usedIn(result),
                     (isSaid ? "system gb user: --system, " : "system gb header, ") + values);
            QVERIFY2(result.out.startsWith("consistent: "), qPrintable(result.out));
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
        const ProgramResult write = runProgram(
            CLI_PROGRAM, "write-ram " + path("new.sav") + " --backup " + path("backups"), reader);
        QVERIFY2(write.exitCode == 0, qPrintable(write.err));
        QVERIFY2(write.err.contains(kUsingMbc5), qPrintable(write.err));
        QVERIFY(fileBytes(path("kept.sav")) == other);
    }

    void saveThatDoesNotArriveIsNoSuccess()
    {
        insert(mbc5Image(kRomSize, kRamSize));
        QVERIFY(writeFile(path("new.sav"), noise(kRamSize, 2)));
        const ProgramResult result =
            runProgram(CLI_PROGRAM, "write-ram --no-backup " + path("new.sav"),
                       {"cart=" + path("cart") + ",save=" + path("none/kept.sav"), ""});
        QCOMPARE(codeOf(result), ExitCode::TransferFailed);
        QVERIFY2(result.err.contains(path("none/kept.sav")), qPrintable(result.err));
        QVERIFY2(result.err.endsWith("The write did not come to its end. There is no backup.\n"),
                 qPrintable(result.err));
        QCOMPARE(result.out, QString());
    }

    void reportIsPrintedFirst()
    {
        insert(mbc5Image(kRomSize, kRamSize));
        const ProgramResult result = run("dump FILE --overwrite");
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

    void cartridgeIsNotLookedAtIfTold()
    {
        insert(mbc5Image(kRomSize, kRamSize));
        const ProgramResult result =
            run("dump FILE --overwrite --no-auto --system gb --mapper mbc5 --rom-size 512K");
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        QVERIFY2(result.err.startsWith("Using:\n"
                                       "  system     gb               user: --system\n"
                                       "  mapper     mbc5             user: --mapper\n"
                                       "  ROM        524288 bytes     user: --rom-size\n"
                                       "Start dump rom...\n"),
                 qPrintable(result.err));
    }

    void romSizeWinsOverTheHeader()
    {
        const QByteArray image = mbc5Image(kRomSize, kRamSize);
        insert(image);
        const ProgramResult result = run("dump FILE --overwrite --rom-size 256K");
        QCOMPARE(codeOf(result), ExitCode::DataMismatch);
        QVERIFY(fileBytes(path("file.suspicious")) == image.left(256 * 1024));
        QCOMPARE(fileBytes(path("file")), QByteArray("old"));
        QVERIFY2(usedIn(result).contains("ROM 262144 bytes user: --rom-size (the cartridge says "
                                         "524288 bytes)"),
                 qPrintable(result.err));
        QVERIFY2(result.out.contains("the header speaks of 524288 bytes, these are 262144"),
                 qPrintable(result.out));
    }

    void ramSizeWinsOverTheHeader()
    {
        insert(mbc5Image(kRomSize, kRamSize));
        const QByteArray save = noise(kRamSize, 1);
        QVERIFY(writeFile(path("kept.sav"), save));
        const ProgramResult result =
            runProgram(CLI_PROGRAM, "read-ram --ram-size 8K --overwrite " + path("file"),
                       {"cart=" + path("cart") + ",save=" + path("kept.sav"), ""});
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        QVERIFY(fileBytes(path("file")) == save.left(8192));
    }

    void mapperWinsOverTheHeader()
    {
        insert(mbc5Image(kRomSize, kRamSize));
        const ProgramResult result = run("dump FILE --overwrite --mapper mbc1");
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        QVERIFY2(usedIn(result).contains("mapper mbc1 user: --mapper (the cartridge says mbc5)"),
                 qPrintable(result.err));
    }

    void headerThatMisleadsIsNotFollowedInSilence()
    {
        const QByteArray image = gbImage(0xFD, kRomSize, 0);
        insert(image);
        const ProgramResult misled = run("dump FILE --overwrite --mapper mbc5");
        QCOMPARE(codeOf(misled), ExitCode::DataMismatch);
        QVERIFY2(misled.err.contains("(the cartridge says tama5)"), qPrintable(misled.err));
        QVERIFY2(misled.err.contains("The header names the mapper TAMA5"), qPrintable(misled.err));
        QVERIFY(fileBytes(path("file")) != image);

        const ProgramResult followed = run("dump FILE --overwrite");
        QCOMPARE(codeOf(followed), ExitCode::Done);
        QCOMPARE(usedIn(followed),
                 QString("system gb header, mapper tama5 header, ROM 524288 bytes header"));
        QVERIFY(!followed.err.contains("The header names"));
        QVERIFY(fileBytes(path("file")) == image);
    }

    // Neither mapper that takes saves of this size may touch it.
    void saveOfATama5IsLeftAlone_data()
    {
        QTest::addColumn<QString>("words");
        QTest::newRow("write") << "write-ram FILE --ram-size 8K";
        QTest::newRow("write as another mapper") << "write-ram FILE --ram-size 8K --mapper mbc5";
        QTest::newRow("read") << "read-ram FILE --ram-size 8K --overwrite";
    }
    void saveOfATama5IsLeftAlone()
    {
        QFETCH(QString, words);
        insert(gbImage(0xFD, kRomSize, 0));
        const QByteArray file = noise(8192, 1);
        QVERIFY(writeFile(path("file"), file));
        const ProgramResult result = run(words);
        QCOMPARE(codeOf(result), ExitCode::Refused);
        QVERIFY2(result.err.contains("The save of a TAMA5 can not be read or written"),
                 qPrintable(result.err));
        QVERIFY(result.err.endsWith(" The cartridge was only looked at.\n"));
        QVERIFY(fileBytes(path("file")) == file);
    }

    void otherSystemIsRefused_data()
    {
        QTest::addColumn<bool>("isGba"); // the cartridge
        QTest::addColumn<QString>("words");
        QTest::newRow("GB cartridge") << false << "dump FILE --system gba --auto";
        QTest::newRow("GB cartridge, all said") << false << "dump FILE --system gba --rom-size 4M";
        QTest::newRow("GBA cartridge") << true << "read-ram FILE --auto --system gb";
    }
    void otherSystemIsRefused()
    {
        QFETCH(bool, isGba);
        QFETCH(QString, words);
        insert(isGba ? gbaImage("ALXP", 64 * 1024) : mbc5Image(kRomSize, kRamSize));
        const ProgramResult result = run(words + " --overwrite");
        QCOMPARE(codeOf(result), ExitCode::Refused);
        QVERIFY2(result.err.endsWith("\nThe cartridge is of another system than --system says. It "
                                     "was only looked at; leave --system out.\n"),
                 qPrintable(result.err));
        QCOMPARE(fileBytes(path("file")), QByteArray("old"));
    }

    // "CART" is the game code of a GBA cartridge, "gb" one without save memory, "none" no
    // cartridge.
    void missingValuesAreAskedFor_data()
    {
        QTest::addColumn<QString>("cart");
        QTest::addColumn<QString>("words");
        QTest::addColumn<QString>("used");
        QTest::addColumn<QString>("problem");
        const auto add = [](const char *name, const char *cart, const char *words, const char *used,
                            const char *problem) {
            QTest::newRow(name) << cart << words << used << problem;
        };
        add("unknown game, ROM", "ZZZZ", "dump FILE --overwrite", "system gba header",
            "Missing --rom-size: the size can not be guessed.");
        add("unknown game, save", "ZZZZ", "read-ram FILE --overwrite", "system gba header",
            "Missing --save-type: one of sram, flash, eep.");
        add("unknown game, save of a type", "ZZZZ", "write-ram FILE --save-type eep",
            "system gba header, save type eep user: --save-type",
            "Missing --ram-size: the size can not be guessed.");
        add("game whose save is not known", "AC9E", "read-ram FILE --overwrite",
            "system gba header, ROM 4194304 bytes game table",
            "Missing --save-type: one of sram, flash, eep.");
        add("type that does not fit the size found", "ALXP",
            "read-ram FILE --save-type flash --overwrite",
            "system gba header, ROM 4194304 bytes game table, "
            "save type flash user: --save-type (the cartridge says eep), save 512 bytes game table",
            "--ram-size 512: a save of type flash has 65536 or 131072 bytes.");
        add("size that does not fit the type found", "ALXP", "write-ram FILE --ram-size 32K",
            "system gba header, ROM 4194304 bytes game table, save type eep game table, "
            "save 32768 bytes user: --ram-size (the cartridge says 512 bytes)",
            "--ram-size 32768: a save of type eep has 512 or 8192 bytes.");
        add("no cartridge", "none", "dump FILE --overwrite", "",
            "Missing --system: one of gb, gba.");
        add("no cartridge, some values", "none",
            "dump FILE --overwrite --mapper mbc5 --rom-size 64K",
            "mapper mbc5 user: --mapper, ROM 65536 bytes user: --rom-size",
            "Missing --system: one of gb, gba.");
        add("no cartridge, system said", "none", "dump FILE --overwrite --system gb",
            "system gb user: --system",
            "Missing --mapper: one of none, mbc1, mbc2, mbc3, mbc5, mbc7, tama5.");
    }
    void missingValuesAreAskedFor()
    {
        QFETCH(QString, cart);
        QFETCH(QString, words);
        QFETCH(QString, used);
        QFETCH(QString, problem);
        insert(gbaImage(cart.leftJustified(4), 64 * 1024));
        const QString command = words.section(' ', 0, 0);
        const ProgramResult result =
            runProgram(CLI_PROGRAM, words.replace("FILE", path("file")),
                       {"cart=" + (cart == "none" ? cart : path("cart")), ""});
        // What is there but can not be is the user's.
        QCOMPARE(codeOf(result),
                 problem.startsWith("Missing") ? ExitCode::NotRecognised : ExitCode::Usage);
        QVERIFY2(result.err.endsWith('\n' + problem + " Try \"gbdriver-cli " + command +
                                     " --help\". The cartridge was only looked at.\n"),
                 qPrintable(result.err));
        QCOMPARE(usedIn(result), used);
        QCOMPARE(fileBytes(path("file")), QByteArray("old"));
    }

    // A write with the wrong commands destroys what a read with them does not show.
    void writeThatContradictsTheTableIsRefused()
    {
        insert(gbaImage("ALXP", 64 * 1024));
        QVERIFY(writeFile(path("new.sav"), noise(8192, 1)));
        const ProgramResult result =
            runProgram(CLI_PROGRAM, "write-ram " + path("new.sav") + " --ram-size 8K",
                       {"cart=" + path("cart") + ",save-type=eep", ""});
        QCOMPARE(codeOf(result), ExitCode::Refused);
        QVERIFY2(result.err.contains("The cartridge says something else of its save than"),
                 qPrintable(result.err));
        QVERIFY(!result.err.contains("Start write save"));
    }

    // Whoever knows better can say so.
    void saveThatTheHeaderDeniesIsRefused()
    {
        insert(gbImage(kRomOnly, 32 * 1024, 0));
        const ProgramResult result = run("read-ram FILE --overwrite");
        QCOMPARE(codeOf(result), ExitCode::Refused);
        QVERIFY2(
            result.err.endsWith("The header says that this cartridge has no save memory. If "
                                "that is wrong, give --ram-size. The cartridge was only looked "
                                "at.\n"),
            qPrintable(result.err));
        QCOMPARE(fileBytes(path("file")), QByteArray("old"));
    }

    // An empty slot reads 0xFF; who says everything gets that.
    void unrecognisedCartridgeTakesWhatIsSaid()
    {
        const ProgramResult result = runProgram(
            CLI_PROGRAM,
            "dump " + path("file") + " --overwrite --auto --system gb --mapper mbc5 --rom-size 32K",
            {"cart=none", ""});
        QCOMPARE(codeOf(result), ExitCode::DataMismatch);
        QCOMPARE(usedIn(result), QString("system gb user: --system, mapper mbc5 user: --mapper, "
                                         "ROM 32768 bytes user: --rom-size"));
        QVERIFY2(result.out.startsWith("suspicious: all bytes are equal"), qPrintable(result.out));
        QCOMPARE(fileBytes(path("file.suspicious")), QByteArray(32768, '\xFF'));
        QCOMPARE(fileBytes(path("file")), QByteArray("old"));
    }

    void gbaDumpUsesTheTable()
    {
        const QByteArray image = gbaImage("ALXP", 4 * 1024 * 1024);
        insert(image);
        const ProgramResult result = runWithGbaScript("dump FILE --overwrite");
        QCOMPARE(codeOf(result), ExitCode::Unverified);
        QCOMPARE(usedIn(result), QString("system gba header, ROM 4194304 bytes game table, "
                                         "save type eep game table, save 512 bytes game table"));
        QVERIFY(fileBytes(path("file")) == image);
    }

    void unknownGbaGameTakesTheSizeSaid()
    {
        const QByteArray image = gbaImage("ZZZZ", 64 * 1024);
        insert(image);
        const ProgramResult result = runWithGbaScript("dump FILE --overwrite --rom-size 64K");
        QCOMPARE(codeOf(result), ExitCode::Unverified);
        QCOMPARE(usedIn(result), QString("system gba header, ROM 65536 bytes user: --rom-size"));
        QVERIFY(fileBytes(path("file")) == image);
    }

    void failedReportEndsTheJob()
    {
        for (const char *words : {"", " --auto --system gb --mapper mbc5 --rom-size 32K"}) {
            const ProgramResult result =
                runProgram(CLI_PROGRAM, "dump --overwrite " + path("file") + words, {"", ";"});
            QCOMPARE(codeOf(result), ExitCode::NoReader);
            QVERIFY2(result.err.contains("Can not found dump device.\nNo reader was found."),
                     qPrintable(result.err));
            QCOMPARE(result.out, QString());
            QCOMPARE(fileBytes(path("file")), QByteArray("old"));
        }
    }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    void insert(const QByteArray &image) { QVERIFY(writeFile(path("cart"), image)); }

    // The table of what is used, "system gb header, mapper mbc5 user: --mapper"; empty if there is
    // none.
    static QString usedIn(const ProgramResult &result)
    {
        const QStringList lines = result.errLines();
        QStringList rows;
        for (int at = lines.indexOf("Using:") + 1;
             at > 0 && at < lines.size() && lines[at].startsWith("  "); ++at)
            rows << lines[at].simplified();
        return rows.join(", ");
    }

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

Q_DECLARE_METATYPE(ExitCode)

GBDRIVER_TEST(CliAutoTest, core)
#include "cli_auto_test.moc"
