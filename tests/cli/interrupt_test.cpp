// Ctrl-C at every single moment of a command, on the reader in this process: whatever the moment,
// no half file lies under the final name and the save is in the cartridge or in the backup.
#include "cartridge_stack.h"
#include "cli/commands.h"
#include "cli/interrupt.h"
#include "cli/shell_word.h"
#include "program_run.h"
#include "report_capture.h"
#include "script/erase_poll.h"
#include "test_class.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

using namespace virtual_reader;

namespace
{

constexpr std::uint32_t kKibi = 1024;
constexpr std::uint8_t kMbc5 = 0x19;
constexpr std::uint8_t kMbc5RamBattery = 0x1B;
constexpr int kFilesBeforeTheRead = 3; // the one that is read into; two commands select the bus
constexpr int kManySearches = 1000;
constexpr int kMostMoments = 500;

int looks = 0; // at a chip that is being erased

using Command = ExitCode (*)(const CliOptions &, Reporter &);

// The first look of an erase poll presses Ctrl-C; the next ones only come sooner than in life.
void interruptTheErase(unsigned long)
{
    if (!wasInterrupted())
        std::raise(SIGINT);
}

} // namespace

Q_DECLARE_METATYPE(CliRequest)
Q_DECLARE_METATYPE(Command)

class InterruptTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_stack = std::make_unique<CartridgeStack>();
        m_options = CliOptions();
        m_options.backupFolder = path("backups");
        m_old = noise(8 * kKibi, 1);
        m_new = noise(8 * kKibi, 2);
        m_image = stackedImage(GbImageSpec{kMbc5RamBattery, 64 * kKibi, 8 * kKibi, "CUT", 1});
        watchForInterrupt();
    }

    void cleanup()
    {
        setPollWaiter(nullptr);
        m_stack.reset();
        std::signal(SIGINT, SIG_DFL);
    }

    void readLeavesNoFileOfItsName_data()
    {
        QTest::addColumn<CliRequest>("request");
        QTest::addColumn<Command>("command");
        QTest::addColumn<bool>("readsTwice");
        QTest::newRow("dump") << CliRequest::Dump << Command(runDump) << true;
        QTest::newRow("dump, read once") << CliRequest::Dump << Command(runDump) << false;
        QTest::newRow("read-ram") << CliRequest::ReadRam << Command(runReadRam) << true;
        QTest::newRow("read-ram, once") << CliRequest::ReadRam << Command(runReadRam) << false;
    }
    void readLeavesNoFileOfItsName()
    {
        QFETCH(CliRequest, request);
        QFETCH(Command, command);
        QFETCH(bool, readsTwice);
        prepare(request, path("file"));
        m_options.verifies = readsTwice;
        int moment = 0;
        int kept = 0;
        while (interruptAt(++moment, command) == ExitCode::Cancelled) {
            const bool isKept = m_messages.contains("What was read once, and not compared, is in");
            QCOMPARE(filesIn(""), isKept ? QStringList({"file.unverified"}) : QStringList());
            if (isKept)
                QVERIFY(contentOf(path("file.unverified")) ==
                        (request == CliRequest::Dump ? m_image : m_old));
            kept += isKept ? 1 : 0;
            QFile::remove(path("file.unverified"));
            QVERIFY(m_stack->save() == m_old);
            QVERIFY2(saysUnchanged(), qPrintable(m_messages));
            QCOMPARE(m_messages.contains("Start dump"), moment > kFilesBeforeTheRead);
            QVERIFY(moment < kMostMoments);
        }
        // Past the last moment nobody presses anything.
        QVERIFY(!wasInterrupted());
        QVERIFY(moment > 5);
        QVERIFY(kept > 0);
        QCOMPARE(filesIn(""), QStringList{"file"});
    }

    // Also between backup and write, where the backup's file is written.
    void saveIsInTheCartridgeOrInTheBackup()
    {
        putFile(path("new.sav"), m_new);
        prepare(CliRequest::WriteRam, path("new.sav"));
        int cancelled = 0;
        int finished = 0;
        int moment = 0;
        for (bool isPressed = true; isPressed; ++moment) {
            QVERIFY(moment < kMostMoments);
            QVERIFY(QDir(m_options.backupFolder).removeRecursively());
            const ExitCode code = interruptAt(moment + 1, runWriteRam);
            isPressed = wasInterrupted();
            const QStringList backups = filesIn("backups");
            QVERIFY(backups.filter(".part").isEmpty());
            if (code == ExitCode::Cancelled) {
                QCOMPARE(finished, 0); // a write that has begun is brought to its end
                QVERIFY(m_stack->save() == m_old);
                QVERIFY2(saysUnchanged(), qPrintable(m_messages));
                ++cancelled;
            } else {
                QCOMPARE(code, ExitCode::Done);
                QVERIFY(m_stack->save() == m_new);
                QCOMPARE(backups.size(), 1);
                QVERIFY(contentOf(path("backups/" + backups[0])) == m_old);
                ++finished;
            }
        }
        QVERIFY2(cancelled > 5 && finished > 5,
                 qPrintable(QString("%1 and %2").arg(cancelled).arg(finished)));
    }

    void stopBeforeTheWriteNamesTheBackup()
    {
        putFile(path("new.sav"), m_new);
        prepare(CliRequest::WriteRam, path("new.sav"));
        DriveFault press;
        press.call = DriveCall::Close;
        press.pathEnd = ".sav";
        press.code = DriveErrorCode::None;
        press.happens = [] { std::raise(SIGINT); };
        m_cartridge.faults = {press};
        QCOMPARE(run(runWriteRam), ExitCode::Cancelled);
        const QStringList backups = filesIn("backups");
        QCOMPARE(backups.size(), 1);
        QVERIFY(contentOf(path("backups/" + backups[0])) == m_old);
        QVERIFY(m_stack->save() == m_old);
        QVERIFY2(
            m_messages.contains("Asked to stop before the write. The write was not "
                                "begun; the cartridge was read, which also writes to its bus."),
            qPrintable(m_messages));
        QVERIFY2(m_messages.contains("Backup: " + m_options.backupFolder), qPrintable(m_messages));
        QVERIFY2(!m_messages.contains("Write file"), qPrintable(m_messages));
    }

    void endlessEraseOfAChipIsLeft()
    {
        const QByteArray rom = stackedImage(GbImageSpec{kMbc5, 64 * kKibi, 0, "OLD", 1});
        const QByteArray other = stackedImage(GbImageSpec{kMbc5, 64 * kKibi, 0, "NEW", 2});
        putFile(path("new.gb"), other);
        prepare(CliRequest::Flash, path("new.gb"));
        m_cartridge = {rom, {}, kManySearches};
        m_cartridge.options.flash = FlashWidth::Byte;
        m_cartridge.options.flashChip.eraseNeverEnds = true;
        setPollWaiter(interruptTheErase);
        QCOMPARE(run(runFlash), ExitCode::Cancelled);
        checkEraseWasLeft(rom, "flash");
    }

    // Nobody asks to stop: the chip's own size says how long it may take.
    void endlessEraseOfAChipIsGivenUp()
    {
        const QByteArray rom = stackedImage(GbImageSpec{kMbc5, 1024 * kKibi, 0, "OLD", 1});
        putFile(path("new.gb"), stackedImage(GbImageSpec{kMbc5, 64 * kKibi, 0, "NEW", 2}));
        prepare(CliRequest::Flash, path("new.gb"));
        m_cartridge = {rom, {}, kManySearches};
        m_cartridge.options.flash = FlashWidth::Word;
        m_cartridge.options.flashChip.eraseNeverEnds = true;
        looks = 0;
        setPollWaiter([](unsigned long /*timeMs*/) { ++looks; });
        QCOMPARE(run(runFlash), ExitCode::TransferFailed);
        QCOMPARE(looks, 300 + 128); // seconds, of 1 MiB
        QVERIFY2(m_messages.contains("the chip was not erased after 428 seconds"),
                 qPrintable(m_messages));
        const QStringList backups = filesIn("backups");
        QCOMPARE(backups.size(), 1);
        QVERIFY(contentOf(path("backups/" + backups[0])) == rom);
    }

    void endlessEraseOfASaveIsLeft()
    {
        const QByteArray old = noise(64 * kKibi, 1);
        putFile(path("new.sav"), noise(64 * kKibi, 2));
        prepare(CliRequest::WriteRam, path("new.sav"));
        GbaImageSpec game;
        game.code = "AWRP"; // FLASH of 64 KiB in the game table
        game.saveKind = SaveKind::Flash64k;
        m_cartridge = {stackedImage(game), old, kManySearches};
        m_cartridge.options.flashChip.eraseNeverEnds = true;
        setPollWaiter(interruptTheErase);
        QCOMPARE(run(runWriteRam), ExitCode::Cancelled);
        checkEraseWasLeft(old, "write-ram");
    }

private:
    // What the ways to stop before a write say of the cartridge.
    bool saysUnchanged() const
    {
        return m_messages.contains(
                   "stopped: Asked to stop; no file was made. The cartridge was only looked at.") ||
               m_messages.contains("The write was not begun; the cartridge was read, which also "
                                   "writes to its bus.") ||
               m_messages.contains("The cartridge was read, which also writes to its bus.");
    }

    QString path(const QString &name) const { return m_folder->filePath(name); }

    QStringList filesIn(const QString &folder) const
    {
        return QDir(path(folder)).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    void prepare(CliRequest request, const QString &file)
    {
        m_options.request = request;
        m_options.path = file;
        m_cartridge = {m_image, m_old, kManySearches};
    }

    ExitCode run(Command command)
    {
        ReportCapture capture(OutputStyle::Text);
        watchForInterrupt();
        m_stack->put({m_cartridge});
        const ExitCode code = command(m_options, capture.reporter());
        m_messages = capture.messages();
        return code;
    }

    // Ctrl-C when the `moment`th file is opened for writing: every command to the reader is one,
    // and so is every file of the user's.
    ExitCode interruptAt(int moment, Command command)
    {
        int left = moment;
        m_stack->onWrite = [&left](const QByteArray &) {
            if (--left == 0)
                std::raise(SIGINT);
        };
        const ExitCode code = run(command);
        m_stack->onWrite = nullptr;
        return code;
    }

    void checkEraseWasLeft(const QByteArray &old, const QString &command)
    {
        const QStringList backups = filesIn("backups");
        QCOMPARE(backups.size(), 1);
        const QString backup = path("backups/" + backups[0]);
        QVERIFY(contentOf(backup) == old);
        for (const QString &text :
             {QString("Asked to stop."), QString("only the wait for an erase can be cut short"),
              QString("Stopped while the chip was being erased. What the chip held may be lost."),
              "gbdriver-cli " + command + " " + shellWord(backup)})
            QVERIFY2(m_messages.contains(text), qPrintable(text + "\n" + m_messages));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<CartridgeStack> m_stack;
    StackedCartridge m_cartridge;
    CliOptions m_options;
    QByteArray m_image;
    QByteArray m_old;
    QByteArray m_new;
    QString m_messages;
};

GBDRIVER_TEST(InterruptTest, core)
#include "interrupt_test.moc"
