// A reader that was asked to fail, or to vanish, at a chosen command file.
#include "command_blocks.h"
#include "recording_cartridge.h"

#include "test_class.h"
#include "virtual/virtual_reader.h"

#include <QtTest>

using namespace virtual_reader;

class ReaderFaultTest : public QObject
{
    Q_OBJECT

private slots:
    void failedCommandDoesNothing();
    void readerThatWasPulledOutAnswersNothing();
};

void ReaderFaultTest::failedCommandDoesNothing()
{
    VirtualReaderConfig config;
    config.fault.failedCommand = 2;
    Bench bench(config);
    const ByteVector open = selectGb();
    const ByteVector write = gbWriteBlock(0x2000, 3);
    QVERIFY(bench.reader.commandFileWritten(open.data(), open.size()));
    bench.log.gbWrites.clear();
    QVERIFY(bench.reader.failsNextRun());
    QVERIFY(!bench.reader.commandFileWritten(write.data(), write.size()));
    QVERIFY(!bench.reader.failsNextRun());
    QVERIFY(bench.log.gbWrites.empty());
    QVERIFY(QString::fromStdString(operationJson(bench.reader.operations().back()))
                .endsWith("\"blocks\":[],\"refused\":\"it was asked to fail\"}"));
    QVERIFY(!bench.reader.isGone());
    QVERIFY(bench.reader.commandFileWritten(write.data(), write.size()));
    QCOMPARE(int(bench.log.gbWrites.size()), 1);
}

void ReaderFaultTest::readerThatWasPulledOutAnswersNothing()
{
    VirtualReaderConfig config;
    config.fault.pulledAt = 2;
    Bench bench(config);
    const ByteVector open = selectGb();
    QVERIFY(bench.reader.commandFileWritten(open.data(), open.size()));
    QCOMPARE(int(bench.read(ReaderFile::Driver, 0x8000, 512).size()), 512);
    for (int run = 0; run < 2; ++run) {
        QVERIFY(bench.reader.failsNextRun());
        QVERIFY(!bench.reader.commandFileWritten(open.data(), open.size()));
        QVERIFY(bench.reader.isGone());
        ByteVector bytes(512);
        QVERIFY(!bench.reader.readFile(ReaderFile::Driver, 0x8000, bytes.data(), 512, false));
        QCOMPARE(QString::fromStdString(bench.reader.operations().back().refusal),
                 QString("the reader was pulled out"));
    }
}

GBDRIVER_TEST(ReaderFaultTest, core)
#include "reader_fault_test.moc"
