// No single fault loses what a write replaces: whatever call on the reader or on the user's files
// goes wrong, aloud or in silence, the old bytes are in the cartridge or in a backup.
#include "bench_cases.h"
#include "cart/setting_tables.h"
#include "test_class.h"
#include "write_faults.h"

#include <QtTest>

using namespace virtual_reader;

namespace
{

// Offset of the size in a 16-bit chip's answer to a query, 2^n bytes.
constexpr std::uint32_t kQuerySizeCode = 0x4E;

} // namespace

class WriteFaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanRunReplacesTheContent_data() { addCases(); }
    void cleanRunReplacesTheContent();
    void noSingleFaultLosesTheContent_data() { addCases(); }
    void noSingleFaultLosesTheContent();
    void misheardChipSizeLosesNothing();

private:
    static void addCases();
};

void WriteFaultsTest::addCases()
{
    QTest::addColumn<BenchCase>("bench");
    QTest::newRow("GB SRAM") << gbSave(0x1B, 32 * kKibi);
    QTest::newRow("MBC2") << gbSave(0x06, 512, '\x0F');
    QTest::newRow("GBA SRAM") << gbaSave(GbaSaveType::Sram, kSaveSram, 32768);
    QTest::newRow("GBA EEPROM, 512 bytes") << gbaSave(GbaSaveType::Eeprom, kSaveEeprom, 512);
    QTest::newRow("GBA EEPROM, 8 KiB") << gbaSave(GbaSaveType::Eeprom, kSaveEeprom, 8192);
    // What has to be erased before it is written.
    QTest::newRow("GBA FLASH, 64 KiB") << gbaSave(GbaSaveType::Flash, kSaveFlash, 65536);
    QTest::newRow("GBA FLASH, 128 KiB") << gbaSave(GbaSaveType::Flash, kSaveFlash, 131072);
    QTest::newRow("flash, 8 bit") << gbFlash(FlashWidth::Byte);
    QTest::newRow("flash, 16 bit") << gbFlash(FlashWidth::Word);
}

void WriteFaultsTest::cleanRunReplacesTheContent()
{
    QFETCH(BenchCase, bench);
    const BenchRun run = runOnBench(bench);
    QVERIFY2(run.code == ExitCode::Done, qPrintable(run.told));
    QVERIFY(!isSameContent(bench, run.old, run.wanted));
    QVERIFY(isSameContent(bench, run.found, run.wanted));
    QVERIFY(hasBackup(bench, run));
    QVERIFY(run.answers.contains(run.backups.firstKey()));
    QCOMPARE(problemsOfWrite(bench, run), QStringList());
}

void WriteFaultsTest::noSingleFaultLosesTheContent()
{
    QFETCH(BenchCase, bench);
    const FaultCount count = failEveryCall(bench, problemsOfWrite);
    QVERIFY(count.injected > 0);
    QCOMPARE(count.problems, 0);
}

// A chip that is taken for half of what it is would lose its other half.
void WriteFaultsTest::misheardChipSizeLosesNothing()
{
    BenchCase bench = gbFlash(FlashWidth::Word);
    bench.cartridge.romSize = 2048 * kKibi;
    bench.values.romSize = std::nullopt;
    bench.flashedBytes = 32 * kKibi;
    int stopped = 0;
    for (std::uint32_t read = 0; read < 6; ++read) {
        DriveFault fault;
        fault.pathEnd = "DUMP.ROM";
        fault.after = read;
        fault.code = DriveErrorCode::None;
        fault.bytes = DriveFault::kAllBytes;
        fault.flips = 0x01;
        fault.flippedByte = kQuerySizeCode;
        const BenchRun run = runOnBench(bench, {fault});
        QCOMPARE(problemsOfWrite(bench, run), QStringList());
        stopped += run.code == ExitCode::Done ? 0 : 1;
    }
    QVERIFY(stopped > 0);
}

GBDRIVER_TEST(WriteFaultsTest, core)
#include "write_faults_test.moc"
