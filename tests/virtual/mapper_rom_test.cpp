// Which ROM banks the mappers show, by the registers that they have; and what a power cycle does.
#include "mapper_bench.h"
#include "test_class.h"
#include "virtual/gb_cartridges.h"
#include "virtual/mappers/camera_cartridge.h"
#include "virtual/mappers/huc1_cartridge.h"
#include "virtual/mappers/huc3_cartridge.h"
#include "virtual/mappers/mbc2_cartridge.h"
#include "virtual/mappers/mbc3_cartridge.h"
#include "virtual/mappers/mbc7_cartridge.h"
#include "virtual/mappers/tama5_cartridge.h"

#include <QtTest>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

using namespace virtual_reader;

namespace
{

using Build = std::function<std::unique_ptr<Cartridge>(ByteVector)>;
using Writes = std::vector<std::pair<unsigned, unsigned>>;

template <class Kind> Build withRam()
{
    return [](ByteVector rom) { return std::make_unique<Kind>(std::move(rom), 8 * kKiB); };
}

template <class Kind> Build whole()
{
    return [](ByteVector rom) { return std::make_unique<Kind>(std::move(rom)); };
}

std::unique_ptr<Cartridge> multiCart(ByteVector rom)
{
    return std::make_unique<Mbc1Cartridge>(std::move(rom), 0, Mbc1Board::MultiCart);
}

// Writes of a TAMA5 that select a bank.
Writes tama5Bank(unsigned bank)
{
    return {{0xA001, 0x0A}, {0xA001, 0}, {0xA000, bank % 16}, {0xA001, 1}, {0xA000, bank / 16}};
}

} // namespace

Q_DECLARE_METATYPE(Build)
Q_DECLARE_METATYPE(Writes)

class MapperRomTest : public QObject
{
    Q_OBJECT

private slots:
    void writesSelectBanks_data();
    void writesSelectBanks();
    void powerCycleShowsTheFirstBanks_data();
    void powerCycleShowsTheFirstBanks();
    void everyBankCanBeShown_data();
    void everyBankCanBeShown();
};

void MapperRomTest::writesSelectBanks_data()
{
    QTest::addColumn<Build>("build");
    QTest::addColumn<quint32>("romSize");
    QTest::addColumn<Writes>("writes");
    QTest::addColumn<int>("low");
    QTest::addColumn<int>("high");
    const auto row = [](const char *name, const Build &build, quint32 romSize, const Writes &writes,
                        int low, int high) {
        QTest::newRow(name) << build << romSize << writes << low << high;
    };
    const quint32 mib = 1024 * kKiB;
    row("MBC1 multicart, after power-on", multiCart, mib, {}, 0, 1);
    row("MBC1 multicart, game 2, mode 1", multiCart, mib, {{0x6000, 1}, {0x4000, 2}}, 32, 33);
    row("MBC1 multicart, game 2, mode 0", multiCart, mib, {{0x4000, 2}}, 0, 33);
    row("MBC1 multicart, bit 4 is not connected", multiCart, mib, {{0x4000, 1}, {0x2000, 0x15}}, 0,
        0x15);
    row("MBC1 multicart, 0x10 is no zero", multiCart, mib, {{0x6000, 1}, {0x2000, 0x10}}, 0, 0);

    const Build mbc2 = whole<Mbc2Cartridge>();
    row("MBC2, bank", mbc2, 256 * kKiB, {{0x2100, 0xF5}}, 0, 5);
    row("MBC2, anywhere with bit 8", mbc2, 256 * kKiB, {{0x01FF, 7}}, 0, 7);
    row("MBC2, bit 8 clear is the gate", mbc2, 256 * kKiB, {{0x3E00, 7}}, 0, 1);
    row("MBC2, zero becomes one", mbc2, 256 * kKiB, {{0x3F00, 0xF0}}, 0, 1);
    row("MBC2, no register above 0x3FFF", mbc2, 256 * kKiB, {{0x4100, 3}, {0x7FFF, 3}}, 0, 1);

    const Build mbc3 = withRam<Mbc3Cartridge>();
    row("MBC3, highest", mbc3, 2 * mib, {{0x2000, 0x7F}}, 0, 0x7F);
    row("MBC3, bit 7 does not count", mbc3, 2 * mib, {{0x3FFF, 0x85}}, 0, 5);
    row("MBC3, zero without bit 7", mbc3, 2 * mib, {{0x2000, 0x80}}, 0, 1);
    row("MBC3, 0x20 is shown", mbc3, 2 * mib, {{0x2000, 0x20}}, 0, 0x20);
    row("MBC30, eight bits", mbc3, 4 * mib, {{0x2000, 0x85}}, 0, 0x85);
    row("MBC30, zero becomes one", mbc3, 4 * mib, {{0x2000, 0}}, 0, 1);

    row("MBC7, zero is shown", whole<Mbc7Cartridge>(), 2 * mib, {{0x2000, 0}}, 0, 0);
    row("MBC7, seven bits", whole<Mbc7Cartridge>(), 2 * mib, {{0x3FFF, 0xFE}}, 0, 0x7E);
    row("HuC1, six bits", withRam<Huc1Cartridge>(), mib, {{0x3FFF, 0xFF}}, 0, 0x3F);
    row("HuC1, zero is shown", withRam<Huc1Cartridge>(), mib, {{0x2000, 0}}, 0, 0);
    row("HuC-3, seven bits", withRam<Huc3Cartridge>(), 2 * mib, {{0x3FFF, 0xFF}}, 0, 0x7F);
    row("camera, six bits", withRam<CameraCartridge>(), mib, {{0x3FFF, 0xC0}}, 0, 0);
    row("TAMA5, both halves", whole<Tama5Cartridge>(), 512 * kKiB, tama5Bank(0x1C), 0, 0x1C);
    row("TAMA5, not yet awake", whole<Tama5Cartridge>(), 512 * kKiB, {{0xA001, 0}, {0xA000, 5}}, 0,
        1);
    row("TAMA5, writes to the ROM do nothing", whole<Tama5Cartridge>(), 512 * kKiB,
        {{0xA001, 0x0A}, {0x2000, 5}, {0x2001, 0}, {0x4000, 5}}, 0, 1);
}

void MapperRomTest::writesSelectBanks()
{
    QFETCH(Build, build);
    QFETCH(quint32, romSize);
    QFETCH(Writes, writes);
    QFETCH(int, low);
    QFETCH(int, high);
    const auto cartridge = build(bankedImage(romSize));
    QCOMPARE(bankAt(*cartridge, 0x0000), 0);
    QCOMPARE(bankAt(*cartridge, 0x4000), 1);
    for (const auto &[address, value] : writes)
        busWrite(*cartridge, address, value);
    QCOMPARE(bankAt(*cartridge, 0x0000), low);
    QCOMPARE(bankAt(*cartridge, 0x4000), high);
}

void MapperRomTest::powerCycleShowsTheFirstBanks_data()
{
    QTest::addColumn<Build>("build");
    QTest::newRow("MBC1") << withRam<Mbc1Cartridge>();
    QTest::newRow("MBC2") << whole<Mbc2Cartridge>();
    QTest::newRow("MBC3") << withRam<Mbc3Cartridge>();
    QTest::newRow("MBC5") << withRam<Mbc5Cartridge>();
    QTest::newRow("MBC7") << whole<Mbc7Cartridge>();
    QTest::newRow("HuC1") << withRam<Huc1Cartridge>();
    QTest::newRow("HuC-3") << withRam<Huc3Cartridge>();
    QTest::newRow("camera") << withRam<CameraCartridge>();
    QTest::newRow("TAMA5") << whole<Tama5Cartridge>();
}

void MapperRomTest::powerCycleShowsTheFirstBanks()
{
    QFETCH(Build, build);
    const auto cartridge = build(bankedImage(256 * kKiB));
    busWrite(*cartridge, 0x2100, 5);
    for (const auto &[address, value] : tama5Bank(5))
        busWrite(*cartridge, address, value);
    QCOMPARE(bankAt(*cartridge, 0x4000), 5);
    cartridge->powerCycle();
    QCOMPARE(bankAt(*cartridge, 0x0000), 0);
    QCOMPARE(bankAt(*cartridge, 0x4000), 1);
}

void MapperRomTest::everyBankCanBeShown_data()
{
    QTest::addColumn<Build>("build");
    QTest::addColumn<int>("banks");
    QTest::newRow("MBC2") << whole<Mbc2Cartridge>() << 16;
    QTest::newRow("MBC3") << withRam<Mbc3Cartridge>() << 128;
    QTest::newRow("MBC30") << withRam<Mbc3Cartridge>() << 256;
    QTest::newRow("MBC7") << whole<Mbc7Cartridge>() << 128;
    QTest::newRow("HuC1") << withRam<Huc1Cartridge>() << 64;
    QTest::newRow("HuC-3") << withRam<Huc3Cartridge>() << 128;
    QTest::newRow("camera") << withRam<CameraCartridge>() << 64;
    QTest::newRow("TAMA5") << whole<Tama5Cartridge>() << 32;
}

void MapperRomTest::everyBankCanBeShown()
{
    QFETCH(Build, build);
    QFETCH(int, banks);
    const auto cartridge = build(bankedImage(static_cast<std::uint32_t>(banks) * kBankSize));
    for (int bank = 1; bank < banks; ++bank) {
        busWrite(*cartridge, 0x2100, static_cast<unsigned>(bank));
        for (const auto &[address, value] : tama5Bank(static_cast<unsigned>(bank)))
            busWrite(*cartridge, address, value);
        // The first bytes of a bank are its number times 32.
        const int shown = busRead(*cartridge, 0x4000) | busRead(*cartridge, 0x4001) << 8;
        QCOMPARE(shown, bank * 32);
    }
}

GBDRIVER_TEST(MapperRomTest, none)
#include "mapper_rom_test.moc"
