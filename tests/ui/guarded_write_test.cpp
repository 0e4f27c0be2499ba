// Writes from the window with everything that stands around them: what is kept before the worker
// starts, when it does not start at all, and what the judgement behind the rule says.
#include "drive_faults.h"
#include "guarded_write_cases.h"
#include "log_check.h"
#include "test_class.h"

#include "cart/setting_tables.h"
#include "ui/guarded_job.h"
#include "worker/famicom_thread.h"

#include <QPushButton>
#include <QtTest>

using namespace virtual_reader;

namespace
{

const QString kNotBegun = "refused: The write was not begun; the cartridge was read, which also "
                          "writes to its bus.";
const QString kNotWritten = "refused: Nothing was written; the cartridge is as it was.";

} // namespace

class GuardedWriteTest : public QObject
{
    Q_OBJECT

private slots:
    void writeIsKeptMadeAndCompared_data();
    void writeIsKeptMadeAndCompared();
    void uncomparedWriteSaysSo();
    void longFileIsWrittenAsFarAsItFits();
    void writeThatDidNothingIsFailed_data();
    void writeThatDidNothingIsFailed();
    void badWriteIsNotBegun_data();
    void badWriteIsNotBegun();
    void blankFileIsWarnedOf_data();
    void blankFileIsWarnedOf();
    void partOfAChipIsNoBackup_data();
    void partOfAChipIsNoBackup();
    void gbaFlashSaysWhy();
    void nothingIsComparedAcrossAWrite();
    void saveThatReadsDifferentlyIsNotReplaced();
    void shortFileWritesNothing();
    void errorBehindTheEraseNamesTheBackup();
    void folderThatCannotBeMadeRefuses();
    void markupIsShownAsItIs();
    void cancelBeforeTheWriteStopsIt_data();
    void cancelBeforeTheWriteStopsIt();
    void unguardedWriteIsTheBareJob_data();
    void unguardedWriteIsTheBareJob();
};

void GuardedWriteTest::writeIsKeptMadeAndCompared_data()
{
    QTest::addColumn<WriteCase>("row");
    QTest::newRow("GB save") << gbSave(noise(32 * kKiB, 2));
    QTest::newRow("blank GB save of the header's size")
        << gbSave(noise(32 * kKiB, 2), QByteArray(32 * kKiB, '\xFF'));
    QTest::newRow("GBA SRAM") << gbaSave(GbaSaveType::Sram, kSaveSram, 32 * kKiB);
    QTest::newRow("GBA FLASH 64 KiB") << gbaSave(GbaSaveType::Flash, kSaveFlash, 64 * kKiB);
    QTest::newRow("GBA FLASH 128 KiB") << gbaSave(GbaSaveType::Flash, kSaveFlash, 128 * kKiB);
    QTest::newRow("GBA EEPROM 512 bytes") << gbaSave(GbaSaveType::Eeprom, kSaveEeprom, 512);
    QTest::newRow("GBA EEPROM 8 KiB") << gbaSave(GbaSaveType::Eeprom, kSaveEeprom, 8 * kKiB);
    QTest::newRow("flash, 8 bit") << narrowFlash(gbFile(32 * kKiB, 0));
    QTest::newRow("flash, 16 bit") << wideFlash(gbFile(64 * kKiB), 64 * kKiB);
}

void GuardedWriteTest::writeIsKeptMadeAndCompared()
{
    QFETCH(WriteCase, row);
    const auto window = windowFor(row);
    const QByteArray old = contentOf(*window, row);
    window->run(row.button, window->bench().addFile("new", row.file));

    QCOMPARE(window->judgement(),
             QString("written: %1 bytes, read back and equal").arg(row.file.size()));
    QVERIFY(contentOf(*window, row) == row.file);
    QVERIFY(old != row.file);
    QVERIFY(onlyBackup(*window) == old);
    QVERIFY(window->judgements().contains("What the cartridge held before is in " +
                                          window->backups().firstKey()));
}

void GuardedWriteTest::uncomparedWriteSaysSo()
{
    const WriteCase row = unticked(gbSave(noise(32 * kKiB, 2)));
    const auto window = windowFor(row);
    const QByteArray old = window->bench().save();
    const QString path = window->bench().addFile("new", row.file);
    window->run(row.button, path);
    QCOMPARE(window->judgement(),
             QString("written: 32768 bytes; nothing was read back and compared"));
    QVERIFY(window->tab().console->toHtml().contains("background-color:#fff3c9"));
    QVERIFY(window->bench().save() == row.file);
    QVERIFY(onlyBackup(*window) == old);
    // What stands between the action's line and its rule is what it was before there was a guard.
    COMPARE_LOG(window->tab(),
                (QStringList{"Writing save to cartridge from file:\n" + path, "Read file :" + path,
                             "Read 32768 Bytes", "Start write save...", "Write save finish.",
                             ">Success!", "<hr><br>"}));
}

void GuardedWriteTest::longFileIsWrittenAsFarAsItFits()
{
    const WriteCase row = gbSave(noise(128 * kKiB, 2));
    const auto window = windowFor(row);
    const QByteArray old = window->bench().save();
    window->run(row.button, window->bench().addFile("new", row.file));
    QCOMPARE(window->judgement(),
             QString("written: only the first 32768 of 131072 bytes of the file, read back and "
                     "equal"));
    QVERIFY(window->tab().console->toHtml().contains("background-color:#fff3c9"));
    QVERIFY(window->bench().save() == row.file.left(32 * kKiB));
    QVERIFY(onlyBackup(*window) == old);
}

void GuardedWriteTest::writeThatDidNothingIsFailed_data()
{
    QTest::addColumn<WriteCase>("row");
    QTest::addColumn<bool>("isKept");
    const QByteArray file = withoutErased(noise(32 * kKiB, 2));
    QTest::newRow("write-protected chip") << narrowFlash(file, true) << true;
    QTest::newRow("empty slot") << emptySlot(narrowFlash(file)) << false;
}

void GuardedWriteTest::writeThatDidNothingIsFailed()
{
    QFETCH(WriteCase, row);
    QFETCH(bool, isKept);
    const auto window = windowFor(row);
    const QByteArray old = window->bench().busBytes(0, 32 * kKiB);
    int differing = 0;
    for (int at = 0; at < old.size(); ++at)
        differing += old[at] != row.file[at] ? 1 : 0;
    window->run(row.button, window->bench().addFile("new", row.file));

    QVERIFY(window->log().contains(">Success!"));
    const QString judgement = window->judgement();
    QVERIFY2(judgement.startsWith(
                 QString("failed: The cartridge does not hold what was written: %1 of 32768 bytes")
                     .arg(differing)),
             qPrintable(judgement));
    QVERIFY(differing > 32000);
    QVERIFY(window->bench().busBytes(0, 32 * kKiB) == old);
    QCOMPARE(window->backups().size(), isKept ? 1 : 0);
    if (!isKept)
        return;
    QVERIFY(onlyBackup(*window) == old);
    QVERIFY(window->judgements().contains(window->backups().firstKey()));
    QVERIFY(window->judgements().contains("write that file with FLASH"));
}

void GuardedWriteTest::badWriteIsNotBegun_data()
{
    QTest::addColumn<WriteCase>("row");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<QString>("advice");
    QTest::addColumn<bool>("isRead"); // with writes to the bus
    const QString switchOff = "turn \"Guard writes\" off in the menu at the top right";
    const QByteArray save = noise(32 * kKiB, 2);
    QTest::newRow("empty slot, nobody would notice")
        << unticked(emptySlot(narrowFlash(gbFile(32 * kKiB, 0))))
        << "No flash chip answers and every byte is FF"
        << "tick \"Verify the data after writing\"" << true;
    QTest::newRow("file larger than the chip")
        << wideFlash(gbFile(2 * kMiB), kMiB)
        << "The file has 2097152 bytes, the flash chip 1048576." << switchOff << true;
    WriteCase shorter = gbSave(noise(8 * kKiB, 2), QByteArray(32 * kKiB, '\xFF'));
    shorter.select = [](JobWindow &window) { window.selectGb(kMapperMbc5Row, 65536, 8 * kKiB); };
    QTest::newRow("blank save of a size that only the user names")
        << shorter << "All bytes of the save are equal." << switchOff << true;
    WriteCase known = gbaSave(GbaSaveType::Flash, kSaveSram, 64 * kKiB);
    known.cartridge = [] { return gbaBoard(GbaSaveType::Flash, 64 * kKiB, "AWRP"); };
    QTest::newRow("game of another save type")
        << known << "The game table names another kind of save memory than was chosen"
        << "Press Info" << false;
    QTest::newRow("mapper that the header does not name")
        << behindMapper(1, gbSave(save)) << "The header names another mapper than was chosen"
        << "Press Info" << false;
    QTest::newRow("script that writes where the save is")
        << behindMapper(6, gbSave(save)) << "The header names another mapper than was chosen"
        << "Press Info" << false;
    QTest::newRow("chip that the mapper shows a part of")
        << behindMapper(0, wideFlash(gbFile(32 * kKiB, 0), 2 * kMiB))
        << "The chip is erased as a whole, and a backup of 32768 bytes may be only a part of it"
        << "Choose the mapper of the board" << true;
    WriteCase other = gbaSave(GbaSaveType::Sram, kSaveSram, 32 * kKiB);
    other.cartridge = gbSave(save).cartridge;
    QTest::newRow("cartridge of the other system")
        << other << "The cartridge is of another system than the settings say."
        << "Press Info" << false;
    WriteCase danger = gbSave(save);
    danger.cartridge = [] { return makeGbHeaderCartridge(0x22, 0, 0); };
    QTest::newRow("save that no job can move")
        << danger << "The save of an MBC7 cannot be read or written" << switchOff << false;
}

void GuardedWriteTest::badWriteIsNotBegun()
{
    QFETCH(WriteCase, row);
    QFETCH(QString, reason);
    QFETCH(QString, advice);
    QFETCH(bool, isRead);
    const auto window = windowFor(row);
    const QByteArray rom = window->bench().rom();
    const QByteArray save = window->bench().save();
    window->run(row.button, window->bench().addFile("new", row.file));

    QCOMPARE(window->judgement(), isRead ? kNotBegun : kNotWritten);
    const QString log = window->log();
    QVERIFY2(log.contains(reason), qPrintable(log));
    QVERIFY2(window->judgements().contains(advice), qPrintable(window->judgements()));
    QVERIFY(log.indexOf(reason) < log.indexOf("refused: "));
    QVERIFY(!log.contains("Read file"));
    QVERIFY(!log.contains(">Success!") && !log.contains(">Operation failure."));
    QVERIFY(window->bench().rom() == rom);
    QVERIFY(window->bench().save() == save);
    QCOMPARE(window->backups().size(), 0);
}

void GuardedWriteTest::blankFileIsWarnedOf_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("warns");
    QTest::newRow("erased") << QByteArray(32 * kKiB, '\xFF') << true;
    QTest::newRow("cleared") << QByteArray(32 * kKiB, '\0') << true;
    QTest::newRow("longer, what fits is cleared")
        << QByteArray(32 * kKiB, '\0') + QByteArray(8, 'x') << true;
    QTest::newRow("all but one byte")
        << QByteArray(32 * kKiB - 1, '\xFF') + QByteArray("x") << false;
}

void GuardedWriteTest::blankFileIsWarnedOf()
{
    QFETCH(QByteArray, file);
    QFETCH(bool, warns);
    const WriteCase row = gbSave(file);
    const auto window = windowFor(row);
    const QByteArray old = window->bench().save();
    const QString path = window->bench().addFile("new", file);
    window->run(row.button, path);
    const QString log = window->log();
    const int warning = log.indexOf("Warning: all bytes of " + path + " are equal.");
    QCOMPARE(warning >= 0, warns);
    if (warns) {
        QVERIFY(log.indexOf("Writing save to cartridge from file:") < warning);
        QVERIFY(warning < log.indexOf("Start write save..."));
    }
    QVERIFY(window->bench().save() == file.left(32 * kKiB));
    QVERIFY(onlyBackup(*window) == old);
}

// What was read is kept, though it is not all, and the write is not begun. What a larger save chip
// answers to the commands of a smaller one is blank.
void GuardedWriteTest::partOfAChipIsNoBackup_data()
{
    QTest::addColumn<WriteCase>("row");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<QString>("advice");
    QTest::addColumn<int>("backups");
    QTest::newRow("half of a save chip that is erased as a whole")
        << gbaSave(GbaSaveType::Flash, kSaveFlash, 128 * kKiB, 64 * kKiB)
        << "The save chip holds 128 KiB"
        << "Choose 128 K." << 0;
    QTest::newRow("flash chip that comes again and again behind another mapper")
        << behindMapper(1, wideFlash(gbFile(32 * kKiB), 2 * kMiB))
        << "The chip has 2097152 bytes, and what is read of it repeats its first 524288"
        << "Choose the mapper of the board" << 1;
}

void GuardedWriteTest::partOfAChipIsNoBackup()
{
    QFETCH(WriteCase, row);
    QFETCH(QString, reason);
    QFETCH(QString, advice);
    const auto window = windowFor(row);
    const QByteArray old = contentOf(*window, row);
    window->run(row.button, window->bench().addFile("new", row.file));
    QFETCH(int, backups);
    QCOMPARE(window->judgement(), kNotBegun);
    QVERIFY2(window->log().contains(reason), qPrintable(window->log()));
    QVERIFY2(window->judgements().contains(advice), qPrintable(window->judgements()));
    QCOMPARE(window->judgements().contains("What was read of the cartridge is in "), backups == 1);
    QVERIFY(contentOf(*window, row) == old);
    QCOMPARE(window->backups().size(), backups);
}

void GuardedWriteTest::gbaFlashSaysWhy()
{
    WriteCase row = gbaSave(GbaSaveType::Sram, kSaveSram, 32 * kKiB);
    row.button = &MainTab::flashButton;
    const auto window = windowFor(row);
    window->run(row.button, window->bench().addFile("new.gba", row.file));
    QCOMPARE(window->judgement(),
             QString("refused: The reader has no command that writes a GBA ROM. Nothing was "
                     "written; the cartridge is as it was."));
}

// A good file must not look bad because the cartridge holds something else now.
void GuardedWriteTest::nothingIsComparedAcrossAWrite()
{
    const WriteCase row = gbSave(noise(32 * kKiB, 2));
    const auto window = windowFor(row);
    window->run(&MainTab::readRamButton, window->bench().path("old.sav"));
    QVERIFY(window->tab().guarded->canReadAgain());
    window->run(row.button, window->bench().addFile("new", row.file));
    QVERIFY(!window->tab().guarded->canReadAgain());
}

void GuardedWriteTest::saveThatReadsDifferentlyIsNotReplaced()
{
    const WriteCase row = gbSave(noise(32 * kKiB, 2));
    const auto window = windowFor(row);
    const QByteArray old = window->bench().save();
    DriveFault flip = dumpReadFault(7); // of the second read
    flip.code = DriveErrorCode::None;
    flip.bytes = DriveFault::kAllBytes;
    flip.flips = 0x01;
    window->bench().drive().addFault(flip);
    window->run(row.button, window->bench().addFile("new", row.file));
    QCOMPARE(window->judgement(), kNotBegun);
    QVERIFY(window->log().contains("Two reads of the cartridge differ (bank "));
    QVERIFY(window->bench().save() == old);
    QVERIFY(window->backups().isEmpty());
}

void GuardedWriteTest::shortFileWritesNothing()
{
    const WriteCase row = gbSave(noise(8 * kKiB, 2));
    const auto window = windowFor(row);
    const QByteArray old = window->bench().save();
    window->run(row.button, window->bench().addFile("new", row.file));
    QCOMPARE(window->judgement(),
             QString("failed: The file is too short. The write was not begun; the cartridge was "
                     "read, which also writes to its bus."));
    QVERIFY(window->bench().save() == old);
}

void GuardedWriteTest::errorBehindTheEraseNamesTheBackup()
{
    const WriteCase row = gbaSave(GbaSaveType::Flash, kSaveFlash, 64 * kKiB);
    const unsigned commands = commandsOf(row);
    const auto window = windowFor(row);
    const QByteArray old = window->bench().save();
    window->bench().drive().addFault(commandFault(commands - 1, DriveFault::kForever));
    window->run(row.button, window->bench().addFile("new", row.file));

    const QString judgement = window->judgement();
    QVERIFY2(judgement.startsWith("incomplete: ") || judgement.startsWith("failed: "),
             qPrintable(judgement));
    QVERIFY2(judgement.contains("injected fault"), qPrintable(judgement));
    QVERIFY2(judgement.endsWith("The cartridge may be partly written."), qPrintable(judgement));
    QVERIFY(window->bench().save() != old);
    QVERIFY(window->bench().save() != row.file);
    QVERIFY(onlyBackup(*window) == old);
    QVERIFY(window->judgements().contains(window->backups().firstKey()));
    QVERIFY(window->judgements().contains("write that file with Write RAM"));
}

void GuardedWriteTest::folderThatCannotBeMadeRefuses()
{
    const WriteCase row = gbSave(noise(32 * kKiB, 2));
    const auto window = windowFor(row);
    const QByteArray old = window->bench().save();
    window->bench().addFile("backups", "a file");
    window->run(row.button, window->bench().addFile("new", row.file));
    QCOMPARE(window->judgement(), kNotWritten);
    QVERIFY(window->log().contains("Cannot make the folder " + window->bench().path("backups") +
                                   " for the backup."));
    QVERIFY(window->judgements().contains("turn \"Guard writes\" off"));
    QVERIFY(window->bench().save() == old);
}

// Part of a name that no file system minds and that markup would turn into something else.
void GuardedWriteTest::markupIsShownAsItIs()
{
    const QString name = "a &lt;b&gt; &amp;";
    const WriteCase row = gbSave(noise(32 * kKiB, 2));
    const auto window = windowFor(row);
    window->tab().guarded->backupFolder = window->bench().path(name);
    window->run(row.button, window->bench().addFile("new", row.file));
    QVERIFY2(window->judgements().contains("/" + name + "/"), qPrintable(window->judgements()));

    window->bench().addFile("file", "stands in the way");
    window->tab().guarded->backupFolder = window->bench().path("file/" + name);
    window->run(row.button, window->bench().path("new"));
    QVERIFY(window->log().contains("the folder " + window->bench().path("file/" + name)));
}

void GuardedWriteTest::cancelBeforeTheWriteStopsIt_data()
{
    QTest::addColumn<int>("call");
    QTest::addColumn<QString>("pathEnd");
    QTest::addColumn<unsigned>("after");
    QTest::newRow("while the cartridge is looked at") << int(DriveCall::Read) << "DUMP.ROM" << 0U;
    QTest::newRow("in the first read") << int(DriveCall::Read) << "DUMP.ROM" << 2U;
    QTest::newRow("in the second read") << int(DriveCall::Read) << "DUMP.ROM" << 7U;
    QTest::newRow("while the backup is written") << int(DriveCall::Write) << ".sav" << 0U;
}

void GuardedWriteTest::cancelBeforeTheWriteStopsIt()
{
    QFETCH(int, call);
    QFETCH(QString, pathEnd);
    QFETCH(unsigned, after);
    const WriteCase row = gbSave(noise(32 * kKiB, 2));
    const auto window = windowFor(row);
    const QByteArray old = window->bench().save();
    QPushButton *cancel = window->tab().cancelButton;
    DriveFault fault{static_cast<DriveCall>(call), pathEnd.toStdString(), after};
    fault.code = DriveErrorCode::None;
    fault.bytes = DriveFault::kAllBytes;
    bool isPressed = false;
    fault.happens = [cancel, &isPressed] {
        QMetaObject::invokeMethod(
            cancel, [cancel] { cancel->click(); }, Qt::BlockingQueuedConnection);
        isPressed = true;
    };
    window->bench().drive().addFault(fault);
    window->run(row.button, window->bench().addFile("new", row.file));

    QVERIFY(isPressed);
    QCOMPARE(window->judgement(),
             QString("stopped: The write was not begun; the cartridge was read, which also writes "
                     "to its bus."));
    QVERIFY(window->log().contains("Asked to stop before the write."));
    QVERIFY(!window->log().contains("Start write save..."));
    QVERIFY(window->bench().save() == old);
}

void GuardedWriteTest::unguardedWriteIsTheBareJob_data()
{
    QTest::addColumn<WriteCase>("row");
    QTest::newRow("GB save") << gbSave(noise(32 * kKiB, 2));
    QTest::newRow("GBA FLASH") << gbaSave(GbaSaveType::Flash, kSaveFlash, 64 * kKiB);
    QTest::newRow("flash, 8 bit") << narrowFlash(gbFile(32 * kKiB, 0));
    QTest::newRow("flash, 16 bit") << wideFlash(gbFile(64 * kKiB), 64 * kKiB);
}

void GuardedWriteTest::unguardedWriteIsTheBareJob()
{
    QFETCH(WriteCase, row);
    const UserFolder folder;
    const QString path = folder.addFile("new", row.file);
    auto window = windowFor(unticked(row));
    window->tab().guarded->guardsWrites = false;
    window->run(row.button, path);
    QCOMPARE(window->judgement(),
             QString("written: %1 bytes; nothing was read back and compared").arg(row.file.size()));
    QVERIFY(contentOf(*window, row) == row.file);
    QVERIFY(window->backups().isEmpty());
    QVERIFY(!window->judgements().contains("What the cartridge held before"));
    const QStringList traffic = window->bench().traffic();
    const CartridgeJob job = window->tab().worker->job();
    window.reset();
    QCOMPARE(traffic, bareTraffic(row.cartridge(), job, path));
}

GBDRIVER_TEST(GuardedWriteTest, gui)
#include "guarded_write_test.moc"
