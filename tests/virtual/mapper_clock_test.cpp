// The clocks of MBC3 and HuC-3, which stand still: registers, copies and what outlives the power.
#include "mapper_bench.h"
#include "test_class.h"
#include "virtual/mappers/huc3_cartridge.h"
#include "virtual/mappers/mbc3_cartridge.h"

#include <QtTest>

using namespace virtual_reader;

namespace
{

// Seconds, minutes, hours, low 8 bits of the days, flags.
using Mbc3Time = QVector<int>;

} // namespace

class MapperClockTest : public QObject
{
    Q_OBJECT

private slots:
    void mbc3RegistersKeepWhatIsWritten();
    void mbc3LatchChangesNothing();
    void mbc3RegistersHaveTheirWidths();
    void mbc3OtherNumbersAreNoRegisters();
    void mbc3ClockNeedsTheGate();
    void mbc3ClockOutlivesThePower();
    void mbc3ClockIsNoPartOfTheSave();
    void huc3CopiesItsClock();
    void huc3ClockCanBeSet();
    void huc3MinutesRunOnIntoTheDays_data();
    void huc3MinutesRunOnIntoTheDays();
    void huc3MemoryHoldsNibbles();
    void huc3ExecutesOnlyWhenAsked();
    void huc3MemoryOutlivesThePower();

private:
    Mbc3Time readMbc3(Cartridge &cartridge);
    void setMbc3(Cartridge &cartridge, const Mbc3Time &time);
    int ask(Cartridge &cartridge, unsigned command, unsigned nibble);
    void writeHuc3(Cartridge &cartridge, unsigned address, unsigned nibbles, unsigned count);
    unsigned huc3Number(Cartridge &cartridge, unsigned address);
};

Mbc3Time MapperClockTest::readMbc3(Cartridge &cartridge)
{
    Mbc3Time time;
    for (unsigned number = 0x08; number <= 0x0C; ++number) {
        busWrite(cartridge, 0x4000, number);
        time << busRead(cartridge, 0xA000);
    }
    return time;
}

void MapperClockTest::setMbc3(Cartridge &cartridge, const Mbc3Time &time)
{
    for (unsigned i = 0; i < 5; ++i) {
        busWrite(cartridge, 0x4000, 0x08 + i);
        busWrite(cartridge, 0xBFFF, static_cast<unsigned>(time[static_cast<int>(i)]));
    }
}

void MapperClockTest::mbc3RegistersKeepWhatIsWritten()
{
    Mbc3Cartridge cartridge(bankedImage(64 * kKiB), 0);
    busWrite(cartridge, 0x0000, 0x0A);
    QCOMPARE(readMbc3(cartridge), Mbc3Time({0, 0, 0, 0, 0}));
    setMbc3(cartridge, {59, 58, 23, 0xFE, 0x81});
    QCOMPARE(readMbc3(cartridge), Mbc3Time({59, 58, 23, 0xFE, 0x81}));
    setMbc3(cartridge, {60, 61, 24, 0x01, 0x40}); // beyond their ranges, halted
    QCOMPARE(readMbc3(cartridge), Mbc3Time({60, 61, 24, 0x01, 0x40}));
}

void MapperClockTest::mbc3LatchChangesNothing()
{
    Mbc3Cartridge cartridge(bankedImage(64 * kKiB), 0);
    busWrite(cartridge, 0x0000, 0x0A);
    setMbc3(cartridge, {59, 59, 23, 4, 0});
    for (const unsigned value : {0U, 1U, 0xFFU}) {
        busWrite(cartridge, 0x6000, value);
        QCOMPARE(busRead(cartridge, 0xA000), 0); // the register chosen last
        busWrite(cartridge, 0x7FFF, value);
        QCOMPARE(readMbc3(cartridge), Mbc3Time({59, 59, 23, 4, 0}));
    }
}

void MapperClockTest::mbc3RegistersHaveTheirWidths()
{
    Mbc3Cartridge cartridge(bankedImage(64 * kKiB), 0);
    busWrite(cartridge, 0x0000, 0x0A);
    setMbc3(cartridge, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF});
    for (unsigned i = 0; i < 5; ++i) { // without a latch
        const int widths[] = {0x3F, 0x3F, 0x1F, 0xFF, 0xC1};
        busWrite(cartridge, 0x4000, 0x08 + i);
        QCOMPARE(busRead(cartridge, 0xA000 + i), widths[i]);
    }
}

void MapperClockTest::mbc3OtherNumbersAreNoRegisters()
{
    Mbc3Cartridge cartridge(bankedImage(64 * kKiB), 64 * kKiB);
    busWrite(cartridge, 0x0000, 0x0A);
    for (const unsigned number : {0x07U, 0x0DU, 0x0EU, 0x0FU}) {
        busWrite(cartridge, 0x4000, number);
        busWrite(cartridge, 0xA000, 0x15);
        QCOMPARE(busRead(cartridge, 0xA000), number == 0x07 ? 0x15 : 0xFF);
    }
    QCOMPARE(readMbc3(cartridge), Mbc3Time({0, 0, 0, 0, 0}));
    QCOMPARE(cartridge.saveChanges(), quint64(1));
}

void MapperClockTest::mbc3ClockNeedsTheGate()
{
    Mbc3Cartridge cartridge(bankedImage(64 * kKiB), 8 * kKiB);
    busWrite(cartridge, 0x4000, 0x08);
    busWrite(cartridge, 0xA000, 0x15);
    QCOMPARE(busRead(cartridge, 0xA000), 0xFF);
    busWrite(cartridge, 0x0000, 0x0A);
    QCOMPARE(busRead(cartridge, 0xA000), 0x00);
}

void MapperClockTest::mbc3ClockOutlivesThePower()
{
    Mbc3Cartridge cartridge(bankedImage(64 * kKiB), 0);
    busWrite(cartridge, 0x0000, 0x0A);
    setMbc3(cartridge, {1, 2, 3, 4, 0});
    cartridge.powerCycle();
    busWrite(cartridge, 0x4000, 0x08);
    QCOMPARE(busRead(cartridge, 0xA000), 0xFF); // the gate is closed again
    busWrite(cartridge, 0x0000, 0x0A);
    QCOMPARE(readMbc3(cartridge), Mbc3Time({1, 2, 3, 4, 0}));
}

void MapperClockTest::mbc3ClockIsNoPartOfTheSave()
{
    Mbc3Cartridge cartridge(bankedImage(64 * kKiB), 8 * kKiB);
    busWrite(cartridge, 0x0000, 0x0A);
    setMbc3(cartridge, {1, 2, 3, 4, 0});
    QVERIFY(cartridge.saveImage() == ByteVector(8 * kKiB));
    QCOMPARE(cartridge.saveChanges(), quint64(0));
}

// Returns: the answer without its open bit.
int MapperClockTest::ask(Cartridge &cartridge, unsigned command, unsigned nibble)
{
    busWrite(cartridge, 0x0000, 0x0B);
    busWrite(cartridge, 0xA000, command << 4 | nibble);
    busWrite(cartridge, 0x0000, 0x0D);
    if ((busRead(cartridge, 0xA000) & 1) == 0)
        return -1; // not ready
    busWrite(cartridge, 0xA000, 0xFE);
    busWrite(cartridge, 0x0000, 0x0C);
    return busRead(cartridge, 0xA000) & 0x7F;
}

// Three nibbles of the memory from `address` on, the lowest first.
unsigned MapperClockTest::huc3Number(Cartridge &cartridge, unsigned address)
{
    ask(cartridge, 4, address & 15);
    ask(cartridge, 5, address >> 4);
    unsigned number = 0;
    for (unsigned i = 0; i < 3; ++i)
        number |= static_cast<unsigned>(ask(cartridge, 1, 0) & 0x0F) << (4 * i);
    return number;
}

// Writes `count` nibbles to the memory from `address` on, the lowest of `nibbles` first.
void MapperClockTest::writeHuc3(Cartridge &cartridge, unsigned address, unsigned nibbles,
                                unsigned count)
{
    ask(cartridge, 4, address & 15);
    ask(cartridge, 5, address >> 4);
    for (unsigned i = 0; i < count; ++i)
        ask(cartridge, 3, (nibbles >> (4 * i)) & 15);
}

void MapperClockTest::huc3CopiesItsClock()
{
    Huc3Cartridge cartridge(bankedImage(64 * kKiB), 0);
    writeHuc3(cartridge, 0x10, 0xA0034D2, 7);  // minute 1234 of day 3, and one nibble more
    QCOMPARE(huc3Number(cartridge, 0x00), 0U); // not yet copied
    QCOMPARE(ask(cartridge, 6, 0), 0x61);
    QCOMPARE(huc3Number(cartridge, 0x00), 1234U);
    QCOMPARE(huc3Number(cartridge, 0x03), 3U);
    QCOMPARE(huc3Number(cartridge, 0x06), 0x00AU); // and nothing behind it
    QCOMPARE(huc3Number(cartridge, 0x10), 1234U);
}

void MapperClockTest::huc3ClockCanBeSet()
{
    Huc3Cartridge cartridge(bankedImage(64 * kKiB), 0);
    writeHuc3(cartridge, 0x00, 0xFFF59F, 6); // 1439 minutes, 4095 days
    QCOMPARE(huc3Number(cartridge, 0x10), 0U);
    QCOMPARE(ask(cartridge, 6, 1), 0x61);
    QCOMPARE(huc3Number(cartridge, 0x10), 1439U);
    QCOMPARE(huc3Number(cartridge, 0x13), 4095U);
    writeHuc3(cartridge, 0x00, 0, 6);
    ask(cartridge, 6, 2); // neither copies nor sets
    QCOMPARE(huc3Number(cartridge, 0x00), 0U);
    QCOMPARE(huc3Number(cartridge, 0x10), 1439U);
    ask(cartridge, 6, 0); // it has stood still
    QCOMPARE(huc3Number(cartridge, 0x00), 1439U);
    QCOMPARE(huc3Number(cartridge, 0x03), 4095U);
}

void MapperClockTest::huc3MinutesRunOnIntoTheDays_data()
{
    QTest::addColumn<unsigned>("set"); // days and minutes, three nibbles each
    QTest::addColumn<unsigned>("minutes");
    QTest::addColumn<unsigned>("days");
    QTest::newRow("last minute of a day") << 0x00759FU << 1439U << 7U;
    QTest::newRow("first of the next") << 0x0075A0U << 0U << 8U;
    QTest::newRow("two days on") << 0x007FFFU << 4095U - 2880U << 9U;
    QTest::newRow("days start again") << 0xFFF5A1U << 1U << 0U;
}

void MapperClockTest::huc3MinutesRunOnIntoTheDays()
{
    QFETCH(unsigned, set);
    QFETCH(unsigned, minutes);
    QFETCH(unsigned, days);
    Huc3Cartridge cartridge(bankedImage(64 * kKiB), 0);
    writeHuc3(cartridge, 0x00, set, 6);
    ask(cartridge, 6, 1);
    ask(cartridge, 6, 0);
    QCOMPARE(huc3Number(cartridge, 0x00), minutes);
    QCOMPARE(huc3Number(cartridge, 0x03), days);
}

void MapperClockTest::huc3MemoryHoldsNibbles()
{
    Huc3Cartridge cartridge(bankedImage(64 * kKiB), 0);
    QCOMPARE(ask(cartridge, 4, 0xE), 0x4E);
    QCOMPARE(ask(cartridge, 5, 0x5), 0x55);
    QCOMPARE(ask(cartridge, 3, 0xA), 0x3A);
    QCOMPARE(ask(cartridge, 3, 0xB), 0x3B);
    QCOMPARE(ask(cartridge, 3, 0xC), 0x3C); // the address has run on to 0x60
    QCOMPARE(huc3Number(cartridge, 0x5E), 0xCBAU);
}

void MapperClockTest::huc3ExecutesOnlyWhenAsked()
{
    Huc3Cartridge cartridge(bankedImage(64 * kKiB), 0);
    ask(cartridge, 4, 0x7);
    busWrite(cartridge, 0x0000, 0x0B);
    busWrite(cartridge, 0xA000, 0x4A);
    QCOMPARE(busRead(cartridge, 0xA000), 0xCA);
    busWrite(cartridge, 0x0000, 0x0D);
    busWrite(cartridge, 0xA000, 0xFF); // bit 0 set: nothing happens
    busWrite(cartridge, 0x0000, 0x0C);
    QCOMPARE(busRead(cartridge, 0xA000), 0xC7);
}

void MapperClockTest::huc3MemoryOutlivesThePower()
{
    Huc3Cartridge cartridge(bankedImage(64 * kKiB), 0);
    writeHuc3(cartridge, 0x30, 0x9, 1);
    cartridge.powerCycle();
    QCOMPARE(ask(cartridge, 1, 0), 0x10); // the address is 0 again
    QCOMPARE(huc3Number(cartridge, 0x30), 9U);
}

GBDRIVER_TEST(MapperClockTest, none)
#include "mapper_clock_test.moc"
