// What write-ram does with files that do not fit, with folders that cannot hold a backup, and what
// a refused job says.
#include "bench_cases.h"
#include "test_class.h"
#include "write_faults.h"

#include <QtTest>

using namespace virtual_reader;

namespace
{

constexpr int kSaveBytes = 8192;

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
    void forceWritesWhatFits_data();
    void forceWritesWhatFits();
    void emptyFileIsRefusedEvenByForce();
    void noBackupMakesNone();
    void noBackupKeepsTheRestOfAShortFile();
    void noBackupDoesNotBelieveOneRead();
    void emptySaveTakesTheUsersWord();
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
    QVERIFY(run.told.contains("--force"));
}

void SaveCommandsTest::forceWritesWhatFits_data()
{
    QTest::addColumn<int>("fileBytes");
    for (const int bytes : {1, kSaveBytes - 1, kSaveBytes + 1, 4 * kSaveBytes})
        QTest::newRow(qPrintable(QString("%1 bytes").arg(bytes))) << bytes;
}

void SaveCommandsTest::forceWritesWhatFits()
{
    QFETCH(int, fileBytes);
    BenchCase bench = writing(fileBytes);
    bench.forces = true;
    const BenchRun run = runOnBench(bench);
    QVERIFY2(run.code == ExitCode::Done, qPrintable(run.told));
    QCOMPARE(run.found.size(), kSaveBytes);
    QCOMPARE(run.found, run.wanted);
    QVERIFY(run.wanted.startsWith(bench.file->left(kSaveBytes)));
    QVERIFY(hasBackup(bench, run));
}

void SaveCommandsTest::emptyFileIsRefusedEvenByForce()
{
    BenchCase bench = writing(0);
    bench.forces = true;
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
    bench.forces = true;
    const BenchRun run = runOnBench(bench);
    QVERIFY2(run.code == ExitCode::Done, qPrintable(run.told));
    QCOMPARE(run.found, *bench.file + run.old.mid(100));
}

// The rest comes from the cartridge, and is written back to it.
void SaveCommandsTest::noBackupDoesNotBelieveOneRead()
{
    BenchCase bench = writing(100);
    bench.makesBackup = false;
    bench.forces = true;
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

void SaveCommandsTest::emptySaveTakesTheUsersWord()
{
    BenchCase bench = writing(kSaveBytes);
    bench.save = QByteArray(kSaveBytes, '\xFF');
    const BenchRun refused = runOnBench(bench);
    QCOMPARE(refused.code, ExitCode::Refused);
    QCOMPARE(refused.found, *bench.save);
    bench.forces = true;
    const BenchRun forced = runOnBench(bench);
    QVERIFY2(forced.code == ExitCode::Done, qPrintable(forced.told));
    QCOMPARE(forced.found, *bench.file);
    QVERIFY(hasBackup(bench, forced));
}

// An erase takes all 128 KiB, of which a job for 64 shows one half or nothing.
void SaveCommandsTest::largerFlashChipIsNotErased()
{
    BenchCase bench = gbaSave(GbaSaveType::Flash, 1, 128 * 1024);
    bench.values.ramSize = 64 * 1024;
    bench.file = QByteArray(64 * 1024, '\x5A');
    for (const bool forces : {false, true}) {
        bench.forces = forces;
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
    bench.forces = false;
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
    bench.forces = true;
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
