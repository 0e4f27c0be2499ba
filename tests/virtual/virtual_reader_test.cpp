// Every command's effect on a cartridge that records its bus.
#define OPENSSL_API_COMPAT 0x10100000L
#include "command_blocks.h"
#include "recording_cartridge.h"

#include "test_class.h"
#include "virtual/image_generator.h"
#include "virtual/virtual_reader.h"

#include <openssl/blowfish.h>

#include <QtTest>

#include <string>
#include <utility>

using namespace virtual_reader;

namespace
{

QString text(const std::string &value)
{
    return QString::fromStdString(value);
}

const char kNotSelected[] = "the bus is not selected";

} // namespace

class VirtualReaderTest : public QObject
{
    Q_OBJECT

private slots:
    void filesHaveTheirFixedSizes();
    void identityStandsAtItsOffset();
    void dumpFileReadsOnesUntilABusIsStarted();
    void commandsForTheOtherBusAreRefused_data();
    void commandsForTheOtherBusAreRefused();
    void busMustBeStartedAfterSelection();
    void gbDumpFileMirrorsTheBus();
    void gbReadTouchesEveryAddressTransferred();
    void gbWriteMakesOneCycle();
    void gbRamWriteRunsOnInSixteenBits();
    void programmingUnlocksEveryByte_data();
    void programmingUnlocksEveryByte();
    void shortProgramChunkIsRefused();
    void gbaDumpFileStartsAtTheSetAddress();
    void gbaReadMakesOneCycleAHalfword();
    void gbaReadAddressWrapsAt24Bits();
    void gbaWriteCarriesAHalfword();
    void saveReadsFillTheReply_data();
    void saveReadsFillTheReply();
    void saveWritesReachTheCartridge_data();
    void saveWritesReachTheCartridge();
    void saveEraseReachesTheCartridge();
    void missingSaveMemoryIsRecorded();
    void infoReplyBeginsWithTheKey();
    void shortReplyLeavesNothingOfALongerOne();
    void badBlockIsSkippedAndTheNextExecuted();
    void trailingPartOfABlockIsRefused();
    void emptyRunIsRecorded();
    void readsStopAtTheEndOfTheFile();
    void strictSectorsRefuseWhatADiskRefuses_data();
    void strictSectorsRefuseWhatADiskRefuses();
    void countersAndListenerSeeEveryOperation();
    void operationsAreNotKeptUnlessAsked();
    void jsonLinesHaveAllFields();
    void emptySlotReadsOnes();
};

void VirtualReaderTest::filesHaveTheirFixedSizes()
{
    Bench bench;
    QCOMPARE(bench.reader.fileSize(ReaderFile::Command), 0U);
    QCOMPARE(bench.reader.fileSize(ReaderFile::Driver), 65536U);
    QCOMPARE(bench.reader.fileSize(ReaderFile::Dump), 1048576U);
    bench.send(selectGb());
    QCOMPARE(bench.reader.fileSize(ReaderFile::Command), 1024U);
    QVERIFY(bench.read(ReaderFile::Command, 0, 4096) == selectGb());
}

void VirtualReaderTest::identityStandsAtItsOffset()
{
    Bench standard;
    QCOMPARE(toByteArray(standard.read(ReaderFile::Driver, 0x8000, 17)),
             QByteArray("QDX_PCB02_FW303\0\0", 17));
    VirtualReaderConfig config;
    config.identity = "SIXTEEN BYTES ID";
    Bench other(config);
    QCOMPARE(toByteArray(other.read(ReaderFile::Driver, 0x7FFF, 18)),
             QByteArray("\0SIXTEEN BYTES ID\0", 18));
}

void VirtualReaderTest::dumpFileReadsOnesUntilABusIsStarted()
{
    Bench bench;
    QVERIFY(bench.read(ReaderFile::Dump, 0, 512) == ByteVector(512, 0xFF));
    bench.send(commandBlock(0xF0, 2));
    QVERIFY(bench.read(ReaderFile::Dump, 0, 512) == ByteVector(512, 0xFF));
    QVERIFY(bench.log.gbReads.empty());
}

void VirtualReaderTest::commandsForTheOtherBusAreRefused_data()
{
    QTest::addColumn<bool>("onGb");
    QTest::addColumn<int>("commandClass");
    QTest::addColumn<int>("opcode");
    for (const int opcode : {1, 12, 13, 14, 15})
        QTest::newRow(("GB " + std::to_string(opcode)).c_str()) << false << 2 << opcode;
    for (const int opcode : {1, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 19})
        QTest::newRow(("GBA " + std::to_string(opcode)).c_str()) << true << 3 << opcode;
}

void VirtualReaderTest::commandsForTheOtherBusAreRefused()
{
    QFETCH(bool, onGb);
    QFETCH(int, commandClass);
    QFETCH(int, opcode);
    // A length of 8 at either place where a command may keep it.
    const ByteVector block =
        commandBlock(static_cast<std::uint8_t>(commandClass), static_cast<std::uint8_t>(opcode),
                     {0, 0, commandClass == 2 ? 8U : 0U, 0, 0, commandClass == 3 ? 8U : 0U});
    Bench bench;
    bench.send(block);
    QCOMPARE(text(bench.lastBlock().refusal), QString(kNotSelected));
    bench.send(onGb ? selectGb() : selectGba());
    bench.send(block);
    QCOMPARE(text(bench.lastBlock().refusal), QString(kNotSelected));
    QVERIFY(bench.log.gbWrites.empty() && bench.log.gbaWrites.empty());
    QVERIFY(bench.log.saveReads.empty() && bench.log.saveWrites.empty());
    QCOMPARE(bench.log.erases, 0);
    bench.send(onGb ? selectGba() : selectGb());
    bench.send(block);
    QCOMPARE(text(bench.lastBlock().refusal), QString());
}

void VirtualReaderTest::busMustBeStartedAfterSelection()
{
    Bench bench;
    bench.send(commandBlock(0xF0, 2) + gbWriteBlock(0x2000, 1));
    QCOMPARE(text(bench.lastBlock().refusal), QString("the bus is not started"));
    bench.send(commandBlock(2, 1) + gbWriteBlock(0x2000, 1));
    QCOMPARE(bench.log.gbWrites.size(), std::size_t(1));
    bench.send(commandBlock(0xF0, 2) + gbWriteBlock(0x2000, 1));
    QCOMPARE(text(bench.lastBlock().refusal), QString("the bus is not started"));
}

void VirtualReaderTest::gbDumpFileMirrorsTheBus()
{
    Bench bench;
    bench.send(selectGb());
    const ByteVector bytes = bench.read(ReaderFile::Dump, 0x4000, 0x8000);
    QCOMPARE(bytes.size(), std::size_t(0x8000));
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const std::size_t address = 0x4000 + i;
        QCOMPARE(bytes[i], std::uint8_t(address ^ (address >> 8)));
    }
    QVERIFY(bench.read(ReaderFile::Dump, 0x10100, 16) == bench.read(ReaderFile::Dump, 0x100, 16));
}

void VirtualReaderTest::gbReadTouchesEveryAddressTransferred()
{
    Bench bench;
    bench.send(selectGb());
    bench.read(ReaderFile::Dump, 0xA000, 1024);
    QCOMPARE(bench.log.gbReads.size(), std::size_t(1024));
    QCOMPARE(bench.log.gbReads.front(), 0xA000U);
    QCOMPARE(bench.log.gbReads.back(), 0xA3FFU);
    bench.read(ReaderFile::Driver, 0, 1024);
    QCOMPARE(bench.log.gbReads.size(), std::size_t(1024));
}

void VirtualReaderTest::gbWriteMakesOneCycle()
{
    Bench bench;
    bench.send(selectGb());
    bench.send(gbWriteBlock(0x3000, 1) + gbWriteBlock(0x2ABC, 0xFE));
    QCOMPARE(bench.log.gbWrites.size(), std::size_t(2));
    QCOMPARE(bench.log.gbWrites[0], std::make_pair(0x3000U, 1U));
    QCOMPARE(bench.log.gbWrites[1], std::make_pair(0x2ABCU, 0xFEU));
    QCOMPARE(bench.lastBlock().address, 0x2ABCU);
    QCOMPARE(bench.lastBlock().value, 0xFEU);
}

void VirtualReaderTest::gbRamWriteRunsOnInSixteenBits()
{
    Bench bench;
    bench.send(selectGb());
    const ByteVector payload = makeNoise(480, 7);
    bench.send(commandBlock(2, 12, {0x80, 0xFF, 0xE0, 0x01}, payload, 7));
    QCOMPARE(bench.log.gbWrites.size(), std::size_t(480));
    for (std::size_t i = 0; i < 480; ++i) {
        QCOMPARE(bench.log.gbWrites[i].first, quint32((0xFF80 + i) & 0xFFFF));
        QCOMPARE(bench.log.gbWrites[i].second, quint32(payload[i]));
    }
}

void VirtualReaderTest::programmingUnlocksEveryByte_data()
{
    QTest::addColumn<int>("opcode");
    QTest::addColumn<quint32>("unlock1");
    QTest::addColumn<quint32>("unlock2");
    QTest::newRow("8 bit") << 14 << 0x555U << 0x2AAU;
    QTest::newRow("16 bit") << 15 << 0xAAAU << 0x555U;
}

void VirtualReaderTest::programmingUnlocksEveryByte()
{
    QFETCH(int, opcode);
    QFETCH(quint32, unlock1);
    QFETCH(quint32, unlock2);
    Bench bench;
    bench.send(selectGb());
    const ByteVector plain = makeNoise(9, 5);
    BF_KEY schedule;
    BF_set_key(&schedule, 8, VirtualReaderConfig().key.data());
    BF_LONG halves[2] = {littleEndian(plain.data(), 4), littleEndian(plain.data() + 4, 4)};
    BF_encrypt(halves, &schedule);
    ByteVector sent = plain;
    putLittleEndian(sent.data(), halves[0], 4);
    putLittleEndian(sent.data() + 4, halves[1], 4);
    bench.send(commandBlock(2, static_cast<std::uint8_t>(opcode), {0x00, 0x40, 9, 0}, sent, 7));
    QCOMPARE(bench.log.gbWrites.size(), std::size_t(4 * 9));
    for (std::size_t i = 0; i < 9; ++i) {
        const auto *cycle = &bench.log.gbWrites[4 * i];
        QCOMPARE(cycle[0], std::make_pair(unlock1, 0xAAU));
        QCOMPARE(cycle[1], std::make_pair(unlock2, 0x55U));
        QCOMPARE(cycle[2], std::make_pair(unlock1, 0xA0U));
        QCOMPARE(cycle[3], std::make_pair(quint32(0x4000 + i), quint32(plain[i])));
    }
}

void VirtualReaderTest::shortProgramChunkIsRefused()
{
    Bench bench;
    bench.send(selectGb());
    for (const std::uint8_t opcode : {std::uint8_t(14), std::uint8_t(15)}) {
        bench.send(commandBlock(2, opcode, {0x00, 0x40, 7, 0}));
        QCOMPARE(text(bench.lastBlock().refusal),
                 QString("fewer than 8 bytes cannot be deciphered"));
    }
    QVERIFY(bench.log.gbWrites.empty());
}

void VirtualReaderTest::gbaDumpFileStartsAtTheSetAddress()
{
    Bench bench;
    bench.send(selectGba());
    bench.send(commandBlock(3, 6, {0, 0x00, 0x10, 0x20}));
    const ByteVector bytes = bench.read(ReaderFile::Dump, 6, 4);
    // Offset 6 is the third halfword behind 0x201000; each halfword low byte first.
    QCOMPARE(littleEndian(bytes.data(), 2), (0x201003U * 3) & 0xFFFF);
    QCOMPARE(littleEndian(bytes.data() + 2, 2), (0x201004U * 3) & 0xFFFF);
}

void VirtualReaderTest::gbaReadMakesOneCycleAHalfword()
{
    Bench bench;
    bench.send(selectGba());
    bench.read(ReaderFile::Dump, 0, 1024);
    QCOMPARE(bench.log.gbaReads.size(), std::size_t(512));
    QCOMPARE(bench.log.gbaReads.back(), 511U);
    const ByteVector odd = bench.read(ReaderFile::Dump, 3, 2);
    QVERIFY(odd == ByteVector({0, 6})); // high byte of halfword 1, low byte of halfword 2
}

void VirtualReaderTest::gbaReadAddressWrapsAt24Bits()
{
    Bench bench;
    bench.send(selectGba());
    bench.send(commandBlock(3, 6, {0, 0xFF, 0xFF, 0xFF, 0x01}));
    const ByteVector bytes = bench.read(ReaderFile::Dump, 0, 4);
    QCOMPARE(littleEndian(bytes.data(), 2), (0xFFFFFFU * 3) & 0xFFFF);
    QCOMPARE(littleEndian(bytes.data() + 2, 2), 0U);
}

void VirtualReaderTest::gbaWriteCarriesAHalfword()
{
    Bench bench;
    bench.send(selectGba());
    bench.send(commandBlock(3, 19, {0, 0x34, 0x12, 0x56, 0x00, 0xCD, 0xAB}));
    QCOMPARE(bench.log.gbaWrites.size(), std::size_t(1));
    QCOMPARE(bench.log.gbaWrites[0], std::make_pair(0x561234U, 0xABCDU));
    QCOMPARE(bench.lastBlock().value, 0xABCDU);
}

void VirtualReaderTest::saveReadsFillTheReply_data()
{
    QTest::addColumn<int>("opcode");
    QTest::addColumn<int>("kind");
    QTest::addColumn<quint32>("address");
    QTest::newRow("FLASH 64K") << 8 << int(SaveKind::Flash64k) << 0x012345U;
    QTest::newRow("FLASH 128K") << 9 << int(SaveKind::Flash128k) << 0x012345U;
    QTest::newRow("EEPROM 512") << 12 << int(SaveKind::Eeprom512) << 0x2345U;
    QTest::newRow("EEPROM 8K") << 13 << int(SaveKind::Eeprom8k) << 0x2345U;
    QTest::newRow("SRAM") << 17 << int(SaveKind::Sram) << 0x012345U;
}

void VirtualReaderTest::saveReadsFillTheReply()
{
    QFETCH(int, opcode);
    QFETCH(int, kind);
    QFETCH(quint32, address);
    Bench bench;
    bench.send(selectGba());
    bench.send(
        commandBlock(3, static_cast<std::uint8_t>(opcode), {0, 0x45, 0x23, 0x01, 0, 0x00, 0x10}));
    QCOMPARE(text(bench.lastBlock().refusal), QString());
    QCOMPARE(bench.log.saveReads.size(), std::size_t(1));
    QCOMPARE(int(bench.log.saveReads[0].kind), kind);
    QCOMPARE(bench.log.saveReads[0].address, address);
    QCOMPARE(bench.log.saveReads[0].length, 4096U);
    QVERIFY(bench.read(ReaderFile::Driver, 0, 4096) == ByteVector(4096, 0x5C));
    QVERIFY(bench.read(ReaderFile::Driver, 4096, 512) == ByteVector(512, 0));
}

void VirtualReaderTest::saveWritesReachTheCartridge_data()
{
    QTest::addColumn<int>("opcode");
    QTest::addColumn<int>("kind");
    QTest::addColumn<quint32>("address");
    QTest::addColumn<quint32>("length");
    QTest::newRow("FLASH 64K") << 10 << int(SaveKind::Flash64k) << 0x0302U << 100U;
    QTest::newRow("FLASH 128K") << 11 << int(SaveKind::Flash128k) << 0x010302U << 100U;
    QTest::newRow("EEPROM 512") << 14 << int(SaveKind::Eeprom512) << 0x00010302U << 256U;
    QTest::newRow("EEPROM 8K") << 15 << int(SaveKind::Eeprom8k) << 0x0302U << 256U;
    QTest::newRow("SRAM") << 16 << int(SaveKind::Sram) << 0x0302U << 100U;
}

void VirtualReaderTest::saveWritesReachTheCartridge()
{
    QFETCH(int, opcode);
    QFETCH(int, kind);
    QFETCH(quint32, address);
    QFETCH(quint32, length);
    Bench bench;
    bench.send(selectGba());
    const ByteVector payload = makeNoise(256, 9);
    bench.send(commandBlock(3, static_cast<std::uint8_t>(opcode), {0, 0x02, 0x03, 0x01, 0, 100, 0},
                            payload, 12));
    QCOMPARE(bench.log.saveWrites.size(), std::size_t(1));
    const SaveAccess &access = bench.log.saveWrites[0];
    QCOMPARE(int(access.kind), kind);
    QCOMPARE(access.address, address);
    QVERIFY(access.bytes == ByteVector(payload.begin(), payload.begin() + std::ptrdiff_t(length)));
}

void VirtualReaderTest::saveEraseReachesTheCartridge()
{
    Bench bench;
    bench.send(selectGba());
    bench.send(commandBlock(3, 7));
    QCOMPARE(bench.log.erases, 1);
    QCOMPARE(text(bench.lastBlock().refusal), QString());
}

void VirtualReaderTest::missingSaveMemoryIsRecorded()
{
    Bench bench;
    bench.log.hasSave = false;
    bench.send(selectGba());
    const QString reason = "the cartridge has no such save memory";
    bench.send(commandBlock(3, 17, {0, 0, 0, 0, 0, 16, 0}));
    QCOMPARE(text(bench.lastBlock().refusal), reason);
    QVERIFY(bench.read(ReaderFile::Driver, 0, 16) == ByteVector(16, 0xFF));
    bench.send(commandBlock(3, 16, {0, 0, 0, 0, 0, 16, 0}));
    QCOMPARE(text(bench.lastBlock().refusal), reason);
    bench.send(commandBlock(3, 7));
    QCOMPARE(text(bench.lastBlock().refusal), reason);
}

void VirtualReaderTest::infoReplyBeginsWithTheKey()
{
    VirtualReaderConfig config;
    config.key = {1, 2, 3, 4, 5, 6, 7, 8};
    Bench bench(config);
    bench.send(commandBlock(0xF0, 4)); // needs no bus
    QCOMPARE(toByteArray(bench.read(ReaderFile::Driver, 0, 17)),
             QByteArray("\1\2\3\4\5\6\7\10VIRTUAL1\0", 17));
}

void VirtualReaderTest::shortReplyLeavesNothingOfALongerOne()
{
    Bench bench;
    bench.send(selectGba());
    bench.send(commandBlock(3, 17, {0, 0, 0, 0, 0, 0x00, 0x10}));
    bench.send(commandBlock(3, 17, {0, 0, 0, 0, 0, 10, 0}));
    const ByteVector reply = bench.read(ReaderFile::Driver, 0, 1024);
    QVERIFY(reply == ByteVector(10, 0x5C) + ByteVector(1014, 0));
}

void VirtualReaderTest::badBlockIsSkippedAndTheNextExecuted()
{
    Bench bench;
    bench.send(selectGb());
    ByteVector run = gbWriteBlock(0x2000, 1) + gbWriteBlock(0x2000, 2) + gbWriteBlock(0x2000, 3);
    run[512 + 511] ^= 0x01;
    bench.send(run);
    const auto &blocks = bench.reader.operations().back().blocks;
    QCOMPARE(blocks.size(), std::size_t(3));
    QVERIFY(!blocks[0].refused() && blocks[1].refused() && !blocks[2].refused());
    QVERIFY(text(blocks[1].refusal).startsWith("checksum 0x"));
    QCOMPARE(bench.log.gbWrites.size(), std::size_t(2));
    QCOMPARE(bench.log.gbWrites[1].second, 3U);
    QCOMPARE(bench.reader.counters().refusedBlocks, quint64(1));
}

void VirtualReaderTest::trailingPartOfABlockIsRefused()
{
    Bench bench;
    ByteVector run = selectGb();
    run.resize(run.size() + 100, 0x5A);
    bench.send(run);
    const auto &blocks = bench.reader.operations().back().blocks;
    QCOMPARE(blocks.size(), std::size_t(3));
    QVERIFY(!blocks[1].refused());
    QCOMPARE(text(blocks[2].refusal), QString("block of 100 bytes instead of 512"));
}

void VirtualReaderTest::emptyRunIsRecorded()
{
    Bench bench;
    bench.send({});
    QCOMPARE(bench.reader.counters().commandRuns, quint64(1));
    QCOMPARE(bench.reader.counters().blocks, quint64(0));
    QVERIFY(bench.reader.operations().back().blocks.empty());
}

void VirtualReaderTest::readsStopAtTheEndOfTheFile()
{
    Bench bench;
    QCOMPARE(bench.read(ReaderFile::Dump, 1048576 - 512, 1024).size(), std::size_t(512));
    QCOMPARE(bench.read(ReaderFile::Dump, 1048576, 512).size(), std::size_t(0));
    QCOMPARE(bench.read(ReaderFile::Driver, 0xFFFFFE00, 512).size(), std::size_t(0));
    QCOMPARE(bench.reader.counters().bytesRead, quint64(512));
}

void VirtualReaderTest::strictSectorsRefuseWhatADiskRefuses_data()
{
    QTest::addColumn<quint32>("offset");
    QTest::addColumn<quint32>("length");
    QTest::addColumn<bool>("unbuffered");
    QTest::addColumn<bool>("served");
    QTest::newRow("whole sectors") << 512U << 1024U << true << true;
    QTest::newRow("odd offset") << 0x100U << 512U << true << false;
    QTest::newRow("odd length") << 0U << 1000U << true << false;
    QTest::newRow("nothing") << 0U << 0U << true << true;
    QTest::newRow("buffered") << 0x100U << 1000U << false << true;
}

void VirtualReaderTest::strictSectorsRefuseWhatADiskRefuses()
{
    QFETCH(quint32, offset);
    QFETCH(quint32, length);
    QFETCH(bool, unbuffered);
    QFETCH(bool, served);
    VirtualReaderConfig config;
    config.strictSectors = true;
    Bench bench(config);
    ByteVector bytes(2048);
    const auto count =
        bench.reader.readFile(ReaderFile::Dump, offset, bytes.data(), length, unbuffered);
    QCOMPARE(count.has_value(), served);
    QCOMPARE(bench.reader.operations().back().refusal.empty(), served);
    QCOMPARE(bench.reader.counters().refusedReads, quint64(served ? 0 : 1));
}

void VirtualReaderTest::countersAndListenerSeeEveryOperation()
{
    Bench bench;
    int heard = 0;
    bench.reader.setListener([&heard](const Operation &) { ++heard; });
    bench.send(selectGb());
    bench.read(ReaderFile::Dump, 0, 1024);
    bench.read(ReaderFile::Driver, 0x8000, 1024);
    QCOMPARE(heard, 3);
    QCOMPARE(bench.reader.counters().commandRuns, quint64(1));
    QCOMPARE(bench.reader.counters().blocks, quint64(2));
    QCOMPARE(bench.reader.counters().reads, quint64(2));
    QCOMPARE(bench.reader.counters().bytesRead, quint64(2048));
    bench.reader.clearOperations();
    QCOMPARE(bench.reader.counters().reads, quint64(0));
    QVERIFY(bench.reader.operations().empty());
}

void VirtualReaderTest::operationsAreNotKeptUnlessAsked()
{
    VirtualReaderConfig config;
    config.keepOperations = false;
    Bench bench(config);
    bench.send(selectGb());
    QVERIFY(bench.reader.operations().empty());
    QCOMPARE(bench.reader.counters().blocks, quint64(2));
}

void VirtualReaderTest::jsonLinesHaveAllFields()
{
    Bench bench;
    bench.send(selectGb() + commandBlock(2, 99));
    bench.send(gbWriteBlock(0x2000, 5));
    bench.read(ReaderFile::Dump, 512, 1024);
    const auto &operations = bench.reader.operations();
    QCOMPARE(text(operationJson(operations[0])),
             QString("{\"op\":\"command\",\"bytes\":1536,\"blocks\":["
                     "{\"class\":240,\"opcode\":2,\"name\":\"select-gb\",\"address\":0,"
                     "\"length\":0,\"value\":0},"
                     "{\"class\":2,\"opcode\":1,\"name\":\"gb-start\",\"address\":0,"
                     "\"length\":0,\"value\":0},"
                     "{\"class\":2,\"opcode\":99,\"name\":\"\",\"address\":0,\"length\":0,"
                     "\"value\":0,\"refused\":\"unknown command: class 0x02, opcode 99\"}]}"));
    QCOMPARE(text(operationJson(operations[1])),
             QString("{\"op\":\"command\",\"bytes\":512,\"blocks\":["
                     "{\"class\":2,\"opcode\":13,\"name\":\"gb-write\",\"address\":8192,"
                     "\"length\":1,\"value\":5}]}"));
    QCOMPARE(text(operationJson(operations[2])),
             QString("{\"op\":\"read\",\"file\":\"DUMP.ROM\",\"offset\":512,\"length\":1024,"
                     "\"count\":1024,\"unbuffered\":true}"));
}

void VirtualReaderTest::emptySlotReadsOnes()
{
    Bench bench;
    bench.reader.insertCartridge(nullptr);
    bench.send(selectGb());
    QVERIFY(bench.read(ReaderFile::Dump, 0, 0x8000) == ByteVector(0x8000, 0xFF));
    bench.send(selectGba());
    QVERIFY(bench.read(ReaderFile::Dump, 0, 0x8000) == ByteVector(0x8000, 0xFF));
    QVERIFY(bench.reader.cartridge().saveImage().empty());
}

GBDRIVER_TEST(VirtualReaderTest, none)
#include "virtual_reader_test.moc"
