// The serial EEPROM's requests, bit by bit.
#include "test_class.h"
#include "virtual/eeprom_chip.h"
#include "virtual/image_generator.h"

#include <QtTest>

using namespace virtual_reader;

namespace
{

void sendBits(EepromChip &chip, const QByteArray &bits)
{
    for (const char bit : bits)
        chip.writeBit(bit == '1');
}

QByteArray binary(quint64 value, int digits)
{
    return QByteArray::number(value, 2).rightJustified(digits, '0');
}

QByteArray readBits(EepromChip &chip, int count)
{
    QByteArray bits;
    for (int i = 0; i < count; ++i)
        bits += chip.readBit() ? '1' : '0';
    return bits;
}

int readsUntilReady(EepromChip &chip)
{
    int reads = 1;
    while (!chip.readBit() && reads < 1000)
        ++reads;
    return reads;
}

} // namespace

class EepromChipTest : public QObject
{
    Q_OBJECT

private slots:
    void blocksAreReadMostSignificantBitFirst_data();
    void blocksAreReadMostSignificantBitFirst();
    void blocksAreWritten_data();
    void blocksAreWritten();
    void writingTakesAWhile();
    void requestsOfTheOtherSizeDoNothing();
    void brokenRequestsDoNothing_data();
    void brokenRequestsDoNothing();
    void idleChipIsReady();
    void loadTakesTheChipsSizeOnly();
};

void EepromChipTest::blocksAreReadMostSignificantBitFirst_data()
{
    QTest::addColumn<int>("addressBits");
    QTest::addColumn<quint32>("size");
    QTest::addColumn<quint32>("sent");
    QTest::addColumn<quint32>("block");
    QTest::newRow("small, first") << 6 << 512U << 0U << 0U;
    QTest::newRow("small, last") << 6 << 512U << 63U << 63U;
    QTest::newRow("large, first") << 14 << 8192U << 0U << 0U;
    QTest::newRow("large, last") << 14 << 8192U << 1023U << 1023U;
    QTest::newRow("large, high address bits") << 14 << 8192U << 0x3C05U << 5U;
}

void EepromChipTest::blocksAreReadMostSignificantBitFirst()
{
    QFETCH(int, addressBits);
    QFETCH(quint32, size);
    QFETCH(quint32, sent);
    QFETCH(quint32, block);
    EepromChip chip(unsigned(addressBits), size);
    const ByteVector contents = makeNoise(size, 3);
    QVERIFY(chip.load(contents));
    sendBits(chip, "11" + binary(sent, addressBits) + "0");
    QCOMPARE(readBits(chip, 4), QByteArray("0000"));
    for (quint32 i = 0; i < 8; ++i)
        QCOMPARE(readBits(chip, 8), binary(contents[block * 8 + i], 8));
    QVERIFY(chip.readBit()); // at rest again
    QVERIFY(chip.contents() == contents);
}

void EepromChipTest::blocksAreWritten_data()
{
    QTest::addColumn<int>("addressBits");
    QTest::addColumn<quint32>("size");
    QTest::addColumn<quint32>("block");
    QTest::newRow("small") << 6 << 512U << 63U;
    QTest::newRow("large") << 14 << 8192U << 1023U;
}

void EepromChipTest::blocksAreWritten()
{
    QFETCH(int, addressBits);
    QFETCH(quint32, size);
    QFETCH(quint32, block);
    EepromChip chip(unsigned(addressBits), size);
    QVERIFY(chip.contents() == ByteVector(size, 0xFF));
    ByteVector expected(size, 0xFF);
    const QByteArray data = QByteArray::fromHex("0123456789ABCDEF");
    std::copy(data.begin(), data.end(), expected.begin() + std::ptrdiff_t(block) * 8);
    sendBits(chip, "10" + binary(block, addressBits) + binary(0x0123456789ABCDEF, 64) + "0");
    readsUntilReady(chip);
    QVERIFY(chip.contents() == expected);
    QCOMPARE(chip.changes(), quint64(8));
    // A block erases itself: ones come back.
    sendBits(chip, "10" + binary(block, addressBits) + QByteArray(64, '1') + "0");
    readsUntilReady(chip);
    QVERIFY(chip.contents() == ByteVector(size, 0xFF));
    QCOMPARE(chip.changes(), quint64(16));
}

void EepromChipTest::writingTakesAWhile()
{
    EepromChip chip(6, 512);
    sendBits(chip, "10" + binary(1, 6) + binary(0, 64) + "0");
    QVERIFY(!chip.readBit());
    sendBits(chip, "10" + binary(2, 6) + binary(0, 64) + "0"); // not listening
    QVERIFY(readsUntilReady(chip) > 1);
    QCOMPARE(int(chip.contents()[8]), 0x00);
    QCOMPARE(int(chip.contents()[16]), 0xFF);
    sendBits(chip, "10" + binary(2, 6) + binary(0, 64) + "0");
    readsUntilReady(chip);
    QCOMPARE(int(chip.contents()[16]), 0x00);
}

void EepromChipTest::requestsOfTheOtherSizeDoNothing()
{
    EepromChip small(6, 512);
    sendBits(small, "11" + binary(0, 14) + "0");
    // The small chip took 6 bits for the address and the seventh for the end; the bits behind them
    // broke the answer off.
    QCOMPARE(readBits(small, 68), QByteArray(68, '1'));
    EepromChip large(14, 8192);
    sendBits(large, "10" + binary(5, 6) + QByteArray(64, '0') + "0");
    QVERIFY(large.contents() == ByteVector(8192, 0xFF));
    QVERIFY(large.readBit());
}

void EepromChipTest::brokenRequestsDoNothing_data()
{
    QTest::addColumn<QByteArray>("bits");
    QTest::newRow("no start bit") << QByteArray("0") + "0" + binary(0, 6) + binary(0, 64) + "0";
    QTest::newRow("cut off") << "10" + binary(0, 6) + binary(0, 63);
    QTest::newRow("wrong end") << "10" + binary(0, 6) + binary(0, 64) + "1";
}

void EepromChipTest::brokenRequestsDoNothing()
{
    QFETCH(QByteArray, bits);
    EepromChip chip(6, 512);
    sendBits(chip, bits);
    QVERIFY(chip.readBit());
    QVERIFY(chip.contents() == ByteVector(512, 0xFF));
}

void EepromChipTest::idleChipIsReady()
{
    EepromChip chip(6, 512);
    QCOMPARE(readBits(chip, 100), QByteArray(100, '1'));
}

void EepromChipTest::loadTakesTheChipsSizeOnly()
{
    EepromChip chip(6, 512);
    QVERIFY(!chip.load(ByteVector(8192)));
    QVERIFY(chip.load(ByteVector(512, 0x42)));
    QVERIFY(chip.contents() == ByteVector(512, 0x42));
}

GBDRIVER_TEST(EepromChipTest, none)
#include "eeprom_chip_test.moc"
