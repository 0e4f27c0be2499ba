// A stack of cartridges through the reader in this process: what lies in the folder afterwards, and
// what was said.
#include "cli/commands.h"

#include "../device/reference_crc32.h"
#include "cartridge_stack.h"
#include "cli/interrupt.h"
#include "drive_faults.h"
#include "program_run.h"
#include "report_capture.h"
#include "test_class.h"

#include <QCryptographicHash>
#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

using namespace virtual_reader;

namespace
{

constexpr std::uint32_t kKibi = 1024;
constexpr std::uint32_t kMebi = 1024 * 1024;
constexpr int kPauseMs = 1;
constexpr std::uint8_t kMbc5 = 0x19;
constexpr std::uint8_t kMbc5RamBattery = 0x1B;
constexpr std::uint8_t kColor = 0xC0;
const QStringList kReport = {"*.txt"};
const QStringList kRoms = {"*.gb", "*.gbc", "*.gba"};
const QStringList kSaves = {"*.sav"};

// With a save of 8 KiB.
QByteArray gameWithSave(const std::string &title, std::uint64_t seed)
{
    return stackedImage(GbImageSpec{kMbc5RamBattery, 64 * kKibi, 8 * kKibi, title, seed});
}

QByteArray gameWithoutSave(const std::string &title, std::uint64_t seed)
{
    return stackedImage(GbImageSpec{kMbc5, 64 * kKibi, 0, title, seed});
}

QByteArray saveOf(unsigned seed)
{
    return noise(8 * kKibi, seed);
}

// A game that no table knows.
QByteArray strangeGbaGame(std::uint32_t romSize)
{
    GbaImageSpec spec;
    spec.romSize = romSize;
    return stackedImage(spec);
}

QString hashOf(const QByteArray &bytes, QCryptographicHash::Algorithm algorithm)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, algorithm).toHex());
}

// A read of the cartridge that fails once, when so many went through.
DriveFault readFault(std::uint32_t after)
{
    DriveFault fault;
    fault.pathEnd = "DUMP.ROM";
    fault.after = after;
    return fault;
}

} // namespace

class BackupCommandTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_temporary = std::make_unique<QTemporaryDir>();
        m_stack = std::make_unique<CartridgeStack>();
        m_options = CliOptions();
        m_options.request = CliRequest::Backup;
        m_options.path = m_temporary->filePath("cartridges");
        watchForInterrupt();
    }

    void cleanup()
    {
        m_stack.reset();
        std::signal(SIGINT, SIG_DFL);
    }

    void stackOfThreeLiesInTheFolder()
    {
        const QByteArray first = gameWithSave("FIRST GAME", 1);
        const QByteArray second =
            stackedImage(GbImageSpec{kMbc5, 128 * kKibi, 0, "SECOND GAME", 2}, kColor);
        GbaImageSpec third;
        third.code = "A9MP"; // 4 MiB and SRAM in the game table
        third.saveKind = SaveKind::Sram;
        const QByteArray thirdImage = stackedImage(third);
        const QByteArray thirdSave = noise(32 * kKibi, 3);

        // A GBA ROM has no checksum over all of it.
        QCOMPARE(run({{QByteArray(), {}, 1},
                      {first, saveOf(1)},
                      {QByteArray(), {}, 1},
                      {second},
                      {QByteArray(), {}, 1},
                      {thirdImage, thirdSave}}),
                 ExitCode::Unverified);

        const QString title = "Motoracer Advance (Euro)";
        QCOMPARE(names(kRoms), (QStringList{"FIRST GAME.gb", title + ".gba", "SECOND GAME.gbc"}));
        QVERIFY(content("FIRST GAME.gb") == first);
        QVERIFY(content("SECOND GAME.gbc") == second);
        QVERIFY(content(title + ".gba") == thirdImage);
        const QStringList saves = names(kSaves);
        QCOMPARE(saves.size(), 2);
        QVERIFY(saves[1].startsWith(title + " 2") && content(saves[1]) == thirdSave);
        QVERIFY(saves[0].startsWith("FIRST GAME 2") && content(saves[0]) == saveOf(1));
        QCOMPARE(names(kReport).size(), 3);
        QCOMPARE(names({"*"}).size(), 8);
        QCOMPARE(m_messages.count("Insert a cartridge."), 4);
        QCOMPARE(m_messages.count("Swap the cartridge."), 3);
        QVERIFY2(m_answers.endsWith("3 cartridges done.\n"), qPrintable(m_answers));
        QVERIFY2(m_answers.contains("2. SECOND GAME\n   ROM:  consistent: "),
                 qPrintable(m_answers));
        QVERIFY2(m_answers.contains("   Save: none\n"), qPrintable(m_answers));
    }

    void cartridgeThatIsDoneIsCalledDone()
    {
        const QByteArray image = gameWithSave("AGAIN", 1);
        QCOMPARE(run({{image, saveOf(1)}, {QByteArray(), {}, 1}, {image, saveOf(1)}}),
                 ExitCode::Done);
        QCOMPARE(names({"*"}).size(), 3);
        QVERIFY2(m_answers.contains("1. AGAIN\n"), qPrintable(m_answers));
        QVERIFY2(m_answers.contains("2. AGAIN: already done, nothing new\n"),
                 qPrintable(m_answers));
    }

    // Also when the program was ended in between.
    void folderRemembersWhatIsDone()
    {
        const QByteArray image = gameWithSave("AGAIN", 1);
        QCOMPARE(run({{image, saveOf(1)}}), ExitCode::Done);
        const QStringList before = names({"*"});
        watchForInterrupt();
        QCOMPARE(run({{image, saveOf(1)}}), ExitCode::Done);
        QCOMPARE(names({"*"}), before);
        QVERIFY(m_answers.contains("1. AGAIN: already done, nothing new\n"));
    }

    void anotherSaveOfTheSameGameIsKept()
    {
        const QByteArray image = gameWithSave("TWICE", 1);
        QCOMPARE(run({{image, saveOf(1)}, {QByteArray(), {}, 1}, {image, saveOf(2)}}),
                 ExitCode::Done);
        QCOMPARE(names(kRoms), QStringList{"TWICE.gb"});
        QCOMPARE(names(kReport).size(), 2);
        const QStringList saves = names(kSaves);
        QCOMPARE(saves.size(), 2);
        QCOMPARE(QSet<QByteArray>({content(saves[0]), content(saves[1])}),
                 QSet<QByteArray>({saveOf(1), saveOf(2)}));
        QVERIFY(!m_answers.contains("already done, nothing new"));
    }

    void cartridgeThatStaysIsReadOnce()
    {
        QCOMPARE(run({{gameWithSave("STAYS", 1), saveOf(1), 16}}), ExitCode::Done);
        QVERIFY(m_answers.endsWith("1 cartridge done.\n"));
        QCOMPARE(m_messages.count("Using:"), 1);
    }

    // Swapped so quickly that no look saw the slot empty.
    void anotherGameNeedsNoEmptySlot()
    {
        QCOMPARE(run({{gameWithoutSave("ONE", 1)}, {gameWithoutSave("TWO", 2)}}), ExitCode::Done);
        QCOMPARE(names(kRoms), (QStringList{"ONE.gb", "TWO.gb"}));
    }

    void failedCartridgeIsReadWhenItComesAgain()
    {
        const QByteArray image = gameWithSave("BAD CONTACT", 1);
        QCOMPARE(
            run({{image, saveOf(1), 7, {readFault(4)}}, {QByteArray(), {}, 1}, {image, saveOf(1)}}),
            ExitCode::TransferFailed);
        QCOMPARE(names(kRoms), QStringList{"BAD CONTACT.gb"});
        QVERIFY(content("BAD CONTACT.gb") == image);
        // The save was read the first time already.
        QCOMPARE(names(kSaves).size(), 1);
        QVERIFY2(m_answers.contains("1. BAD CONTACT\n   ROM:  not read"), qPrintable(m_answers));
        QVERIFY2(m_answers.contains("2. BAD CONTACT\n   ROM:  consistent"), qPrintable(m_answers));
        QVERIFY2(m_answers.endsWith("\n1 cartridge done, 1 failed.\n"), qPrintable(m_answers));
        QVERIFY2(m_messages.contains("The transfer failed. The cartridge was read, which also "
                                     "writes to its bus."),
                 qPrintable(m_messages));
    }

    // What is read while a cartridge slides in may be anything.
    void headerThatChangesIsNoCartridge()
    {
        QCOMPARE(run({{gameWithoutSave("SLIDING IN", 1), {}, 1}, {gameWithoutSave("IS IN", 2)}}),
                 ExitCode::Done);
        QCOMPARE(names(kRoms), QStringList{"IS IN.gb"});
        QVERIFY(m_answers.endsWith("1 cartridge done.\n"));
    }

    void sizeOfAnUnknownGbaGameIsFound_data()
    {
        QTest::addColumn<QByteArray>("cartridge");
        QTest::addColumn<QByteArray>("content");
        const QByteArray small = strangeGbaGame(4 * kMebi);
        const QByteArray middle = strangeGbaGame(16 * kMebi);
        const QByteArray full = strangeGbaGame(32 * kMebi);
        QTest::newRow("4 MiB, nothing behind") << small << small;
        QTest::newRow("16 MiB, nothing behind") << middle << middle;
        QTest::newRow("16 MiB, repeated") << middle + middle << middle;
        QTest::newRow("32 MiB") << full << full;
    }
    void sizeOfAnUnknownGbaGameIsFound()
    {
        QFETCH(QByteArray, cartridge);
        QFETCH(QByteArray, content);
        QCOMPARE(run({{cartridge}}), ExitCode::Unverified);
        QCOMPARE(names(kRoms), QStringList{"VIRTUAL.gba"});
        QVERIFY(this->content("VIRTUAL.gba") == content);
        QVERIFY2(m_answers.contains("   Save: not read: no table knows this game"),
                 qPrintable(m_answers));
        const QString report = QString::fromUtf8(this->content(names(kReport).value(0)));
        QCOMPARE(lineOf(report, "ROM", "SHA-1"), hashOf(content, QCryptographicHash::Sha1));
        QCOMPARE(lineOf(report, "ROM", "Reads"), QString("2"));
        QCOMPARE(lineOf(report, "Save", "Verdict"),
                 QString("not read: no table knows this game; use read-ram with --save-type and "
                         "--ram-size"));
    }

    void refusedSaveIsExplained_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("reason");
        QTest::newRow("MBC7") << 0x22 << "serial EEPROM";
        QTest::newRow("TAMA5") << 0xFD << "behind registers";
    }
    void refusedSaveIsExplained()
    {
        QFETCH(int, type);
        QFETCH(QString, reason);
        const QByteArray image = stackedImage(
            GbImageSpec{static_cast<std::uint8_t>(type), 128 * kKibi, 0, "NO SAVE OUT", 1});
        QCOMPARE(run({{image}}), ExitCode::Refused);
        QVERIFY(content("NO SAVE OUT.gb") == image);
        QCOMPARE(names(kSaves), QStringList());
        const QString report = QString::fromUtf8(content(names(kReport).value(0)));
        const QString save = lineOf(report, "Save", "Verdict");
        QVERIFY2(save.startsWith("not read: ") && save.contains(reason), qPrintable(report));
        QVERIFY2(m_answers.contains("   Save: not read: "), qPrintable(m_answers));
    }

    // Nobody's save may end under another game's title.
    void saveOfACartridgeSwappedTooEarlyIsLeftAlone()
    {
        const QByteArray first = gameWithSave("FIRST", 1);
        const QByteArray second = gameWithSave("SECOND", 2);
        QCOMPARE(run({{first, saveOf(1), 4}, {second, saveOf(2), 12}}), ExitCode::DataMismatch);
        QVERIFY(content("FIRST.gb") == first);
        QVERIFY2(m_answers.contains("   Save: not read: the cartridge was changed meanwhile"),
                 qPrintable(m_answers));
        QCOMPARE(names(kSaves).size(), 1);
        QVERIFY(names(kSaves).first().startsWith("SECOND "));
        QVERIFY(content(names(kSaves).first()) == saveOf(2));
    }

    // Its mapper stays multiplexed after the ROM, and the save comes out in repeated pieces.
    void saveBehindALargeMmm01RomIsLeftAlone()
    {
        constexpr std::uint8_t kMmm01RamBattery = 0x0D;
        constexpr int kMenu = 32 * kKibi; // at the end of the ROM, and on the bus after power-on
        QByteArray image =
            stackedImage(GbImageSpec{kMmm01RamBattery, kMebi, 32 * kKibi, "LARGE MENU", 1});
        image.replace(image.size() - kMenu, kMenu, image.left(kMenu));
        run({{image}});
        QCOMPARE(names(kSaves), QStringList());
        QVERIFY2(m_answers.contains("   Save: not read: after a ROM of this size an MMM01"),
                 qPrintable(m_answers));
    }

    // The good name stays free for a good read.
    void suspiciousRomDoesNotTakeTheName()
    {
        QByteArray image = gameWithoutSave("BAD SUM", 1);
        image[0x4000] = static_cast<char>(image[0x4000] ^ 1);
        QCOMPARE(run({{image}}), ExitCode::DataMismatch);
        QCOMPARE(names({"*.suspicious"}), QStringList{"BAD SUM.gb.suspicious"});
        QCOMPARE(names(kRoms), QStringList());
        QVERIFY(content("BAD SUM.gb.suspicious") == image);
    }

    void gamesOfOneTitleGetFilesOfTheirOwn()
    {
        const QByteArray one = gameWithoutSave("SAME NAME", 1);
        const QByteArray other = gameWithoutSave("SAME NAME", 2);
        QCOMPARE(run({{one}, {other}, {one}}), ExitCode::Done);
        QCOMPARE(names(kRoms), (QStringList{"SAME NAME (2).gb", "SAME NAME.gb"}));
        QVERIFY(content("SAME NAME.gb") == one);
        QVERIFY(content("SAME NAME (2).gb") == other);
        QVERIFY(m_answers.contains("3. SAME NAME: already done, nothing new\n"));
    }

    void unsafeTitlesBecomeSafeNames_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("name");
        QTest::newRow("path") << "../A:B?"
                              << "_.._A_B_.gb";
        QTest::newRow("device") << "AUX"
                                << "_AUX.gb";
        QTest::newRow("option") << "-RF *"
                                << "_-RF _.gb";
        QTest::newRow("quotes") << "\"<GAME>|\""
                                << "__GAME___.gb";
    }
    void unsafeTitlesBecomeSafeNames()
    {
        QFETCH(QString, title);
        QFETCH(QString, name);
        const QByteArray image = gameWithoutSave(title.toStdString(), 1);
        QCOMPARE(run({{image}}), ExitCode::Done);
        QCOMPARE(names(kRoms), QStringList{name});
        QVERIFY(content(name) == image);
        QCOMPARE(QDir(m_temporary->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList{"cartridges"});
    }

    void reportTellsWhatWasRead()
    {
        const QByteArray image = gameWithSave("REPORTED", 1);
        QCOMPARE(run({{image, saveOf(1)}}), ExitCode::Done);
        const QString name = names(kReport).value(0);
        const QString report = QString::fromUtf8(content(name));
        QVERIFY2(name.startsWith("REPORTED 2"), qPrintable(name));
        checkHashes(report, "ROM", image);
        checkHashes(report, "Save", saveOf(1));
        QCOMPARE(lineOf(report, "ROM", "File"), QString("REPORTED.gb"));
        QCOMPARE(lineOf(report, "Save", "File"), names(kSaves).value(0));
        QVERIFY(lineOf(report, "ROM", "Verdict").startsWith("consistent: "));
        QVERIFY(lineOf(report, "Save", "Verdict").startsWith("consistent: "));
        QCOMPARE(lineOf(report, "", "Title"), QString("REPORTED"));
        QCOMPARE(lineOf(report, "", "Reader"), QString("VIRTUAL"));
        QCOMPARE(lineOf(report, "", "Firmware"), QString("QDX_PCB02_FW303"));
        QCOMPARE(lineOf(report, "", "Script"), QString("gb_mbc5.nut"));
        QCOMPARE(lineOf(report, "", "Script SHA-1"),
                 hashOf(contentOf(SHIPPED_SCRIPTS "/gb_mbc5.nut"), QCryptographicHash::Sha1));
        QCOMPARE(lineOf(report, "Settings", "System"), QString("gb"));
        QCOMPARE(lineOf(report, "Settings", "Mapper"), QString("mbc5"));
        QCOMPARE(lineOf(report, "Settings", "ROM size"), QString("65536"));
        QCOMPARE(lineOf(report, "Settings", "Save size"), QString("8192"));
        const QDateTime begin = QDateTime::fromString(lineOf(report, "", "Begin"), Qt::ISODate);
        const QDateTime end = QDateTime::fromString(lineOf(report, "", "End"), Qt::ISODate);
        QVERIFY(begin.isValid() && end.isValid() && begin <= end);
    }

    void knownDumpGivesTheNameAndIsReadOnce()
    {
        const QByteArray image = gameWithoutSave("SHORT", 1);
        const QString table = m_temporary->filePath("my.dat");
        putFile(table, "<datafile><header><name>My games</name></header>"
                       "<game name=\"A Longer Name (Europe)\"><rom name=\"a.gb\" size=\"" +
                           QByteArray::number(image.size()) + "\" sha1=\"" +
                           hashOf(image, QCryptographicHash::Sha1).toLatin1() +
                           "\"/></game></datafile>");
        m_options.datFiles << table;
        QCOMPARE(run({{image}}), ExitCode::Done);
        QCOMPARE(names(kRoms), QStringList{"A Longer Name (Europe).gb"});
        const QString report = QString::fromUtf8(content(names(kReport).value(0)));
        QCOMPARE(lineOf(report, "ROM", "Verdict"),
                 QString("verified: A Longer Name (Europe) (My games)"));
        QCOMPARE(lineOf(report, "ROM", "Reads"), QString("1"));
    }

    void folderThatCanNotBeMadeIsNamed()
    {
        putFile(m_temporary->filePath("file"), "not a folder");
        m_options.path = m_temporary->filePath("file/below");
        QCOMPARE(run({{gameWithoutSave("UNREAD", 1)}}), ExitCode::FileError);
        QVERIFY2(m_messages.contains(m_options.path), qPrintable(m_messages));
        QVERIFY2(m_messages.contains("Nothing was read."), qPrintable(m_messages));
        QCOMPARE(m_answers, QString());
    }

    void tableThatCanNotBeReadIsNamed()
    {
        m_options.datFiles << m_temporary->filePath("missing.dat");
        QCOMPARE(run({{gameWithoutSave("UNREAD", 1)}}), ExitCode::FileError);
        QVERIFY2(m_messages.contains("--dat " + m_options.datFiles[0]), qPrintable(m_messages));
        QVERIFY2(m_messages.contains("Nothing was read."), qPrintable(m_messages));
        QVERIFY(!QDir(m_options.path).exists());
    }

    void countEndsTheStack()
    {
        m_options.count = 2;
        QCOMPARE(run({{gameWithoutSave("ONE", 1)},
                      {gameWithoutSave("TWO", 2)},
                      {gameWithoutSave("THREE", 3)}}),
                 ExitCode::Done);
        QCOMPARE(names(kRoms), (QStringList{"ONE.gb", "TWO.gb"}));
        QVERIFY(!wasInterrupted());
        QCOMPARE(m_messages.count("Swap the cartridge."), 1);
    }

    // Nobody who stops waiting then has backed up anything.
    void readerThatNeverCameIsAFailure_data()
    {
        QTest::addColumn<int>("code"); // of every command file; None: no drive at all
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("waiting");
        QTest::addColumn<QString>("problem");
        QTest::newRow("no reader") << int(DriveErrorCode::None) << int(ExitCode::NoReader)
                                   << "No reader was found. Plug it in. Ctrl-C ends."
                                   << "No reader was found. Plug it in, ";
        QTest::newRow("no answer") << int(DriveErrorCode::Refused) << int(ExitCode::NoAnswer)
                                   << "The reader does not answer. Plug it in again. Ctrl-C ends."
                                   << "The reader does not answer. Unplug it, ";
        QTest::newRow("in use") << int(DriveErrorCode::InUse) << int(ExitCode::InUse)
                                << "Another program uses the reader. Waiting for its end."
                                << "Another program uses the reader. Leave it plugged in, ";
        QTest::newRow("a stick") << int(DriveErrorCode::NotTheReader) << int(ExitCode::NoReader)
                                 << "The drive that was taken for the reader is none. Take it out."
                                 << "The drive that was taken for the reader is none. Take that ";
    }
    void readerThatNeverCameIsAFailure()
    {
        QFETCH(int, code);
        QFETCH(int, exitCode);
        QFETCH(QString, waiting);
        QFETCH(QString, problem);
        DriveFault fault = everyCommandFault();
        fault.code = static_cast<DriveErrorCode>(code);
        m_stack->setGone(fault.code == DriveErrorCode::None);
        m_stack->onSearch = [this, fault] {
            m_stack->clearFaults();
            m_stack->addFault(fault);
        };
        QCOMPARE(int(run({{gameWithSave("UNSEEN", 1), saveOf(1)}})), exitCode);
        QCOMPARE(m_answers, QString("0 cartridges done.\n"));
        QCOMPARE(m_messages.count(waiting), 1);
        QVERIFY2(m_messages.contains('\n' + problem), qPrintable(m_messages));
    }

    void unplugInTheMiddleIsNotDone_data()
    {
        QTest::addColumn<int>("reads"); // before the one that comes to nothing
        QTest::addColumn<QStringList>("roms");
        QTest::newRow("first read of the ROM") << 3 << QStringList();
        QTest::newRow("second read of the ROM") << 6 << QStringList();
        QTest::newRow("first read of the save") << 9 << QStringList{"CUT.gb"};
        QTest::newRow("second read of the save") << 10 << QStringList{"CUT.gb"};
    }
    void unplugInTheMiddleIsNotDone()
    {
        QFETCH(int, reads);
        QFETCH(QStringList, roms);
        DriveFault unplug = readFault(static_cast<std::uint32_t>(reads));
        unplug.code = DriveErrorCode::Gone;
        unplug.driveVanishes = true;
        const ExitCode code = run({{gameWithSave("CUT", 1), saveOf(1), 12, {unplug}}});
        QVERIFY2(code == ExitCode::TransferFailed, qPrintable(m_messages));
        QVERIFY2(m_answers.endsWith("0 cartridges done, 1 failed.\n"), qPrintable(m_answers));
        QCOMPARE(names(kRoms), roms);
        QCOMPARE(names(kSaves), QStringList());
    }

    void eventsTellEveryFile()
    {
        m_style = OutputStyle::Json;
        run({{gameWithSave("ONE", 1), saveOf(1)}, {gameWithoutSave("TWO", 2)}});
        m_style = OutputStyle::Text;
        QStringList told;
        for (const QJsonObject &object : m_objects) {
            const QString event = object["event"].toString();
            if (event == "verdict")
                told << QFileInfo(object["file"].toString()).suffix() + ' ' +
                            object["verdict"].toString();
            else if (event == "detected")
                told << object["what"].toString() + ' ' + object["title"].toString();
            else
                QVERIFY2(event == "log" || event == "progress", qPrintable(event));
        }
        QCOMPARE(told, (QStringList{"cartridge ONE", "gb consistent", "sav consistent",
                                    "cartridge TWO", "gb consistent"}));
        QCOMPARE(m_messages, QString());
    }

    void interruptKeepsWhatIsWhole_data()
    {
        QTest::addColumn<QString>("phase");
        QTest::addColumn<int>("reads");
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QString>("state");
        // Of the drive, before the one with Ctrl-C. A look makes one, the ROM three, the save one.
        const QStringList rom{"CUT.gb.unverified"};
        QTest::newRow("first read of the ROM") << "read" << 4 << rom << "its save was not kept";
        QTest::newRow("second read of the ROM") << "compare" << 7 << rom << "its save was not kept";
        QTest::newRow("first read of the save")
            << "read" << 9 << QStringList{"CUT DATE.sav.unverified", "CUT.gb"} << "its save in ";
    }
    void interruptKeepsWhatIsWhole()
    {
        QFETCH(QString, phase);
        QFETCH(int, reads);
        QFETCH(QStringList, files);
        QFETCH(QString, state);
        DriveFault interrupt = readFault(static_cast<std::uint32_t>(reads));
        interrupt.code = DriveErrorCode::None;
        interrupt.bytes = DriveFault::kAllBytes;
        interrupt.happens = [] { std::raise(SIGINT); };
        QCOMPARE(run({{gameWithSave("CUT", 1), saveOf(1), 12, {interrupt}}}), ExitCode::Cancelled);
        QCOMPARE(names({"*"}).replaceInStrings(QRegularExpression("\\d{4}-[-0-9 ]+"), "DATE"),
                 files);
        QVERIFY2(m_messages.contains(state), qPrintable(m_messages));
        const int last = m_messages.lastIndexOf(QRegularExpression("\n(read|compare) "));
        QVERIFY2(m_messages.mid(last + 1).startsWith(phase), qPrintable(m_messages));
        QVERIFY(m_stack->save() == saveOf(1));
        QCOMPARE(m_answers.section('\n', -2), QString("0 cartridges done.\n"));
    }

    // Whatever the verdict of the ROM before.
    void interruptIsTheEndThatCounts()
    {
        DriveFault interrupt;
        interrupt.call = DriveCall::Close;
        interrupt.pathEnd = ".gba";
        interrupt.code = DriveErrorCode::None;
        interrupt.happens = [] { std::raise(SIGINT); };
        QCOMPARE(run({{strangeGbaGame(4 * kMebi), {}, 12, {interrupt}}}), ExitCode::Cancelled);
        QCOMPARE(names({"*"}), QStringList{"VIRTUAL.gba"});
    }

private:
    ExitCode run(const QVector<StackedCartridge> &cartridges)
    {
        ReportCapture capture(m_style);
        m_stack->put(cartridges);
        const ExitCode code = runBackup(m_options, capture.reporter(), kPauseMs);
        m_answers = capture.answers();
        m_messages = capture.messages();
        m_objects = m_style == OutputStyle::Json ? capture.objects() : QVector<QJsonObject>();
        return code;
    }

    // Files of the folder.
    QStringList names(const QStringList &patterns) const
    {
        return QDir(m_options.path).entryList(patterns, QDir::Files | QDir::Hidden, QDir::Name);
    }
    QByteArray content(const QString &name) const
    {
        return contentOf(QDir(m_options.path).filePath(name));
    }

    // The value of a line of a report, in the section with this heading.
    static QString lineOf(const QString &report, const QString &heading, const QString &key)
    {
        QString section;
        const QStringList lines = report.split('\n');
        for (int i = 0; i < lines.size(); ++i) {
            if (i > 0 && lines[i - 1].isEmpty())
                section = lines[i];
            else if (section == heading && lines[i].startsWith(key + "  "))
                return lines[i].mid(key.size()).trimmed();
        }
        return {};
    }

    static void checkHashes(const QString &report, const QString &heading, const QByteArray &bytes)
    {
        QCOMPARE(lineOf(report, heading, "Bytes"), QString::number(bytes.size()));
        QCOMPARE(lineOf(report, heading, "MD5"), hashOf(bytes, QCryptographicHash::Md5));
        QCOMPARE(lineOf(report, heading, "SHA-1"), hashOf(bytes, QCryptographicHash::Sha1));
        QCOMPARE(lineOf(report, heading, "SHA-256"), hashOf(bytes, QCryptographicHash::Sha256));
        QCOMPARE(lineOf(report, heading, "CRC-32"),
                 QString("%1").arg(referenceCrc32(0, bytes), 8, 16, QChar('0')));
        QCOMPARE(lineOf(report, heading, "Reads"), QString("2"));
    }

    std::unique_ptr<QTemporaryDir> m_temporary;
    std::unique_ptr<CartridgeStack> m_stack;
    CliOptions m_options;
    OutputStyle m_style = OutputStyle::Text;
    QString m_answers;
    QString m_messages;
    QVector<QJsonObject> m_objects;
};

GBDRIVER_TEST(BackupCommandTest, core)
#include "backup_command_test.moc"
