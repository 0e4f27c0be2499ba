// No single fault makes a bad read look good: a read that is called right is the cartridge, byte
// for byte, and any other leaves no file under the name that was asked for, or the old one.
#include "bench_cases.h"
#include "cart/setting_tables.h"
#include "drive_faults.h"
#include "test_class.h"

#include <QtTest>

using namespace virtual_reader;

namespace
{

BenchCase replacing(BenchCase bench)
{
    bench.replaces = true;
    return bench;
}

BenchCase dump(const BenchCase &bench, int romSize)
{
    BenchCase dumped = with(BenchCommand::Dump, bench);
    dumped.cartridge.romSize = static_cast<std::uint32_t>(romSize);
    if (dumped.cartridge.isGba)
        dumped.values.romSize = romSize;
    return dumped;
}

BenchCase known(BenchCase bench)
{
    bench.isKnown = true;
    return bench;
}

bool isCalledRight(const BenchRun &run)
{
    return run.code == ExitCode::Done || run.code == ExitCode::Unverified;
}

// A dump that contradicts itself is kept, for those of hacks do as well; but it replaces nothing.
bool isCalledSuspicious(const BenchRun &run)
{
    return run.code == ExitCode::DataMismatch && run.answers.contains("suspicious");
}

QStringList problemsOfRead(const BenchCase &bench, const BenchRun &run)
{
    QStringList problems;
    const bool isOldFile = bench.replaces && run.hasFile && run.file == kOldFile;
    const bool isAsBefore = bench.replaces ? isOldFile : !run.hasFile;
    if (run.found != run.old)
        problems << "a read has changed the cartridge";
    if (isCalledRight(run) && !(run.hasFile && isSameContent(bench, run.file, run.wanted)))
        problems << "the file is not the cartridge";
    const bool mayBeKept = isCalledSuspicious(run) && !bench.replaces;
    if (!isCalledRight(run) && !mayBeKept && !isAsBefore)
        problems << "a failed read has left a file of " + QString::number(run.file.size());
    for (const QByteArray &kept : run.unverified) {
        if (isCalledRight(run) || !isSameContent(bench, kept, run.wanted))
            problems << "what is kept of a first read is wrong";
    }
    if (!run.leftovers.isEmpty())
        problems << "temporary files are left: " + run.leftovers.join(", ");
    if (!isCalledRight(run) && run.told.isEmpty() && run.answers.isEmpty())
        problems << "it says nothing";
    return problems;
}

} // namespace

class ReadFaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanRunIsCalledRight_data() { addCases(); }
    void cleanRunIsCalledRight();
    void secondReadThatFailsKeepsTheFirst();
    void fullDiskIsToldBeforeTheRead();
    void noSingleFaultMakesABadFile_data() { addCases(); }
    void noSingleFaultMakesABadFile();

private:
    static void addCases();
};

void ReadFaultsTest::addCases()
{
    const BenchCase sram = with(BenchCommand::ReadRam, gbSave(0x1B, 32 * kKibi));
    const BenchCase gba = gbaSave(GbaSaveType::Sram, kSaveSram, 32768);
    QTest::addColumn<BenchCase>("bench");
    QTest::newRow("GB save") << sram;
    QTest::newRow("GB save over an old file") << replacing(sram);
    QTest::newRow("MBC2 save") << with(BenchCommand::ReadRam, gbSave(0x06, 512, '\x0F'));
    QTest::newRow("GBA SRAM") << with(BenchCommand::ReadRam, gba);
    QTest::newRow("GBA EEPROM over an old file")
        << replacing(with(BenchCommand::ReadRam, gbaSave(GbaSaveType::Eeprom, kSaveEeprom, 8192)));
    QTest::newRow("GB ROM") << dump(sram, 65536);
    QTest::newRow("GB ROM over an old file") << replacing(dump(sram, 65536));
    QTest::newRow("known GB ROM, read once") << known(dump(sram, 65536));
    QTest::newRow("GBA ROM") << dump(gba, 1048576);
}

void ReadFaultsTest::cleanRunIsCalledRight()
{
    QFETCH(BenchCase, bench);
    const BenchRun run = runOnBench(bench);
    QVERIFY2(isCalledRight(run), qPrintable(run.told + run.answers));
    QCOMPARE(run.answers.startsWith("verified"), bench.isKnown);
    QCOMPARE(problemsOfRead(bench, run), QStringList());
}

// The second half of the reads of the cartridge is the second read.
void ReadFaultsTest::secondReadThatFailsKeepsTheFirst()
{
    const BenchCase bench = with(BenchCommand::ReadRam, gbSave(0x1B, 32 * kKibi));
    DriveFault fault = dumpReadFault(0);
    const std::uint32_t reads = runOnBench(bench).dumpReads;
    fault.after = reads - 1;
    const BenchRun run = runOnBench(bench, {fault});
    QCOMPARE(run.code, ExitCode::TransferFailed);
    QVERIFY(!run.hasFile);
    QCOMPARE(run.unverified, QList<QByteArray>({run.wanted}));
    QVERIFY2(run.told.contains("What was read once, and not compared, is in "),
             qPrintable(run.told));
}

void ReadFaultsTest::fullDiskIsToldBeforeTheRead()
{
    for (const bool isReplacing : {false, true}) {
        BenchCase bench = with(BenchCommand::ReadRam, gbSave(0x1B, 32 * kKibi));
        bench.replaces = isReplacing;
        DriveFault full;
        full.call = DriveCall::Reserve;
        full.code = DriveErrorCode::Full;
        const BenchRun run = runOnBench(bench, {full});
        QCOMPARE(run.code, ExitCode::FileError);
        QVERIFY2(run.told.endsWith("Nothing was read.\n"), qPrintable(run.told));
        QVERIFY(run.dumpReads < runOnBench(bench).dumpReads);
        QCOMPARE(problemsOfRead(bench, run), QStringList());
    }
}

void ReadFaultsTest::noSingleFaultMakesABadFile()
{
    QFETCH(BenchCase, bench);
    const FaultCount count = failEveryCall(bench, problemsOfRead);
    QVERIFY(count.injected > 0);
    QCOMPARE(count.problems, 0);
}

GBDRIVER_TEST(ReadFaultsTest, core)
#include "read_faults_test.moc"
