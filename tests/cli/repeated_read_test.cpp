// Second reads: what differs is found and named by its banks, and what a memory does not keep is not
// looked at.
#include "cli/repeated_read.h"
#include "job_bench.h"
#include "report_capture.h"
#include "test_class.h"

#include <QtTest>

#include <csignal>

using namespace virtual_reader;

class RepeatedReadTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { watchForInterrupt(); }
    void shapesFollowTheMemory_data();
    void shapesFollowTheMemory();
    void differencesNameBanks();
    void otherLengthIsADifference();
    void bitsThatAreNotKeptAreNotCompared();
    void equalReadsDifferNowhere();
    void secondReadThatDiffersIsNamed();
    void readingEndsWithTheFirstDifference();
    void failedReadIsTold();
    void fileThatTheDiskCutIsNoRead();
    void interruptEndsTheReading();
};

void RepeatedReadTest::shapesFollowTheMemory_data()
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

void RepeatedReadTest::shapesFollowTheMemory()
{
    QFETCH(int, operate);
    QFETCH(QString, script);
    QFETCH(int, blockBytes);
    QFETCH(int, bits);
    CliJob job;
    job.operate = operate;
    job.scriptName = script;
    const MemoryShape shape = shapeOf(job);
    QCOMPARE(int(shape.blockBytes), blockBytes);
    QCOMPARE(int(static_cast<unsigned char>(shape.bits)), bits);
}

void RepeatedReadTest::differencesNameBanks()
{
    const MemoryShape shape{16, "bank"};
    const QByteArray bytes(128, 'a');
    QCOMPARE(differencesOf(bytes, bytes, shape), QString());
    QByteArray other = bytes;
    other[16] = 'b';
    QCOMPARE(differencesOf(bytes, other, shape), QString("bank 1 of 8"));
    for (const int at : {79, 80, 127})
        other[at] = 'b';
    QCOMPARE(differencesOf(bytes, other, shape), QString("banks 1, 4-5, 7 of 8"));
}

void RepeatedReadTest::otherLengthIsADifference()
{
    const MemoryShape shape{16, "bank"};
    QCOMPARE(differencesOf("abc", "ab", shape), QString("their lengths: 3 and 2 bytes"));
    QCOMPARE(differencesOf("", "ab", shape), QString("their lengths: 0 and 2 bytes"));
}

void RepeatedReadTest::bitsThatAreNotKeptAreNotCompared()
{
    const MemoryShape shape{16, "bank", '\x0F'};
    QCOMPARE(keptBits("\x12\xF3", shape), QByteArray("\x02\x03"));
    QCOMPARE(differencesOf("\x12\xF3", "\xF2\x03", shape), QString());
    QVERIFY(!differencesOf("\x12\xF3", "\x12\xF2", shape).isEmpty());
}

void RepeatedReadTest::equalReadsDifferNowhere()
{
    TrialBench bench(benchCartridge());
    ReportCapture capture(OutputStyle::Quiet);
    QString differences = "old";
    QCOMPARE(readAgain(benchJob(GB_READ_ROM), bench.image(), 3, capture.reporter(), &differences),
             ExitCode::Done);
    QCOMPARE(differences, QString());
    QCOMPARE(bench.drive().callCount(DriveCall::Read, "DUMP.ROM"), 9U);
}

void RepeatedReadTest::secondReadThatDiffersIsNamed()
{
    TrialBench bench(benchCartridge());
    addReadFault(bench, 2, 0x10);
    ReportCapture capture(OutputStyle::Quiet);
    QString differences;
    QCOMPARE(readAgain(benchJob(GB_READ_ROM), bench.image(), 1, capture.reporter(), &differences),
             ExitCode::Done);
    QCOMPARE(differences, QString("bank 3 of 4"));
}

void RepeatedReadTest::readingEndsWithTheFirstDifference()
{
    TrialBench bench(benchCartridge());
    addReadFault(bench, 4, 0x10);
    ReportCapture capture(OutputStyle::Quiet);
    QString differences;
    QCOMPARE(readAgain(benchJob(GB_READ_ROM), bench.image(), 9, capture.reporter(), &differences),
             ExitCode::Done);
    QCOMPARE(differences, QString("bank 2 of 4"));
    QCOMPARE(bench.drive().callCount(DriveCall::Read, "DUMP.ROM"), 6U);
}

void RepeatedReadTest::failedReadIsTold()
{
    TrialBench bench(benchCartridge());
    addReadFault(bench, 1);
    ReportCapture capture(OutputStyle::Quiet);
    QString differences;
    QCOMPARE(readAgain(benchJob(GB_READ_ROM), bench.image(), 1, capture.reporter(), &differences),
             ExitCode::TransferFailed);
    QVERIFY(capture.messages().contains("injected fault"));
}

void RepeatedReadTest::fileThatTheDiskCutIsNoRead()
{
    TrialBench bench(benchCartridge());
    DriveFault fault;
    fault.call = DriveCall::Write;
    fault.pathEnd = "/read";
    fault.code = DriveErrorCode::None;
    fault.bytes = 512;
    fault.claimsAll = true;
    bench.drive().addFault(fault);
    ReportCapture capture(OutputStyle::Quiet);
    QByteArray bytes = "untouched";
    QCOMPARE(
        readToMemory(benchJob(GB_READ_ROM), "check", JobLog::Told, capture.reporter(), &bytes).code,
        ExitCode::FileError);
    QCOMPARE(bytes, QByteArray("untouched"));
    QVERIFY(capture.messages().contains("does not hold what was read from the cartridge"));
}

void RepeatedReadTest::interruptEndsTheReading()
{
    TrialBench bench(benchCartridge());
    ReportCapture capture(OutputStyle::Quiet);
    QString differences;
    std::raise(SIGINT);
    QCOMPARE(readAgain(benchJob(GB_READ_ROM), bench.image(), 9, capture.reporter(), &differences),
             ExitCode::Cancelled);
    QCOMPARE(bench.drive().callCount(DriveCall::Read, "DUMP.ROM"), 0U);
    QVERIFY(capture.messages().contains("Stopped before two reads were compared."));
}

GBDRIVER_TEST(RepeatedReadTest, core)
#include "repeated_read_test.moc"
