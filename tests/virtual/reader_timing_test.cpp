// The model of a real reader's time: what each operation costs, and how long chips stay busy.
#include "command_blocks.h"
#include "test_class.h"

#include "virtual/reader_setup.h"
#include "virtual/reader_timing.h"

#include <QtTest>

#include <memory>

using namespace virtual_reader;

namespace
{

// A byte takes a microsecond, a transfer a thousand: the sums are easy to read.
constexpr ReaderTiming kRound = {1000000, 1000};
constexpr std::uint64_t kTransfer = 1000;
constexpr std::uint64_t kSectorErase = 800000;

std::unique_ptr<Cartridge> flashCartridge(std::uint32_t size)
{
    CartridgeOptions options;
    options.flash = FlashWidth::Byte;
    options.flashChip.takesTime = true;
    options.flashChip.erasePolls = 0;
    GbImageSpec image;
    image.type = 0x19;
    image.romSize = size;
    image.ramSize = 0;
    return cartridgeOf(gbImage(image), options);
}

struct Bench {
    explicit Bench(std::unique_ptr<Cartridge> cartridge = nullptr, ReaderTiming timing = kRound)
        : reader(std::move(cartridge), config(timing))
    {
    }

    VirtualReaderConfig config(ReaderTiming timing)
    {
        VirtualReaderConfig result;
        result.timing = timing;
        result.wait = [this](std::uint64_t microseconds) { waited += microseconds; };
        return result;
    }

    void send(const ByteVector &run) { reader.commandFileWritten(run.data(), run.size()); }
    void write(unsigned address, unsigned value) { send(gbWriteBlock(address, value)); }
    std::uint8_t readByte()
    {
        std::uint8_t byte = 0;
        reader.readFile(ReaderFile::Dump, 0, &byte, 1, true);
        return byte;
    }
    std::uint64_t last() const { return reader.operations().back().microseconds; }
    void startErase()
    {
        for (const auto &[address, value] : std::initializer_list<std::pair<unsigned, unsigned>>{
                 {0x555, 0xAA}, {0x2AA, 0x55}, {0x555, 0x80}, {0x555, 0xAA}, {0x2AA, 0x55}})
            write(address, value);
        write(0x555, 0x10);
    }

    std::uint64_t waited = 0;
    VirtualReader reader;
};

} // namespace

class ReaderTimingTest : public QObject
{
    Q_OBJECT

private slots:
    void modelIsOffUnlessAsked()
    {
        Bench bench(nullptr, {});
        bench.send(selectGb());
        bench.readByte();
        QCOMPARE(bench.waited, quint64(0));
        QCOMPARE(bench.reader.counters().microseconds, quint64(0));
    }

    void transfersAndBytesTakeTime()
    {
        Bench bench;
        bench.send(selectGb()); // the file grows from nothing: entry and FAT are written as well
        QCOMPARE(bench.last(), 3 * kTransfer + 1024);
        bench.send(selectGb());
        QCOMPARE(bench.last(), kTransfer + 1024);
        bench.write(0x2000, 1); // it shrinks
        QCOMPARE(bench.last(), 3 * kTransfer + 512);
        ByteVector bytes(0x4000);
        bench.reader.readFile(ReaderFile::Dump, 0x4000, bytes.data(), 0x4000, true);
        QCOMPARE(bench.last(), kTransfer + 0x4000);
        QVERIFY(operationJson(bench.reader.operations().back())
                    .find(",\"unbuffered\":true,\"us\":17384}") != std::string::npos);
        QCOMPARE(bench.waited, bench.reader.counters().microseconds);
        QCOMPARE(bench.waited, 8 * kTransfer + 1024 + 1024 + 512 + 0x4000);
    }

    void chipsAreWaitedFor_data()
    {
        QTest::addColumn<int>("commandClass");
        QTest::addColumn<int>("opcode");
        QTest::addColumn<quint64>("microseconds");
        QTest::newRow("GB RAM") << 2 << 12 << quint64(0);
        QTest::newRow("GB flash, byte-wide") << 2 << 14 << quint64(64 * 10);
        QTest::newRow("GB flash, word-wide") << 2 << 15 << quint64(64 * 10);
        QTest::newRow("flash save, 64 KiB") << 3 << 10 << quint64(64 * 20);
        QTest::newRow("flash save, 128 KiB") << 3 << 11 << quint64(64 * 20);
        QTest::newRow("EEPROM, 512 bytes") << 3 << 14 << quint64(8 * 6500);
        QTest::newRow("EEPROM, 8 KiB") << 3 << 15 << quint64(8 * 6500);
        QTest::newRow("SRAM") << 3 << 16 << quint64(0);
        QTest::newRow("a read") << 3 << 13 << quint64(0);
        QTest::newRow("nothing that the reader knows") << 2 << 99 << quint64(0);
    }
    void chipsAreWaitedFor()
    {
        QFETCH(int, commandClass);
        QFETCH(int, opcode);
        QFETCH(quint64, microseconds);
        BlockRecord block;
        block.commandClass = static_cast<std::uint8_t>(commandClass);
        block.opcode = static_cast<std::uint8_t>(opcode);
        block.length = 64;
        Operation operation;
        operation.kind = Operation::Kind::CommandRun;
        operation.length = 512;
        operation.blocks.push_back(block);
        QCOMPARE(durationOf(operation, kRound, 512), kTransfer + 512 + microseconds);
        operation.blocks[0].refusal = "refused";
        QCOMPARE(durationOf(operation, kRound, 512), kTransfer + 512);
    }

    // Four sectors of 64 KiB; the transfers are a part of the time.
    void anEraseTakesTheTimeOfItsSectors()
    {
        Bench bench(flashCartridge(4 * 64 * 1024));
        bench.send(selectGb());
        bench.startErase();
        const std::uint64_t begin = bench.waited;
        while (bench.readByte() != 0xFF && bench.waited < begin + 10 * kSectorErase) {
        }
        const std::uint64_t time = bench.waited - begin;
        QVERIFY(time >= 4 * kSectorErase && time <= 4 * kSectorErase + 2 * (kTransfer + 1));
    }

    void aPulledCartridgeIsDoneWithItsErase()
    {
        Bench bench(flashCartridge(4 * 64 * 1024));
        bench.send(selectGb());
        bench.startErase();
        QVERIFY(bench.readByte() != 0xFF);
        bench.reader.cartridge().powerCycle();
        // The first sector was begun.
        QCOMPARE(int(bench.readByte()), 0);
        QCOMPARE(int(bench.readByte()), 0);
    }

    void figuresAreRead_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isRight");
        QTest::addColumn<quint32>("bytes");
        QTest::addColumn<quint32>("microseconds");
        QTest::newRow("by name") << "full-speed" << true << 900000u << 2000u;
        QTest::newRow("figures") << "40000000:125" << true << 40000000u << 125u;
        QTest::newRow("no cost of a transfer") << "1000:0" << true << 1000u << 0u;
        QTest::newRow("no bytes") << "0:125" << false << 0u << 0u;
        QTest::newRow("one figure") << "900000" << false << 0u << 0u;
        QTest::newRow("empty") << "" << false << 0u << 0u;
        QTest::newRow("more behind it") << "900000:125us" << false << 0u << 0u;
        QTest::newRow("too much") << "900000:4294967296" << false << 0u << 0u;
        QTest::newRow("another name") << "high-speed" << false << 0u << 0u;
    }
    void figuresAreRead()
    {
        QFETCH(QString, text);
        QFETCH(bool, isRight);
        QFETCH(quint32, bytes);
        QFETCH(quint32, microseconds);
        ReaderTiming timing;
        QCOMPARE(parseTiming(text.toStdString(), &timing), isRight);
        if (!isRight)
            return;
        QCOMPARE(timing.bytesPerSecond, bytes);
        QCOMPARE(timing.transferMicroseconds, microseconds);
    }

    // Put together from a user's request, the reader really waits.
    void aKeptReaderWaits()
    {
        ReaderSetup setup;
        setup.demo = true;
        setup.config.timing = {1000000, 20000};
        std::string error;
        const std::unique_ptr<KeptReader> reader = KeptReader::create(setup, &error);
        QVERIFY2(reader != nullptr, error.c_str());
        QElapsedTimer clock;
        clock.start();
        const ByteVector run = selectGb();
        QVERIFY(reader->commandFileWritten(run.data(), run.size(), &error));
        QVERIFY(clock.elapsed() >= 60);
    }
};

GBDRIVER_TEST(ReaderTimingTest, none)
#include "reader_timing_test.moc"
