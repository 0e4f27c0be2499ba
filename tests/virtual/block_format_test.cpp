// The reader's view of a command block: what it accepts, what it refuses and why.
#include "command_blocks.h"

#include "test_class.h"
#include "virtual/block_format.h"

#include <QtTest>

#include <cstring>
#include <string>

using namespace virtual_reader;

class BlockFormatTest : public QObject
{
    Q_OBJECT

private slots:
    void checksumMatchesThePublishedCheckValue();
    void emptyBlocksCarryKnownChecksums_data();
    void emptyBlocksCarryKnownChecksums();
    void everySingleBitErrorIsRefused();
    void wrongSyncByteIsRefusedEvenWithAFittingChecksum();
    void partOfABlockIsRefused_data();
    void partOfABlockIsRefused();
    void unknownCommandsAreRefused();
    void fieldsAreTakenFromTheirPlaces_data();
    void fieldsAreTakenFromTheirPlaces();
    void lengthsOutsideTheLimitAreRefused_data();
    void lengthsOutsideTheLimitAreRefused();
};

void BlockFormatTest::checksumMatchesThePublishedCheckValue()
{
    const char text[] = "123456789";
    QCOMPARE(blockChecksum(reinterpret_cast<const std::uint8_t *>(text), 9), quint16(0x31C3));
    QCOMPARE(blockChecksum(nullptr, 0), quint16(0));
}

void BlockFormatTest::emptyBlocksCarryKnownChecksums_data()
{
    QTest::addColumn<int>("commandClass");
    QTest::addColumn<int>("opcode");
    QTest::addColumn<int>("checksum");
    QTest::newRow("GBA start") << 3 << 1 << 0x0E00;
    QTest::newRow("GB start") << 2 << 1 << 0x6947;
    QTest::newRow("select GB") << 0xF0 << 2 << 0x8A5F;
    QTest::newRow("select GBA") << 0xF0 << 3 << 0x275C;
    QTest::newRow("query") << 0xF0 << 4 << 0x5436;
    QTest::newRow("save erase") << 3 << 7 << 0xD069;
}

void BlockFormatTest::emptyBlocksCarryKnownChecksums()
{
    QFETCH(int, commandClass);
    QFETCH(int, opcode);
    QFETCH(int, checksum);
    ByteVector block(512, 0);
    block[0] = 0x5A;
    block[1] = static_cast<std::uint8_t>(commandClass);
    block[2] = static_cast<std::uint8_t>(opcode);
    block[510] = static_cast<std::uint8_t>(checksum >> 8);
    block[511] = static_cast<std::uint8_t>(checksum);
    const DecodedBlock decoded = decodeBlock(block.data(), block.size());
    QCOMPARE(QString::fromStdString(decoded.refusal), QString());
    QCOMPARE(int(decoded.shape->opcode), opcode);
}

void BlockFormatTest::everySingleBitErrorIsRefused()
{
    ByteVector block = commandBlock(2, 13, {0x00, 0x21, 0x05});
    for (std::size_t bit = 0; bit < block.size() * 8; ++bit) {
        block[bit / 8] ^= static_cast<std::uint8_t>(1U << (bit % 8));
        QVERIFY2(!decodeBlock(block.data(), block.size()).refusal.empty(),
                 std::to_string(bit).c_str());
        block[bit / 8] ^= static_cast<std::uint8_t>(1U << (bit % 8));
    }
    QVERIFY(decodeBlock(block.data(), block.size()).refusal.empty());
}

void BlockFormatTest::wrongSyncByteIsRefusedEvenWithAFittingChecksum()
{
    ByteVector block = commandBlock(2, 1);
    block[0] = 0x5B;
    sealBlock(block.data());
    QCOMPARE(QString::fromStdString(decodeBlock(block.data(), block.size()).refusal),
             QString("sync byte 0x5B instead of 0x5A"));
}

void BlockFormatTest::partOfABlockIsRefused_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {0, 1, 2, 3, 511})
        QTest::newRow(std::to_string(size).c_str()) << size;
}

void BlockFormatTest::partOfABlockIsRefused()
{
    QFETCH(int, size);
    const ByteVector block = commandBlock(2, 1);
    const ByteVector part(block.begin(), block.begin() + size);
    const DecodedBlock decoded = decodeBlock(part.data(), part.size());
    QCOMPARE(QString::fromStdString(decoded.refusal),
             QString("block of %1 bytes instead of 512").arg(size));
    QCOMPARE(decoded.shape, static_cast<const CommandShape *>(nullptr));
}

void BlockFormatTest::unknownCommandsAreRefused()
{
    int known = 0;
    for (unsigned commandClass = 0; commandClass < 256; ++commandClass) {
        for (unsigned opcode = 0; opcode < 256; ++opcode) {
            const auto *shape = findCommandShape(static_cast<std::uint8_t>(commandClass),
                                                 static_cast<std::uint8_t>(opcode));
            known += shape != nullptr ? 1 : 0;
        }
    }
    QCOMPARE(known, 22); // 5 of the GB bus, 14 of the GBA bus, 3 of the reader
    const ByteVector block = commandBlock(2, 2);
    QCOMPARE(QString::fromStdString(decodeBlock(block.data(), 512).refusal),
             QString("unknown command: class 0x02, opcode 2"));
}

void BlockFormatTest::fieldsAreTakenFromTheirPlaces_data()
{
    QTest::addColumn<int>("commandClass");
    QTest::addColumn<int>("opcode");
    QTest::addColumn<quint32>("address");
    QTest::addColumn<quint32>("length");
    QTest::addColumn<int>("dataOffset"); // -1: no payload
    const auto row = [](const char *name, int commandClass, int opcode, quint32 address,
                        quint32 length, int dataOffset) {
        QTest::newRow(name) << commandClass << opcode << address << length << dataOffset;
    };
    // Byte n of the body holds n, except for the length, which is 0x0065.
    row("GB RAM write", 2, 12, 0x0403, 0x65, 7);
    row("GB write", 2, 13, 0x0403, 1, 5);
    row("GB program 8", 2, 14, 0x0403, 0x65, 7);
    row("GB program 16", 2, 15, 0x0403, 0x65, 7);
    row("GBA read address", 3, 6, 0x060504, 0, -1);
    row("FLASH 64K read", 3, 8, 0x060504, 0x65, -1);
    row("FLASH 128K read", 3, 9, 0x060504, 0x65, -1);
    row("FLASH 64K write", 3, 10, 0x0504, 0x65, 12);
    row("FLASH 128K write", 3, 11, 0x060504, 0x65, 12);
    row("EEPROM 512 read", 3, 12, 0x0504, 0x65, -1);
    row("EEPROM 8K read", 3, 13, 0x0504, 0x65, -1);
    row("EEPROM 512 write", 3, 14, 0x07060504, 256, 12);
    row("EEPROM 8K write", 3, 15, 0x0504, 256, 12);
    row("SRAM write", 3, 16, 0x0504, 0x65, 12);
    row("SRAM read", 3, 17, 0x060504, 0x65, -1);
    row("GBA write", 3, 19, 0x07060504, 2, 8);
}

void BlockFormatTest::fieldsAreTakenFromTheirPlaces()
{
    QFETCH(int, commandClass);
    QFETCH(int, opcode);
    QFETCH(quint32, address);
    QFETCH(quint32, length);
    QFETCH(int, dataOffset);
    ByteVector block(512, 0);
    for (std::size_t i = 3; i < 510; ++i)
        block[i] = static_cast<std::uint8_t>(i);
    block[0] = 0x5A;
    block[1] = static_cast<std::uint8_t>(commandClass);
    block[2] = static_cast<std::uint8_t>(opcode);
    const std::size_t lengthAt = commandClass == 2 ? 5 : 8;
    if (length == 0x65) {
        block[lengthAt] = 0x65;
        block[lengthAt + 1] = 0;
    }
    sealBlock(block.data());
    const DecodedBlock decoded = decodeBlock(block.data(), block.size());
    QCOMPARE(QString::fromStdString(decoded.refusal), QString());
    QCOMPARE(decoded.address, address);
    QCOMPARE(decoded.length, length);
    if (dataOffset >= 0)
        QCOMPARE(decoded.data - block.data(), std::ptrdiff_t(dataOffset));
}

void BlockFormatTest::lengthsOutsideTheLimitAreRefused_data()
{
    QTest::addColumn<int>("commandClass");
    QTest::addColumn<int>("opcode");
    QTest::addColumn<int>("length");
    QTest::addColumn<bool>("accepted");
    const auto rows = [](int commandClass, int opcode, int limit) {
        const std::string name = std::to_string(commandClass) + "/" + std::to_string(opcode);
        for (const int length : {0, 1, limit, limit + 1, 0xFFFF})
            QTest::newRow((name + " " + std::to_string(length)).c_str())
                << commandClass << opcode << length << (length >= 1 && length <= limit);
    };
    for (const int opcode : {12, 14, 15})
        rows(2, opcode, 480);
    for (const int opcode : {10, 11, 16})
        rows(3, opcode, 256);
    for (const int opcode : {8, 9, 12, 13, 17})
        rows(3, opcode, 0x8000);
}

void BlockFormatTest::lengthsOutsideTheLimitAreRefused()
{
    QFETCH(int, commandClass);
    QFETCH(int, opcode);
    QFETCH(int, length);
    QFETCH(bool, accepted);
    ByteVector block(512, 0);
    block[0] = 0x5A;
    block[1] = static_cast<std::uint8_t>(commandClass);
    block[2] = static_cast<std::uint8_t>(opcode);
    putLittleEndian(block.data() + (commandClass == 2 ? 5 : 8), static_cast<quint32>(length), 2);
    sealBlock(block.data());
    QCOMPARE(decodeBlock(block.data(), block.size()).refusal.empty(), accepted);
}

GBDRIVER_TEST(BlockFormatTest, none)
#include "block_format_test.moc"
