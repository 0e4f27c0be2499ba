// Second reads: what differs is found and named by its banks, and what a memory does not keep is
// not looked at.
#include "trust/checked_read.h"

#include "script_folder.h"
#include "test_class.h"
#include "trust_bench.h"

#include <QtTest>

using namespace virtual_reader;

class CheckedReadTest : public QObject
{
    Q_OBJECT

private slots:
    void shapesFollowTheMemory_data();
    void shapesFollowTheMemory();
    void differencesNameBanks();
    void otherLengthIsADifference();
    void bitsThatAreNotKeptAreNotCompared();
    void blocksOfEveryShapeAreNamed();
    void readHasTheHashOfItsBytes_data();
    void readHasTheHashOfItsBytes();
    void readThatFailsHasNoBytes();
    void holeInARomIsNoRead();
    void missingScriptIsNamed();
    void phaseTellsHowMuchWillMove();
    void equalReadsDifferNowhere();
    void secondReadThatDiffersIsNamed();
    void readingEndsWithTheFirstDifference();
    void failedReadIsTold();
    void stopEndsTheReading_data();
    void stopEndsTheReading();
    void listenerHearsEveryPhase();
};

void CheckedReadTest::shapesFollowTheMemory_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<QString>("script");
    QTest::addColumn<int>("blockBytes");
    QTest::addColumn<int>("bits");
    QTest::newRow("GB ROM") << int(GB_READ_ROM) << "gb_mbc2.nut" << 0x4000 << 0xFF;
    QTest::newRow("GB save") << int(GB_READ_RAM) << "gb_mbc5.nut" << 0x2000 << 0xFF;
    QTest::newRow("MBC2 save") << int(GB_READ_RAM) << "gb_mbc2.nut" << 0x2000 << 0x0F;
    QTest::newRow("GBA ROM") << int(GBA_READ_ROM) << "gba.nut" << 0x10000 << 0xFF;
    QTest::newRow("GBA save") << int(GBA_READ_RAM) << "gba.nut" << 0x1000 << 0xFF;
}

void CheckedReadTest::shapesFollowTheMemory()
{
    QFETCH(int, operate);
    QFETCH(QString, script);
    QFETCH(int, blockBytes);
    QFETCH(int, bits);
    CartridgeJob job;
    job.operate = operate;
    job.scriptPath = "some/folder/" + script;
    const MemoryShape shape = shapeOf(job);
    QCOMPARE(int(shape.blockBytes), blockBytes);
    QCOMPARE(int(static_cast<unsigned char>(shape.bits)), bits);
}

void CheckedReadTest::differencesNameBanks()
{
    const MemoryShape shape{16, &kBankWords};
    const QByteArray bytes(128, 'a');
    QCOMPARE(differencesOf(bytes, bytes, shape), QString());
    QByteArray other = bytes;
    other[16] = 'b';
    QCOMPARE(differencesOf(bytes, other, shape), QString("bank 1 of 8"));
    for (const int at : {79, 80, 127})
        other[at] = 'b';
    QCOMPARE(differencesOf(bytes, other, shape), QString("banks 1, 4-5, 7 of 8"));
}

void CheckedReadTest::otherLengthIsADifference()
{
    const MemoryShape shape{16, &kBankWords};
    QCOMPARE(differencesOf("abc", "ab", shape), QString("their lengths: 3 and 2 bytes"));
    QCOMPARE(differencesOf("", "ab", shape), QString("their lengths: 0 and 2 bytes"));
}

void CheckedReadTest::bitsThatAreNotKeptAreNotCompared()
{
    const MemoryShape shape{16, &kBankWords, '\x0F'};
    QCOMPARE(keptBits("\x12\xF3", shape), QByteArray("\x02\x03"));
    QCOMPARE(differencesOf("\x12\xF3", "\xF2\x03", shape), QString());
    QVERIFY(!differencesOf("\x12\xF3", "\x12\xF2", shape).isEmpty());
}

void CheckedReadTest::blocksOfEveryShapeAreNamed()
{
    CartridgeJob job;
    job.operate = GBA_READ_RAM;
    QByteArray other(0x20000, 'a');
    other[0x1000] = 'b';
    const QByteArray bytes(0x20000, 'a');
    QCOMPARE(differencesOf(bytes, other, shapeOf(job)), QString("4 KiB block 1 of 32"));
    job.operate = GBA_READ_ROM;
    QCOMPARE(differencesOf(bytes, other, shapeOf(job)), QString("64 KiB block 0 of 2"));
}

void CheckedReadTest::readHasTheHashOfItsBytes_data()
{
    QTest::addColumn<bool>("isGba");
    QTest::addColumn<int>("size");
    QTest::newRow("GB, 32 KiB") << false << 32 * 1024;
    QTest::newRow("GB, 8 MiB") << false << 8 * 1024 * 1024;
    QTest::newRow("GBA, 1 MiB") << true << 1024 * 1024;
}

void CheckedReadTest::readHasTheHashOfItsBytes()
{
    QFETCH(bool, isGba);
    QFETCH(int, size);
    TrialCartridge cartridge;
    cartridge.isGba = isGba;
    cartridge.headerType = 0x19;
    cartridge.romSize = std::uint32_t(size);
    TrialBench bench(cartridge);
    CartridgeJob job;
    job.operate = isGba ? GBA_READ_ROM : GB_READ_ROM;
    job.scriptPath = isGba ? SHIPPED_SCRIPTS "/gba.nut" : SHIPPED_SCRIPTS "/gb_mbc5.nut";
    job.romSize = size;
    PhaseRecorder listener;
    const CheckedRead read = readOnce(job, Phase::Read, listener);
    QCOMPARE(read.outcome.trouble, Trouble::None);
    QCOMPARE(read.outcome.state, isGba ? CartridgeState::OnlyRead : CartridgeState::Switched);
    QVERIFY(read.bytes == bench.image());
    QCOMPARE(read.sha1, QCryptographicHash::hash(bench.image(), QCryptographicHash::Sha1));
    QCOMPARE(read.reads, 1);
    QCOMPARE(read.differences, QString());
    QCOMPARE(listener.phases, (QStringList{QString("read %1").arg(size), "end"}));
}

void CheckedReadTest::readThatFailsHasNoBytes()
{
    TrialBench bench(benchCartridge());
    addReadFault(bench, 1);
    PhaseRecorder listener;
    const CheckedRead read = readOnce(benchJob(GB_READ_ROM), Phase::Backup, listener);
    QCOMPARE(read.outcome.trouble, Trouble::JobFailed);
    QCOMPARE(read.outcome.phase, Phase::Backup);
    QCOMPARE(read.outcome.state, CartridgeState::Switched);
    QVERIFY(read.outcome.job.driveError.contains("injected fault"));
    QCOMPARE(read.bytes, QByteArray());
    QCOMPARE(read.sha1, QByteArray());
    QCOMPARE(listener.phases, (QStringList{"backup 65536", "end"}));
}

// A script that ends well has not said that it moved everything.
void CheckedReadTest::holeInARomIsNoRead()
{
    TrialBench bench(benchCartridge());
    ScriptFolder folder;
    folder.write("gb_mbc5.nut", "function cpu_dump(d, s, _) { cpu_read(d, 0, 0x4000); }");
    CartridgeJob job = benchJob(GB_READ_ROM);
    job.scriptPath = folder.filePath("gb_mbc5.nut");
    PhaseRecorder listener;
    const CheckedRead read = readOnce(job, Phase::Read, listener);
    QCOMPARE(read.outcome.trouble, Trouble::JobFailed);
    QCOMPARE(read.outcome.job.end, JobEnd::Done);
    QCOMPARE(read.outcome.job.movedBytes, 0x4000);
    QCOMPARE(read.bytes, QByteArray());
}

void CheckedReadTest::missingScriptIsNamed()
{
    TrialBench bench(benchCartridge());
    CartridgeJob job = benchJob(GB_READ_ROM);
    job.scriptPath = "no/such/script.nut";
    PhaseRecorder listener;
    const CheckedRead read = readOnce(job, Phase::Read, listener);
    QCOMPARE(read.outcome.job.end, JobEnd::NoScript);
    QCOMPARE(read.outcome.detail, QString("no/such/script.nut"));
    QCOMPARE(read.outcome.state, CartridgeState::Untouched);
}

// A flash job's size is that of what it writes.
void CheckedReadTest::phaseTellsHowMuchWillMove()
{
    TrialBench bench(benchCartridge());
    bench.drive().setGone(true);
    PhaseRecorder listener;
    const Outcome outcome =
        runPhase(benchJob(GB_WRITE_FLASH), QByteArray(1000, 'r'), Phase::Write, listener);
    QCOMPARE(outcome.job.end, JobEnd::NoReader);
    QCOMPARE(listener.phases, (QStringList{"write 1000", "end"}));
}

namespace
{

// The first read of the bench's ROM as it is.
CheckedRead firstRead(const TrialBench &bench)
{
    CheckedRead read;
    read.bytes = bench.image();
    read.reads = 1;
    return read;
}

} // namespace

void CheckedReadTest::equalReadsDifferNowhere()
{
    TrialBench bench(benchCartridge());
    PhaseRecorder listener;
    CheckedRead read = firstRead(bench);
    readAgain(benchJob(GB_READ_ROM), 3, listener, &read);
    QCOMPARE(read.outcome.trouble, Trouble::None);
    QCOMPARE(read.differences, QString());
    QCOMPARE(read.reads, 4);
    QVERIFY(read.bytes == bench.image());
    QCOMPARE(bench.drive().callCount(DriveCall::Read, "DUMP.ROM"), 9U);
}

void CheckedReadTest::secondReadThatDiffersIsNamed()
{
    TrialBench bench(benchCartridge());
    addReadFault(bench, 2, 0x10);
    PhaseRecorder listener;
    CheckedRead read = firstRead(bench);
    readAgain(benchJob(GB_READ_ROM), 1, listener, &read);
    QCOMPARE(read.outcome.trouble, Trouble::None);
    QCOMPARE(read.differences, QString("bank 3 of 4"));
    QCOMPARE(read.reads, 2);
    QVERIFY(read.bytes == bench.image());
}

void CheckedReadTest::readingEndsWithTheFirstDifference()
{
    TrialBench bench(benchCartridge());
    addReadFault(bench, 4, 0x10);
    PhaseRecorder listener;
    CheckedRead read = firstRead(bench);
    readAgain(benchJob(GB_READ_ROM), 9, listener, &read);
    QCOMPARE(read.outcome.trouble, Trouble::None);
    QCOMPARE(read.differences, QString("bank 2 of 4"));
    QCOMPARE(read.reads, 3);
    QCOMPARE(bench.drive().callCount(DriveCall::Read, "DUMP.ROM"), 6U);
}

void CheckedReadTest::failedReadIsTold()
{
    TrialBench bench(benchCartridge());
    addReadFault(bench, 1);
    PhaseRecorder listener;
    CheckedRead read = firstRead(bench);
    readAgain(benchJob(GB_READ_ROM), 1, listener, &read);
    QCOMPARE(read.outcome.trouble, Trouble::JobFailed);
    QCOMPARE(read.outcome.phase, Phase::Compare);
    QCOMPARE(read.reads, 1);
    QVERIFY(read.outcome.job.driveError.contains("injected fault"));
}

void CheckedReadTest::stopEndsTheReading_data()
{
    QTest::addColumn<int>("questions");
    QTest::addColumn<QStringList>("phases");
    const QStringList read = {"compare 65536", "end"};
    QTest::newRow("before the first") << 0 << QStringList();
    QTest::newRow("behind the first") << 1 << read;
    QTest::newRow("before the second") << 2 << read;
    QTest::newRow("behind the second") << 3 << read + read;
}

void CheckedReadTest::stopEndsTheReading()
{
    QFETCH(int, questions);
    QFETCH(QStringList, phases);
    TrialBench bench(benchCartridge());
    PhaseRecorder listener;
    listener.questionsUntilStop = questions;
    CheckedRead read = firstRead(bench);
    readAgain(benchJob(GB_READ_ROM), 9, listener, &read);
    QCOMPARE(read.outcome.trouble, Trouble::Stopped);
    QCOMPARE(listener.phases, phases);
    QCOMPARE(bench.drive().callCount(DriveCall::Read, "DUMP.ROM"),
             3U * unsigned(phases.size()) / 2);
}

void CheckedReadTest::listenerHearsEveryPhase()
{
    TrialBench bench(benchCartridge());
    PhaseRecorder listener;
    CheckedRead read = readOnce(benchJob(GB_READ_RAM), Phase::Backup, listener);
    readAgain(benchJob(GB_READ_RAM), 2, listener, &read);
    QCOMPARE(listener.phases,
             (QStringList{"backup 32768", "end", "compare 32768", "end", "compare 32768", "end"}));
    QCOMPARE(read.reads, 3);
}

GBDRIVER_TEST(CheckedReadTest, core)
#include "checked_read_test.moc"
