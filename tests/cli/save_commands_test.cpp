// What write-ram does with files that do not fit, with folders that cannot hold a backup, and what
// a refused job says.
#include "bench_cases.h"
#include "test_class.h"
#include "write_faults.h"

#include "cart/setting_tables.h"

#include <QtTest>

using namespace virtual_reader;

namespace
{

constexpr int kSaveBytes = 8192;

BenchCase blank(BenchCase bench, char byte)
{
    const bool isGba = bench.cartridge.isGba;
    bench.save =
        QByteArray(int(isGba ? bench.cartridge.options.saveSize : bench.cartridge.ramSize), byte);
    return bench;
}

BenchCase writing(int fileBytes)
{
    BenchCase bench = gbSave(0x1B, kSaveBytes);
    bench.file = QByteArray(fileBytes, '\x5A');
    return bench;
}

} // namespace

class SaveCommandsTest : public QObject
{
    Q_OBJECT

private slots:
    void fileOfTheWrongSizeIsRefused_data();
    void fileOfTheWrongSizeIsRefused();
    void ignoredSizeWritesWhatFits_data();
    void ignoredSizeWritesWhatFits();
    void emptyFileIsRefusedAllTheSame();
    void noBackupMakesNone();
    void noBackupKeepsTheRestOfAShortFile();
    void noBackupDoesNotBelieveOneRead();
    void emptySaveOfANamedMemoryIsReplaced_data();
    void emptySaveOfANamedMemoryIsReplaced();
    void emptySaveThatOnlyTheUserNamesIsKept_data();
    void emptySaveThatOnlyTheUserNamesIsKept();
    void wrongCommandsDoNotPassAsAnEmptySave();
    void contradictionIsRefused_data();
    void contradictionIsRefused();
    void readMayTakeAnotherSize();
    void ignoredContradictionGoesOn();
    void textClaimsNoMoreThanIsKnown();
    void blankFileEarnsAWarning_data();
    void blankFileEarnsAWarning();
    void largerFlashChipIsNotErased();
    void wrongKindOfSaveIsNotErased();
    void partOfAFlashChipIsNoBackup();
    void takenBackupFolderStopsTheWrite();
    void saveCanBeErased();
    void reasonOfTheScriptIsTold();
    void refusedWriteIsToldOnce();
    void suspiciousSaveReplacesNothing();
};

void SaveCommandsTest::fileOfTheWrongSizeIsRefused_data()
{
    QTest::addColumn<int>("fileBytes");
    for (const int bytes : {1, 512, kSaveBytes - 1, kSaveBytes + 1, 4 * kSaveBytes})
        QTest::newRow(qPrintable(QString("%1 bytes").arg(bytes))) << bytes;
}

void SaveCommandsTest::fileOfTheWrongSizeIsRefused()
{
    QFETCH(int, fileBytes);
    const BenchRun run = runOnBench(writing(fileBytes));
    QCOMPARE(run.code, ExitCode::Refused);
    QCOMPARE(run.found, run.old);
    QVERIFY(run.backups.isEmpty());
    QVERIFY2(run.told.contains(QString("has %1 bytes, the save of the cartridge has %2.")
                                   .arg(fileBytes)
                                   .arg(kSaveBytes)),
             qPrintable(run.told));
    QVERIFY(run.told.contains("--ignore-size"));
}

void SaveCommandsTest::ignoredSizeWritesWhatFits_data()
{
    QTest::addColumn<int>("fileBytes");
    for (const int bytes : {1, kSaveBytes - 1, kSaveBytes + 1, 4 * kSaveBytes})
        QTest::newRow(qPrintable(QString("%1 bytes").arg(bytes))) << bytes;
}

void SaveCommandsTest::ignoredSizeWritesWhatFits()
{
    QFETCH(int, fileBytes);
    BenchCase bench = writing(fileBytes);
    bench.ignoresSize = true;
    const BenchRun run = runOnBench(bench);
    QVERIFY2(run.code == ExitCode::Done, qPrintable(run.told));
    QCOMPARE(run.found.size(), kSaveBytes);
    QCOMPARE(run.found, run.wanted);
    QVERIFY(run.wanted.startsWith(bench.file->left(kSaveBytes)));
    QVERIFY(hasBackup(bench, run));
}

void SaveCommandsTest::emptyFileIsRefusedAllTheSame()
{
    BenchCase bench = writing(0);
    bench.ignoresSize = true;
    const BenchRun run = runOnBench(bench);
    QCOMPARE(run.code, ExitCode::Refused);
    QCOMPARE(run.found, run.old);
}

void SaveCommandsTest::noBackupMakesNone()
{
    BenchCase bench = writing(kSaveBytes);
    bench.makesBackup = false;
    bench.isFolderTaken = true;
    const BenchRun run = runOnBench(bench);
    QVERIFY2(run.code == ExitCode::Done, qPrintable(run.told));
    QCOMPARE(run.found, *bench.file);
    QVERIFY(run.backups.isEmpty());
}

void SaveCommandsTest::noBackupKeepsTheRestOfAShortFile()
{
    BenchCase bench = writing(100);
    bench.makesBackup = false;
    bench.ignoresSize = true;
    const BenchRun run = runOnBench(bench);
    QVERIFY2(run.code == ExitCode::Done, qPrintable(run.told));
    QCOMPARE(run.found, *bench.file + run.old.mid(100));
}

// The rest comes from the cartridge, and is written back to it.
void SaveCommandsTest::noBackupDoesNotBelieveOneRead()
{
    BenchCase bench = writing(100);
    bench.makesBackup = false;
    bench.ignoresSize = true;
    DriveFault fault;
    fault.pathEnd = "DUMP.ROM";
    fault.after = 1; // behind the look
    fault.flips = 0x10;
    fault.code = DriveErrorCode::None;
    fault.bytes = DriveFault::kAllBytes;
    const BenchRun run = runOnBench(bench, {fault});
    QVERIFY2(run.code == ExitCode::DataMismatch, qPrintable(run.told));
    QCOMPARE(run.found, run.old);
}

// A new battery is the most usual reason for a restore.
void SaveCommandsTest::emptySaveOfANamedMemoryIsReplaced_data()
{
    QTest::addColumn<BenchCase>("bench");
    QTest::newRow("GB, erased") << blank(writing(kSaveBytes), '\xFF');
    QTest::newRow("GB, cleared") << blank(writing(kSaveBytes), '\0');
    BenchCase said = blank(writing(kSaveBytes), '\xFF');
    said.values.mapper = kMapperMbc5Row;
    said.values.ramSize = kSaveBytes;
    QTest::newRow("GB, and the user says the same") << said;
}

void SaveCommandsTest::emptySaveOfANamedMemoryIsReplaced()
{
    QFETCH(BenchCase, bench);
    const BenchRun run = runOnBench(bench);
    QVERIFY2(run.code == ExitCode::Done, qPrintable(run.told));
    QCOMPARE(run.found, *bench.file);
    QVERIFY(hasBackup(bench, run));
    QVERIFY2(run.answers.contains("backup: " + run.backups.firstKey()), qPrintable(run.answers));
}

// So reads a wrong kind of memory, and a chip that does not answer.
void SaveCommandsTest::emptySaveThatOnlyTheUserNamesIsKept_data()
{
    QTest::addColumn<BenchCase>("bench");
    BenchCase gba = gbaSave(GbaSaveType::Sram, 0, 32 * 1024); // a game that no table knows
    gba.file = QByteArray(32 * 1024, '\x5A');
    QTest::newRow("GBA") << blank(gba, '\xFF');
    BenchCase unseen = blank(writing(kSaveBytes), '\xFF');
    unseen.looks = false;
    unseen.values.system = kSystemGb;
    unseen.values.mapper = kMapperMbc5Row;
    unseen.values.ramSize = kSaveBytes;
    QTest::newRow("cartridge that is not looked at") << unseen;
    BenchCase larger = blank(writing(4 * kSaveBytes), '\xFF');
    larger.values.ramSize = 4 * kSaveBytes;
    larger.cartridge.headerType = 0x1A;
    QTest::newRow("size against the header") << larger;
}

void SaveCommandsTest::emptySaveThatOnlyTheUserNamesIsKept()
{
    QFETCH(BenchCase, bench);
    bench.ignoresSize = true;
    bench.ignoresContradiction = true;
    const BenchRun refused = runOnBench(bench);
    QVERIFY2(refused.code == ExitCode::Refused, qPrintable(refused.told));
    QCOMPARE(refused.found, refused.old);
    QVERIFY2(refused.told.contains("give --ignore-blank"), qPrintable(refused.told));
    QVERIFY(refused.backups.isEmpty());
    bench.ignoresBlank = true;
    const BenchRun ignored = runOnBench(bench);
    QVERIFY2(ignored.backups.size() == 1, qPrintable(ignored.told));
    QVERIFY(ignored.found != ignored.old);
}

// The case that lost a save: a type was named wrongly, its commands read FF, and the option that
// was meant for the size let a blank backup pass.
void SaveCommandsTest::wrongCommandsDoNotPassAsAnEmptySave()
{
    BenchCase bench = gbaSave(GbaSaveType::Sram, 1, 64 * 1024);
    bench.file = QByteArray(64 * 1024, '\x5A');
    bench.ignoresSize = true;
    bench.ignoresContradiction = true;
    const BenchRun run = runOnBench(bench);
    QVERIFY2(run.code == ExitCode::Refused, qPrintable(run.told));
    QCOMPARE(run.found, run.old);
}

// What --mapper and --ram-size say against the header.
void SaveCommandsTest::contradictionIsRefused_data()
{
    QTest::addColumn<BenchCase>("bench");
    QTest::addColumn<QString>("option");
    const auto add = [](const QString &name, BenchCommand command, int mapper, int size,
                        const char *option) {
        BenchCase bench = writing(size);
        bench.command = command;
        if (mapper >= 0)
            bench.values.mapper = mapper;
        if (size != kSaveBytes)
            bench.values.ramSize = size;
        QTest::newRow(qPrintable(name)) << bench << option;
    };
    const std::pair<const char *, BenchCommand> commands[] = {
        {"dump", BenchCommand::Dump},
        {"read-ram", BenchCommand::ReadRam},
        {"write-ram", BenchCommand::WriteRam}};
    for (const MapperRow &row : kMappers) {
        for (const auto &command : commands) {
            if (row.value != kMapperMbc5Row)
                add(QString("%1 as %2").arg(command.first, row.label), command.second, row.value,
                    kSaveBytes, "--mapper");
        }
    }
    add("size", BenchCommand::WriteRam, -1, 4 * kSaveBytes, "--ram-size");
    add("mapper and size", BenchCommand::WriteRam, 1, 4 * kSaveBytes, "--mapper");
}

void SaveCommandsTest::contradictionIsRefused()
{
    QFETCH(BenchCase, bench);
    QFETCH(QString, option);
    bench.ignoresSize = true;
    bench.ignoresBlank = true;
    const BenchRun run = runOnBench(bench);
    QVERIFY2(run.code == ExitCode::Refused, qPrintable(run.told));
    QCOMPARE(run.found, run.old);
    QVERIFY2(run.told.contains("Leave " + option + " out, or give --ignore-contradiction"),
             qPrintable(run.told));
    QVERIFY2(run.told.contains("The cartridge was only looked at."), qPrintable(run.told));
    QVERIFY(run.backups.isEmpty());
    QCOMPARE(run.hasFile, bench.command == BenchCommand::WriteRam);
}

// A read with another size changes nothing, and the header may be wrong.
void SaveCommandsTest::readMayTakeAnotherSize()
{
    BenchCase bench = with(BenchCommand::ReadRam, gbSave(0x1B, kSaveBytes));
    bench.values.ramSize = 4 * kSaveBytes;
    const BenchRun run = runOnBench(bench);
    QVERIFY2(run.hasFile, qPrintable(run.told));
    QCOMPARE(run.file.size(), 4 * kSaveBytes);
}

void SaveCommandsTest::ignoredContradictionGoesOn()
{
    BenchCase bench = with(BenchCommand::Dump, gbSave(0x1B, kSaveBytes));
    bench.values.mapper = 3; // its registers are the MBC5's for so small a ROM
    bench.ignoresContradiction = true;
    const BenchRun run = runOnBench(bench);
    QVERIFY2(run.code == ExitCode::Done, qPrintable(run.told));
    QCOMPARE(run.file, run.wanted);
}

// RAM without a gate, which the TAMA5's script writes over while it reads. The backup shows it, and
// nobody may say that the cartridge is as it was.
void SaveCommandsTest::textClaimsNoMoreThanIsKnown()
{
    BenchCase bench = gbSave(0x09, kSaveBytes);
    bench.cartridge.romSize = 32 * 1024;
    bench.values.mapper = 6;
    const BenchRun refused = runOnBench(bench);
    QCOMPARE(refused.code, ExitCode::Refused);
    QCOMPARE(refused.found, refused.old);
    bench.ignoresContradiction = true;
    const BenchRun run = runOnBench(bench);
    QCOMPARE(run.code, ExitCode::DataMismatch);
    QVERIFY(run.found != run.old);
    QVERIFY2(run.told.contains("The write was not begun; the cartridge was read, which also writes "
                               "to its bus."),
             qPrintable(run.told));
    QVERIFY2(!run.told.contains("as it was") && !run.told.contains("only read"),
             qPrintable(run.told));
}

void SaveCommandsTest::blankFileEarnsAWarning_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("warns");
    QTest::newRow("erased") << QByteArray(kSaveBytes, '\xFF') << true;
    QTest::newRow("cleared") << QByteArray(kSaveBytes, '\0') << true;
    QTest::newRow("all but one byte")
        << QByteArray(kSaveBytes - 1, '\xFF') + QByteArray("x") << false;
}

void SaveCommandsTest::blankFileEarnsAWarning()
{
    QFETCH(QByteArray, file);
    QFETCH(bool, warns);
    BenchCase bench = gbSave(0x1B, kSaveBytes);
    bench.file = file;
    bench.isTold = true;
    const BenchRun run = runOnBench(bench);
    QVERIFY2(run.code == ExitCode::Done, qPrintable(run.told));
    QCOMPARE(run.told.contains("Warning: all bytes of "), warns);
    QVERIFY(!warns || run.told.indexOf("Warning: ") < run.told.indexOf("Start write save"));
    QCOMPARE(run.found, file);
    QVERIFY(hasBackup(bench, run));
}

// An erase takes all 128 KiB, of which a job for 64 shows one half or nothing.
void SaveCommandsTest::largerFlashChipIsNotErased()
{
    BenchCase bench = gbaSave(GbaSaveType::Flash, 1, 128 * 1024);
    bench.values.ramSize = 64 * 1024;
    bench.file = QByteArray(64 * 1024, '\x5A');
    for (const bool ignores : {false, true}) {
        bench.ignoresSize = ignores;
        bench.ignoresContradiction = ignores;
        bench.ignoresBlank = ignores;
        const BenchRun run = runOnBench(bench);
        QVERIFY2(run.code == ExitCode::Refused, qPrintable(run.told));
        QCOMPARE(run.found, run.old);
        QVERIFY2(run.told.contains("Give --ram-size 128K"), qPrintable(run.told));
    }
}

void SaveCommandsTest::wrongKindOfSaveIsNotErased()
{
    BenchCase bench = gbaSave(GbaSaveType::Sram, 1, 64 * 1024);
    bench.file = QByteArray(64 * 1024, '\x5A');
    const BenchRun run = runOnBench(bench);
    QVERIFY2(run.code == ExitCode::Refused, qPrintable(run.told));
    QCOMPARE(run.found, run.old);
}

void SaveCommandsTest::partOfAFlashChipIsNoBackup()
{
    BenchCase bench = gbFlash(FlashWidth::Byte);
    bench.ignoresContradiction = false;
    const BenchRun run = runOnBench(bench);
    QCOMPARE(run.code, ExitCode::Refused);
    QCOMPARE(run.found, run.old);
    QVERIFY2(run.told.contains("a backup of 32768 bytes may be only a part of it"),
             qPrintable(run.told));
}

void SaveCommandsTest::takenBackupFolderStopsTheWrite()
{
    BenchCase bench = writing(kSaveBytes);
    bench.isFolderTaken = true;
    const BenchRun run = runOnBench(bench);
    QCOMPARE(run.code, ExitCode::FileError);
    QCOMPARE(run.found, run.old);
    QVERIFY(run.told.contains(
        "/backups for the backup. Name another with --backup. Nothing was written"));
}

void SaveCommandsTest::saveCanBeErased()
{
    BenchCase bench = gbaSave(GbaSaveType::Sram, 0, 32768);
    bench.file = QByteArray(32768, '\xFF');
    const BenchRun erased = runOnBench(bench);
    QCOMPARE(erased.code, ExitCode::Done);
    QVERIFY(hasBackup(bench, erased));
    QCOMPARE(erased.found, QByteArray(32768, '\xFF'));
}

void SaveCommandsTest::reasonOfTheScriptIsTold()
{
    BenchCase bench = with(BenchCommand::Dump, gbSave(0x1B, kSaveBytes));
    bench.values.romSize = 48 * 1024;
    const BenchRun run = runOnBench(bench);
    QCOMPARE(run.code, ExitCode::Refused);
    QVERIFY2(run.told.contains("MBC5: cannot read a ROM of 49152 bytes"), qPrintable(run.told));
    QVERIFY(!run.hasFile);
}

void SaveCommandsTest::refusedWriteIsToldOnce()
{
    constexpr int kNoSaveSize = 16 * 1024;
    BenchCase bench = writing(kNoSaveSize);
    bench.values.ramSize = kNoSaveSize;
    bench.ignoresContradiction = true;
    bench.makesBackup = false;
    const BenchRun run = runOnBench(bench);
    QCOMPARE(run.code, ExitCode::Refused);
    QCOMPARE(run.found, run.old);
    QVERIFY2(run.told.startsWith("refused: MBC5: cannot read or write a save of 16384 bytes"),
             qPrintable(run.told));
    QCOMPARE(run.told.count("Nothing was written; the cartridge is as it was."), 1);
}

// What a cartridge with an empty battery or dirty contacts gives.
void SaveCommandsTest::suspiciousSaveReplacesNothing()
{
    BenchCase bench = with(BenchCommand::ReadRam, gbSave(0x1B, kSaveBytes));
    bench.save = QByteArray(kSaveBytes, '\xFF');
    bench.replaces = true;
    const BenchRun over = runOnBench(bench);
    QCOMPARE(over.code, ExitCode::DataMismatch);
    QVERIFY(over.answers.startsWith("suspicious"));
    QCOMPARE(over.file, kOldFile);
    QVERIFY2(over.answers.contains("file.suspicious: 8192 bytes"), qPrintable(over.answers));
    bench.replaces = false;
    const BenchRun fresh = runOnBench(bench);
    QCOMPARE(fresh.code, ExitCode::DataMismatch);
    QCOMPARE(fresh.file, *bench.save);
}

GBDRIVER_TEST(SaveCommandsTest, core)
#include "save_commands_test.moc"
