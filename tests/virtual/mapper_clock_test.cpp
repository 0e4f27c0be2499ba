// The clocks of MBC3 and HuC-3, on a time that the test sets.
#include "mapper_bench.h"
#include "virtual/mappers/huc3_cartridge.h"
#include "virtual/mappers/mbc3_cartridge.h"

#include <QtTest>

using namespace virtual_reader;

namespace
{

constexpr std::uint64_t kMinute = 60;
constexpr std::uint64_t kHour = 60 * kMinute;
constexpr std::uint64_t kDay = 24 * kHour;

// Seconds, minutes, hours, low 8 bits of the days, flags.
using Mbc3Time = QVector<int>;

} // namespace

class MapperClockTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void mbc3CarriesFromFieldToField_data();
    void mbc3CarriesFromFieldToField();
    void mbc3ShowsTheCopyUntilTheNextLatch();
    void mbc3LatchTakesZeroThenOne();
    void mbc3HaltStopsTheCounter();
    void mbc3RegistersHaveTheirWidths();
    void mbc3ClockNeedsTheGate();
    void mbc3ClockOutlivesThePower();
    void mbc3ClockIsNoPartOfTheSave();
    void clockWithoutSourceStandsStill();
    void huc3CopiesItsClock();
    void huc3ClockCanBeSet();
    void huc3MemoryHoldsNibbles();
    void huc3ExecutesOnlyWhenAsked();
    void huc3MemoryOutlivesThePower();

private:
    ClockSource clock()
    {
        return [this] { return m_now; };
    }
    Mbc3Time latched(Cartridge &cartridge);
    void setMbc3(Cartridge &cartridge, const Mbc3Time &time);
    int ask(Cartridge &cartridge, unsigned command, unsigned nibble);
    unsigned huc3Number(Cartridge &cartridge, unsigned address);

    std::uint64_t m_now = 0;
};

void MapperClockTest::init()
{
    m_now = 1000;
}

Mbc3Time MapperClockTest::latched(Cartridge &cartridge)
{
    busWrite(cartridge, 0x6000, 0);
    busWrite(cartridge, 0x7FFF, 1);
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

void MapperClockTest::mbc3CarriesFromFieldToField_data()
{
    QTest::addColumn<Mbc3Time>("from");
    QTest::addColumn<quint64>("seconds");
    QTest::addColumn<Mbc3Time>("to");
    const auto row = [](const char *name, const Mbc3Time &from, quint64 seconds,
                        const Mbc3Time &to) { QTest::newRow(name) << from << seconds << to; };
    row("nothing passes", {1, 2, 3, 4, 0}, 0, {1, 2, 3, 4, 0});
    row("one second", {1, 2, 3, 4, 0}, 1, {2, 2, 3, 4, 0});
    row("minute", {59, 2, 3, 4, 0}, 1, {0, 3, 3, 4, 0});
    row("hour", {59, 59, 3, 4, 0}, 1, {0, 0, 4, 4, 0});
    row("day", {59, 59, 23, 4, 0}, 1, {0, 0, 0, 5, 0});
    row("day bit 8", {59, 59, 23, 255, 0}, 1, {0, 0, 0, 0, 0x01});
    row("days overflow", {59, 59, 23, 255, 0x01}, 1, {0, 0, 0, 0, 0x80});
    row("overflow stays", {0, 0, 0, 0, 0x80}, 3 * kDay, {0, 0, 0, 3, 0x80});
    row("more than once round", {0, 0, 0, 0, 0}, 1030 * kDay, {0, 0, 0, 6, 0x80});
    row("all fields", {0, 0, 0, 0, 0}, kDay + 2 * kHour + 3 * kMinute + 4, {4, 3, 2, 1, 0});
    // A field beyond its range ends with its bits, without a carry.
    row("second 60 goes on", {60, 2, 3, 4, 0}, 1, {61, 2, 3, 4, 0});
    row("second 63 has no carry", {63, 2, 3, 4, 0}, 1, {0, 2, 3, 4, 0});
    row("minute 63 has no carry", {59, 63, 3, 4, 0}, 1, {0, 0, 3, 4, 0});
    row("hour 31 has no carry", {59, 59, 31, 4, 0}, 1, {0, 0, 0, 4, 0});
}

void MapperClockTest::mbc3CarriesFromFieldToField()
{
    QFETCH(Mbc3Time, from);
    QFETCH(quint64, seconds);
    QFETCH(Mbc3Time, to);
    Mbc3Cartridge cartridge(bankedImage(64 * kKiB), 0, clock());
    busWrite(cartridge, 0x0000, 0x0A);
    setMbc3(cartridge, from);
    m_now += seconds;
    QCOMPARE(latched(cartridge), to);
}

void MapperClockTest::mbc3ShowsTheCopyUntilTheNextLatch()
{
    Mbc3Cartridge cartridge(bankedImage(64 * kKiB), 0, clock());
    busWrite(cartridge, 0x0000, 0x0A);
    QCOMPARE(latched(cartridge), Mbc3Time({0, 0, 0, 0, 0}));
    m_now += 5;
    busWrite(cartridge, 0x4000, 0x08);
    QCOMPARE(busRead(cartridge, 0xA000), 0);
    QCOMPARE(latched(cartridge), Mbc3Time({5, 0, 0, 0, 0}));
}

void MapperClockTest::mbc3LatchTakesZeroThenOne()
{
    Mbc3Cartridge cartridge(bankedImage(64 * kKiB), 0, clock());
    busWrite(cartridge, 0x0000, 0x0A);
    busWrite(cartridge, 0x4000, 0x08);
    m_now += 7;
    for (const unsigned value : {1U, 1U, 2U, 1U, 0U}) { // no 0 before a 1
        busWrite(cartridge, 0x6000, value);
        QCOMPARE(busRead(cartridge, 0xA000), 0);
    }
    busWrite(cartridge, 0x6000, 1);
    QCOMPARE(busRead(cartridge, 0xA000), 7);
}

void MapperClockTest::mbc3HaltStopsTheCounter()
{
    Mbc3Cartridge cartridge(bankedImage(64 * kKiB), 0, clock());
    busWrite(cartridge, 0x0000, 0x0A);
    m_now += 10; // before the halt counts
    busWrite(cartridge, 0x4000, 0x0C);
    busWrite(cartridge, 0xA000, 0x40);
    m_now += kDay;
    QCOMPARE(latched(cartridge), Mbc3Time({10, 0, 0, 0, 0x40}));
    busWrite(cartridge, 0x4000, 0x0C);
    busWrite(cartridge, 0xA000, 0x00);
    m_now += 2;
    QCOMPARE(latched(cartridge), Mbc3Time({12, 0, 0, 0, 0}));
}

void MapperClockTest::mbc3RegistersHaveTheirWidths()
{
    Mbc3Cartridge cartridge(bankedImage(64 * kKiB), 0, clock());
    busWrite(cartridge, 0x0000, 0x0A);
    setMbc3(cartridge, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF});
    for (unsigned i = 0; i < 5; ++i) { // without a latch
        const int widths[] = {0x3F, 0x3F, 0x1F, 0xFF, 0xC1};
        busWrite(cartridge, 0x4000, 0x08 + i);
        QCOMPARE(busRead(cartridge, 0xA000 + i), widths[i]);
    }
}

void MapperClockTest::mbc3ClockNeedsTheGate()
{
    Mbc3Cartridge cartridge(bankedImage(64 * kKiB), 8 * kKiB, clock());
    busWrite(cartridge, 0x4000, 0x08);
    busWrite(cartridge, 0xA000, 0x15);
    QCOMPARE(busRead(cartridge, 0xA000), 0xFF);
    busWrite(cartridge, 0x0000, 0x0A);
    QCOMPARE(busRead(cartridge, 0xA000), 0x00);
}

void MapperClockTest::mbc3ClockOutlivesThePower()
{
    Mbc3Cartridge cartridge(bankedImage(64 * kKiB), 0, clock());
    busWrite(cartridge, 0x0000, 0x0A);
    setMbc3(cartridge, {1, 2, 3, 4, 0});
    cartridge.powerCycle();
    m_now += 1;
    busWrite(cartridge, 0x4000, 0x08);
    QCOMPARE(busRead(cartridge, 0xA000), 0xFF); // the gate is closed again
    busWrite(cartridge, 0x0000, 0x0A);
    QCOMPARE(latched(cartridge), Mbc3Time({2, 2, 3, 4, 0}));
}

void MapperClockTest::mbc3ClockIsNoPartOfTheSave()
{
    Mbc3Cartridge cartridge(bankedImage(64 * kKiB), 8 * kKiB, clock());
    busWrite(cartridge, 0x0000, 0x0A);
    setMbc3(cartridge, {1, 2, 3, 4, 0});
    QVERIFY(cartridge.saveImage() == ByteVector(8 * kKiB));
    QCOMPARE(cartridge.saveChanges(), quint64(0));
}

void MapperClockTest::clockWithoutSourceStandsStill()
{
    Mbc3Cartridge cartridge(bankedImage(64 * kKiB), 0);
    busWrite(cartridge, 0x0000, 0x0A);
    setMbc3(cartridge, {59, 59, 23, 4, 0});
    QCOMPARE(latched(cartridge), Mbc3Time({59, 59, 23, 4, 0}));
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

void MapperClockTest::huc3CopiesItsClock()
{
    Huc3Cartridge cartridge(bankedImage(64 * kKiB), 0, clock());
    m_now += 3 * kDay + 1234 * kMinute + 59;
    QCOMPARE(huc3Number(cartridge, 0x00), 0U); // not yet copied
    QCOMPARE(ask(cartridge, 6, 0), 0x61);
    QCOMPARE(huc3Number(cartridge, 0x00), 1234U);
    QCOMPARE(huc3Number(cartridge, 0x03), 3U);
    m_now += 1; // the seconds of a minute are not lost
    ask(cartridge, 6, 0);
    QCOMPARE(huc3Number(cartridge, 0x00), 1235U);
}

void MapperClockTest::huc3ClockCanBeSet()
{
    Huc3Cartridge cartridge(bankedImage(64 * kKiB), 0, clock());
    ask(cartridge, 4, 0);
    ask(cartridge, 5, 0);
    for (const unsigned nibble : {0xFU, 0x9U, 0x5U, 0xFU, 0xFU, 0xFU}) // 1439 minutes, 4095 days
        ask(cartridge, 3, nibble);
    ask(cartridge, 6, 1);
    ask(cartridge, 6, 0);
    QCOMPARE(huc3Number(cartridge, 0x00), 1439U);
    QCOMPARE(huc3Number(cartridge, 0x03), 4095U);
    m_now += kMinute;
    ask(cartridge, 6, 0);
    QCOMPARE(huc3Number(cartridge, 0x00), 0U);
    QCOMPARE(huc3Number(cartridge, 0x03), 0U);
}

void MapperClockTest::huc3MemoryHoldsNibbles()
{
    Huc3Cartridge cartridge(bankedImage(64 * kKiB), 0, clock());
    QCOMPARE(ask(cartridge, 4, 0xE), 0x4E);
    QCOMPARE(ask(cartridge, 5, 0x5), 0x55);
    QCOMPARE(ask(cartridge, 3, 0xA), 0x3A);
    QCOMPARE(ask(cartridge, 3, 0xB), 0x3B);
    QCOMPARE(ask(cartridge, 3, 0xC), 0x3C); // the address has run on to 0x60
    QCOMPARE(huc3Number(cartridge, 0x5E), 0xCBAU);
}

void MapperClockTest::huc3ExecutesOnlyWhenAsked()
{
    Huc3Cartridge cartridge(bankedImage(64 * kKiB), 0, clock());
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
    Huc3Cartridge cartridge(bankedImage(64 * kKiB), 0, clock());
    ask(cartridge, 4, 0x0);
    ask(cartridge, 5, 0x3);
    ask(cartridge, 3, 0x9);
    cartridge.powerCycle();
    QCOMPARE(int(cartridge.mailbox().nibble(0x30)), 9);
    QCOMPARE(ask(cartridge, 1, 0), 0x10); // the address is 0 again
}

QTEST_APPLESS_MAIN(MapperClockTest)
#include "mapper_clock_test.moc"
