// MMM01: the menu after power-on, mapping, and every setup bit before and after it is locked.
#include "mapper_bench.h"
#include "test_class.h"
#include "virtual/mappers/mmm01_cartridge.h"

#include <QtTest>

#include <utility>
#include <vector>

using namespace virtual_reader;

namespace
{

using Writes = std::vector<std::pair<unsigned, unsigned>>;

constexpr std::uint32_t kLargestRom = 8192 * kKiB;

void play(Cartridge &cartridge, const Writes &writes)
{
    for (const auto &[address, value] : writes)
        busWrite(cartridge, address, value);
}

// The number of the bank that shows, by its first sector's number.
int shownBank(Cartridge &cartridge, unsigned address)
{
    return (busRead(cartridge, address) | busRead(cartridge, address + 1) << 8) / 32;
}

} // namespace

Q_DECLARE_METATYPE(Writes)

class MapperMmm01Test : public QObject
{
    Q_OBJECT

private slots:
    void menuFillsTheWholeRomSpace_data();
    void menuFillsTheWholeRomSpace();
    void mappedBanks_data();
    void mappedBanks();
    void setupIsLockedAfterMapping();
    void powerCycleReturnsToTheMenu();
    void recipeForHalfAMebibyte();
    void recipeForTwoMebibytes();
    void ramBanks_data();
    void ramBanks();
    void ramGateWorksMappedAndUnmapped();
};

void MapperMmm01Test::menuFillsTheWholeRomSpace_data()
{
    QTest::addColumn<quint32>("romSize");
    for (quint32 romSize = 32 * kKiB; romSize <= kLargestRom; romSize *= 4)
        QTest::newRow(QByteArray::number(romSize).constData()) << romSize;
}

void MapperMmm01Test::menuFillsTheWholeRomSpace()
{
    QFETCH(quint32, romSize);
    Mmm01Cartridge cartridge(bankedImage(romSize), 0);
    const int banks = static_cast<int>(romSize / kBankSize);
    QCOMPARE(bankAt(cartridge, 0x0000), banks - 2);
    QCOMPARE(bankAt(cartridge, 0x4000), banks - 1);
    play(cartridge, {{0x2000, 3}, {0x4000, 0x10}, {0x6000, 1}, {0x0000, 0x0A}});
    QCOMPARE(bankAt(cartridge, 0x0000), banks - 2); // all this maps nothing
    QCOMPARE(bankAt(cartridge, 0x4000), banks - 1);
}

void MapperMmm01Test::mappedBanks_data()
{
    QTest::addColumn<Writes>("setup");
    QTest::addColumn<Writes>("game");
    QTest::addColumn<int>("low");
    QTest::addColumn<int>("high");
    const auto row = [](const char *name, const Writes &setup, const Writes &game, int low,
                        int high) { QTest::newRow(name) << setup << game << low << high; };
    row("nothing set", {}, {}, 0, 1);
    row("bank", {}, {{0x2000, 0x1F}}, 0, 0x1F);
    row("zero becomes one", {}, {{0x2000, 0x00}}, 0, 1);
    row("middle bits", {{0x2000, 0x60}}, {{0x2000, 0x05}}, 0x60, 0x65);
    row("high bits", {{0x4000, 0x30}}, {{0x2000, 0x05}}, 0x180, 0x185);
    row("high, middle", {{0x2000, 0x40}, {0x4000, 0x10}}, {{0x2000, 0x05}}, 0xC0, 0xC5);
    // Masks cover bits 1 to 4 of the low bits.
    row("masked game of 4 banks", {{0x2000, 0x0C}, {0x6000, 0x38}}, {{0x2000, 0x13}}, 0x0C, 0x0F);
    row("zero test leaves the mask out", {{0x2000, 0x0C}, {0x6000, 0x38}}, {{0x2000, 0x1C}}, 0x0C,
        0x0D);
    row("all masked, two banks", {{0x2000, 0x1E}, {0x6000, 0x3C}}, {{0x2000, 0x00}}, 0x1E, 0x1F);
    row("first bank of a masked game", {{0x2000, 0x16}, {0x6000, 0x30}}, {}, 0x10, 0x16);
    // Without multiplexing the RAM bank reaches no ROM line.
    row("mode 1, no multiplexing", {}, {{0x6000, 1}, {0x4000, 3}, {0x2000, 2}}, 0, 2);
    row("multiplexed, mode 0", {{0x6000, 0x40}}, {{0x4000, 3}, {0x2000, 2}}, 0, 0x62);
    row("multiplexed, mode 1", {{0x6000, 0x41}}, {{0x4000, 3}, {0x2000, 2}}, 0x60, 0x62);
    row("multiplexed, mask, mode 0", {{0x4000, 2}, {0x6000, 0x40}, {0x0000, 0x20}},
        {{0x4000, 1}, {0x2000, 2}}, 0x40, 0x62);
    row("mode locked", {{0x6000, 0x40}, {0x4000, 0x40}}, {{0x6000, 1}, {0x4000, 3}, {0x2000, 2}}, 0,
        0x62);
}

void MapperMmm01Test::mappedBanks()
{
    QFETCH(Writes, setup);
    QFETCH(Writes, game);
    QFETCH(int, low);
    QFETCH(int, high);
    Mmm01Cartridge cartridge(bankedImage(kLargestRom), 0);
    play(cartridge, setup);
    // Keeps the RAM mask, which shares the register with the map bit.
    const bool hasMask = !setup.empty() && setup.back().first == 0x0000;
    busWrite(cartridge, 0x0000, 0x40 | (hasMask ? setup.back().second : 0));
    play(cartridge, game);
    QCOMPARE(bankAt(cartridge, 0x0000), low);
    QCOMPARE(bankAt(cartridge, 0x4000), high);
}

void MapperMmm01Test::setupIsLockedAfterMapping()
{
    Mmm01Cartridge cartridge(bankedImage(kLargestRom), 128 * kKiB);
    play(cartridge, {{0x0000, 0x40}});
    play(cartridge, {{0x2000, 0x7F}, {0x4000, 0x7C}, {0x6000, 0x7C}, {0x0000, 0x30}});
    QCOMPARE(bankAt(cartridge, 0x0000), 0);
    QCOMPARE(bankAt(cartridge, 0x4000), 0x1F);
    play(cartridge, {{0x0000, 0x0A}, {0xA000, 0x99}});
    QCOMPARE(int(cartridge.saveImage()[0]), 0x99); // RAM bank 0
    play(cartridge, {{0x6000, 1}, {0x4000, 3}, {0xA000, 0x98}});
    QCOMPARE(int(cartridge.saveImage()[3 * 0x2000]), 0x98); // the mode is not locked
}

void MapperMmm01Test::powerCycleReturnsToTheMenu()
{
    Mmm01Cartridge cartridge(bankedImage(512 * kKiB), 0);
    play(cartridge, {{0x2000, 4}, {0x0000, 0x40}});
    QCOMPARE(shownBank(cartridge, 0x4000), 4);
    play(cartridge, {{0x0000, 0x00}, {0x2000, 0x00}});
    QCOMPARE(shownBank(cartridge, 0x4000), 1);
    cartridge.powerCycle();
    QCOMPARE(shownBank(cartridge, 0x0000), 30);
    QCOMPARE(shownBank(cartridge, 0x4000), 31);
}

void MapperMmm01Test::recipeForHalfAMebibyte()
{
    Mmm01Cartridge cartridge(bankedImage(512 * kKiB), 0);
    play(cartridge, {{0x2000, 0}, {0x6000, 0}, {0x4000, 0}, {0x0000, 0}, {0x0000, 0x40}});
    QCOMPARE(bankAt(cartridge, 0x0000), 0);
    for (unsigned bank = 1; bank < 32; ++bank) {
        busWrite(cartridge, 0x2000, bank);
        QCOMPARE(shownBank(cartridge, 0x4000), int(bank));
    }
}

void MapperMmm01Test::recipeForTwoMebibytes()
{
    Mmm01Cartridge cartridge(bankedImage(2048 * kKiB), 0);
    play(cartridge, {{0x2000, 0}, {0x6000, 0x41}, {0x4000, 0}, {0x0000, 0}, {0x0000, 0x40}});
    for (unsigned bank = 0; bank < 128; ++bank) {
        busWrite(cartridge, 0x2000, bank & 31);
        busWrite(cartridge, 0x4000, bank >> 5);
        QCOMPARE(shownBank(cartridge, bank % 32 == 0 ? 0x0000 : 0x4000), int(bank));
    }
}

void MapperMmm01Test::ramBanks_data()
{
    QTest::addColumn<Writes>("setup");
    QTest::addColumn<Writes>("game");
    QTest::addColumn<int>("bank");
    const auto row = [](const char *name, const Writes &setup, const Writes &game, int bank) {
        QTest::newRow(name) << setup << game << bank;
    };
    row("mode 0", {}, {{0x4000, 3}}, 0);
    row("mode 1", {}, {{0x6000, 1}, {0x4000, 3}}, 3);
    row("high bits", {{0x4000, 0x08}}, {{0x6000, 1}, {0x4000, 1}}, 9);
    row("masked, mode 1", {{0x4000, 0x02}, {0x0000, 0x30}}, {{0x6000, 1}, {0x4000, 1}}, 2);
    row("masked, mode 0", {{0x4000, 0x02}, {0x0000, 0x30}}, {{0x4000, 1}}, 2);
    row("half masked", {{0x4000, 0x02}, {0x0000, 0x20}}, {{0x6000, 1}, {0x4000, 1}}, 3);
    row("multiplexed", {{0x2000, 0x60}, {0x6000, 0x40}}, {{0x4000, 1}}, 3);
}

void MapperMmm01Test::ramBanks()
{
    QFETCH(Writes, setup);
    QFETCH(Writes, game);
    QFETCH(int, bank);
    Mmm01Cartridge cartridge(bankedImage(64 * kKiB), 128 * kKiB);
    play(cartridge, setup);
    const bool hasMask = !setup.empty() && setup.back().first == 0x0000;
    busWrite(cartridge, 0x0000, 0x4A | (hasMask ? setup.back().second : 0));
    play(cartridge, game);
    busWrite(cartridge, 0xA000, 0x5A);
    const ByteVector save = cartridge.saveImage();
    QCOMPARE(int(save[static_cast<std::size_t>(bank) * 0x2000]), 0x5A);
    QCOMPARE(cartridge.saveChanges(), quint64(1));
}

void MapperMmm01Test::ramGateWorksMappedAndUnmapped()
{
    Mmm01Cartridge cartridge(bankedImage(64 * kKiB), 8 * kKiB);
    for (const unsigned map : {0x00U, 0x40U}) {
        busWrite(cartridge, 0x0000, map | 0x0A);
        QCOMPARE(busRead(cartridge, 0xA000), 0x00);
        busWrite(cartridge, 0x0000, map);
        QCOMPARE(busRead(cartridge, 0xA000), 0xFF);
    }
}

GBDRIVER_TEST(MapperMmm01Test, none)
#include "mapper_mmm01_test.moc"
