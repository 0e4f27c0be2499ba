// No single fault loses a save: whatever call on the reader or on the user's files goes wrong, aloud or
// in silence, the old bytes are in the cartridge or in a backup.
#include "bench_cases.h"
#include "cart/setting_tables.h"
#include "test_class.h"
#include "write_faults.h"

#include <QtTest>

using namespace virtual_reader;

class SaveFaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanRunReplacesTheContent_data() { addCases(); }
    void cleanRunReplacesTheContent();
    void noSingleFaultLosesTheContent_data() { addCases(); }
    void noSingleFaultLosesTheContent();

private:
    static void addCases();
};

void SaveFaultsTest::addCases()
{
    QTest::addColumn<BenchCase>("bench");
    QTest::newRow("GB SRAM") << gbSave(0x1B, 32 * kKibi);
    QTest::newRow("MBC2") << gbSave(0x06, 512, '\x0F');
    QTest::newRow("GBA SRAM") << gbaSave(GbaSaveType::Sram, kSaveSram, 32768);
    QTest::newRow("GBA EEPROM, 512 bytes") << gbaSave(GbaSaveType::Eeprom, kSaveEeprom, 512);
    QTest::newRow("GBA EEPROM, 8 KiB") << gbaSave(GbaSaveType::Eeprom, kSaveEeprom, 8192);
}

void SaveFaultsTest::cleanRunReplacesTheContent()
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

void SaveFaultsTest::noSingleFaultLosesTheContent()
{
    QFETCH(BenchCase, bench);
    const Ways ways = bench.cartridge.isGba ? Ways::InTurn : Ways::All;
    const FaultCount count = failEveryCallOfWrite(bench, ways);
    QVERIFY(count.injected > 0);
    QCOMPARE(count.problems, 0);
}

GBDRIVER_TEST(SaveFaultsTest, core)
#include "save_faults_test.moc"
