// Banking and RAM of every modelled cartridge, at the edges of its registers.
#include "samples.h"
#include "test_class.h"
#include "virtual/gb_cartridges.h"
#include "virtual/image_generator.h"

#include <QtTest>

#include <string>
#include <vector>

using namespace virtual_reader;

namespace
{

constexpr std::uint32_t kKiB = 1024;

ByteVector imageOf(std::uint32_t size)
{
    return gbImage({0x1B, size, 0, "BANKS", 42});
}

ByteVector readRange(Cartridge &cartridge, std::uint32_t address, std::uint32_t length)
{
    ByteVector bytes(length);
    for (std::uint32_t i = 0; i < length; ++i)
        bytes[i] = cartridge.gbRead(static_cast<std::uint16_t>(address + i));
    return bytes;
}

// The number of the 16 KiB bank that shows at `address`, or -1.
int bankAt(Cartridge &cartridge, const ByteVector &image, std::uint32_t address)
{
    const ByteVector bytes = readRange(cartridge, address, 0x4000);
    for (std::size_t bank = 0; bank < image.size() / 0x4000; ++bank) {
        const auto start = image.begin() + static_cast<std::ptrdiff_t>(bank * 0x4000);
        if (std::equal(bytes.begin(), bytes.end(), start))
            return static_cast<int>(bank);
    }
    return -1;
}

// Writes a mark into each of `banks` RAM banks, counting down, with `select` switching them.
template <class Select> void markRam(Cartridge &cartridge, int banks, Select select)
{
    for (int bank = banks - 1; bank >= 0; --bank) {
        select(bank);
        cartridge.gbWrite(0xA000, static_cast<std::uint8_t>(0x80 + bank));
        cartridge.gbWrite(0xBFFF, static_cast<std::uint8_t>(0x40 + bank));
    }
}

} // namespace

class GbCartridgesTest : public QObject
{
    Q_OBJECT

private slots:
    void romOnlyShowsBothBanksAndIgnoresWrites();
    void romAndRamNeedsNoGate();
    void smallRamRepeats();
    void addressesOutsideTheCartridgeReadOnes();
    void looseBankIsWrongEverySecondTime();
    void mbc1BankRegisters_data();
    void mbc1BankRegisters();
    void mbc1RamGateTestsTheLowNibble();
    void mbc1RamBanksNeedModeOne();
    void mbc5BankRegisters_data();
    void mbc5BankRegisters();
    void mbc5RamGateTestsAllBits();
    void mbc5RamBanks_data();
    void mbc5RamBanks();
    void saveImagesGoInAndOut();
    void saveChangesCountOnlyChangedBytes();
};

void GbCartridgesTest::romOnlyShowsBothBanksAndIgnoresWrites()
{
    const ByteVector image = imageOf(32 * kKiB);
    GbCartridge cartridge(image, 0);
    for (unsigned address = 0; address < 0x10000; address += 0x100)
        cartridge.gbWrite(static_cast<std::uint16_t>(address), 0x0A);
    QVERIFY(readRange(cartridge, 0, 0x8000) == image);
    QVERIFY(readRange(cartridge, 0xA000, 0x2000) == ByteVector(0x2000, 0xFF));
    QVERIFY(cartridge.romImage() == image);
    QVERIFY(cartridge.saveImage().empty());
    QCOMPARE(cartridge.saveChanges(), quint64(0));
}

// One bit of the bank, and nothing of any other.
void GbCartridgesTest::looseBankIsWrongEverySecondTime()
{
    const ByteVector image = imageOf(32 * kKiB);
    GbCartridge cartridge(image, 0);
    cartridge.loosen(1);
    QCOMPARE(cartridge.gbRead(0x6345), image[0x6345]);
    for (int pass = 0; pass < 4; ++pass) {
        const ByteVector seen = readRange(cartridge, 0, 0x8000);
        int wrongBits = 0;
        for (std::size_t i = 0; i < image.size(); ++i) {
            if (i < 0x4000)
                QCOMPARE(seen[i], image[i]);
            wrongBits += qPopulationCount(quint8(seen[i] ^ image[i]));
        }
        QCOMPARE(wrongBits, pass % 2);
    }
    QVERIFY(cartridge.romImage() == image);
}

void GbCartridgesTest::romAndRamNeedsNoGate()
{
    GbCartridge cartridge(imageOf(32 * kKiB), 8 * kKiB);
    cartridge.gbWrite(0xA000, 0x12);
    cartridge.gbWrite(0xBFFF, 0x34);
    QCOMPARE(cartridge.gbRead(0xA000), quint8(0x12));
    QCOMPARE(cartridge.gbRead(0xBFFF), quint8(0x34));
    cartridge.gbWrite(0x0000, 0x00);
    QCOMPARE(cartridge.gbRead(0xA000), quint8(0x12));
}

void GbCartridgesTest::smallRamRepeats()
{
    GbCartridge cartridge(imageOf(32 * kKiB), 2 * kKiB);
    cartridge.gbWrite(0xA800, 0x77);
    for (const std::uint16_t address : std::vector<std::uint16_t>{0xA000, 0xA800, 0xB000, 0xB800})
        QCOMPARE(cartridge.gbRead(address), quint8(0x77));
}

void GbCartridgesTest::addressesOutsideTheCartridgeReadOnes()
{
    Mbc5Cartridge cartridge(imageOf(64 * kKiB), 8 * kKiB);
    cartridge.gbWrite(0x0000, 0x0A);
    for (const std::uint16_t address : std::vector<std::uint16_t>{0x8000, 0x9FFF, 0xC000, 0xFFFF}) {
        cartridge.gbWrite(address, 0x00);
        QCOMPARE(cartridge.gbRead(address), quint8(0xFF));
    }
}

void GbCartridgesTest::mbc1BankRegisters_data()
{
    QTest::addColumn<int>("banks"); // of the image
    QTest::addColumn<int>("bank1");
    QTest::addColumn<int>("bank2");
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("low");
    QTest::addColumn<int>("high");
    const auto row = [](const char *name, int banks, int bank1, int bank2, int mode, int low,
                        int high) {
        QTest::newRow(name) << banks << bank1 << bank2 << mode << low << high;
    };
    row("plain", 128, 0x05, 0, 0, 0, 0x05);
    row("zero becomes one", 128, 0x00, 0, 0, 0, 0x01);
    row("zero of a higher group", 128, 0x00, 1, 0, 0, 0x21);
    row("zero test ignores bits 5 to 7", 128, 0xE0, 2, 0, 0, 0x41);
    row("highest bank", 128, 0x1F, 3, 0, 0, 0x7F);
    row("mode 1, group 1", 128, 0x01, 1, 1, 0x20, 0x21);
    row("mode 1, group 2", 128, 0x1F, 2, 1, 0x40, 0x5F);
    row("mode 1, group 3", 128, 0x00, 3, 1, 0x60, 0x61);
    row("bits above BANK2", 128, 0x02, 0xFD, 1, 0x20, 0x22);
    row("mode takes bit 0 alone", 128, 0x02, 1, 0xFE, 0, 0x22);
    row("wraps in 1 MiB", 64, 0x02, 3, 1, 0x20, 0x22);
    // The zero test looks at all five bits, also those that a small ROM does not use.
    row("0x10 of 16 banks", 16, 0x10, 0, 0, 0, 0x00);
    row("0x11 of 16 banks", 16, 0x11, 0, 0, 0, 0x01);
    row("BANK2 without lines", 16, 0x03, 1, 1, 0, 0x03);
}

void GbCartridgesTest::mbc1BankRegisters()
{
    QFETCH(int, banks);
    QFETCH(int, bank1);
    QFETCH(int, bank2);
    QFETCH(int, mode);
    QFETCH(int, low);
    QFETCH(int, high);
    const ByteVector image = imageOf(static_cast<std::uint32_t>(banks) * 16 * kKiB);
    Mbc1Cartridge cartridge(image, 0);
    QCOMPARE(bankAt(cartridge, image, 0x0000), 0);
    QCOMPARE(bankAt(cartridge, image, 0x4000), 1);
    // Either end of each register's range.
    cartridge.gbWrite(0x3FFF, 0x1E);
    cartridge.gbWrite(0x2000, static_cast<std::uint8_t>(bank1));
    cartridge.gbWrite(0x4000, 0);
    cartridge.gbWrite(0x5FFF, static_cast<std::uint8_t>(bank2));
    cartridge.gbWrite(0x6000, 1);
    cartridge.gbWrite(0x7FFF, static_cast<std::uint8_t>(mode));
    QCOMPARE(bankAt(cartridge, image, 0x0000), low);
    QCOMPARE(bankAt(cartridge, image, 0x4000), high);
}

void GbCartridgesTest::mbc1RamGateTestsTheLowNibble()
{
    Mbc1Cartridge cartridge(imageOf(32 * kKiB), 8 * kKiB);
    cartridge.gbWrite(0xA000, 0x33);
    QCOMPARE(cartridge.gbRead(0xA000), quint8(0xFF));
    for (const std::uint8_t gate : std::vector<std::uint8_t>{0x0A, 0x1A, 0xFA}) {
        cartridge.gbWrite(0x1FFF, 0x00);
        QCOMPARE(cartridge.gbRead(0xA000), quint8(0xFF));
        cartridge.gbWrite(0x0000, gate);
        cartridge.gbWrite(0xA000, gate);
        QCOMPARE(cartridge.gbRead(0xA000), quint8(gate));
    }
    for (const std::uint8_t gate : std::vector<std::uint8_t>{0x00, 0x0B, 0xA0, 0xFF}) {
        cartridge.gbWrite(0x0000, 0x0A);
        QCOMPARE(cartridge.gbRead(0xA000), quint8(0xFA));
        cartridge.gbWrite(0x0000, gate);
        cartridge.gbWrite(0xA000, 0x00); // ignored
        QCOMPARE(cartridge.gbRead(0xA000), quint8(0xFF));
    }
}

void GbCartridgesTest::mbc1RamBanksNeedModeOne()
{
    Mbc1Cartridge cartridge(imageOf(512 * kKiB), 32 * kKiB);
    cartridge.gbWrite(0x0000, 0x0A);
    cartridge.gbWrite(0x6000, 1);
    const auto select = [&](int bank) {
        cartridge.gbWrite(0x4000, static_cast<std::uint8_t>(bank));
    };
    markRam(cartridge, 4, select);
    const ByteVector save = cartridge.saveImage();
    QCOMPARE(save.size(), std::size_t(32 * kKiB));
    for (int bank = 0; bank < 4; ++bank) {
        select(bank);
        QCOMPARE(cartridge.gbRead(0xA000), quint8(0x80 + bank));
        QCOMPARE(cartridge.gbRead(0xBFFF), quint8(0x40 + bank));
        QCOMPARE(save[std::size_t(bank) * 0x2000], quint8(0x80 + bank));
    }
    cartridge.gbWrite(0x6000, 0); // BANK2 is 3, but mode 0 locks the RAM to bank 0
    QCOMPARE(cartridge.gbRead(0xA000), quint8(0x80));
}

void GbCartridgesTest::mbc5BankRegisters_data()
{
    QTest::addColumn<int>("banks");
    QTest::addColumn<int>("low8");
    QTest::addColumn<int>("bit8");
    QTest::addColumn<int>("high");
    QTest::newRow("bank 0 is allowed") << 512 << 0 << 0 << 0;
    QTest::newRow("low byte") << 512 << 0xFF << 0 << 0xFF;
    QTest::newRow("bit 8") << 512 << 0 << 1 << 0x100;
    QTest::newRow("highest") << 512 << 0xFF << 1 << 0x1FF;
    QTest::newRow("bit 0 alone counts") << 512 << 0x12 << 0xFE << 0x12;
    QTest::newRow("wraps") << 4 << 0x06 << 1 << 2;
}

void GbCartridgesTest::mbc5BankRegisters()
{
    QFETCH(int, banks);
    QFETCH(int, low8);
    QFETCH(int, bit8);
    QFETCH(int, high);
    const ByteVector image = imageOf(static_cast<std::uint32_t>(banks) * 16 * kKiB);
    Mbc5Cartridge cartridge(image, 0);
    QCOMPARE(bankAt(cartridge, image, 0x4000), 1);
    cartridge.gbWrite(0x3FFF, static_cast<std::uint8_t>(bit8));
    cartridge.gbWrite(0x2000, 0x55);
    cartridge.gbWrite(0x2FFF, static_cast<std::uint8_t>(low8));
    cartridge.gbWrite(0x6000, 0xFF); // no register
    cartridge.gbWrite(0x7FFF, 0xFF);
    QCOMPARE(bankAt(cartridge, image, 0x0000), 0);
    QCOMPARE(bankAt(cartridge, image, 0x4000), high);
}

void GbCartridgesTest::mbc5RamGateTestsAllBits()
{
    Mbc5Cartridge cartridge(imageOf(32 * kKiB), 8 * kKiB);
    cartridge.gbWrite(0x0000, 0x0A);
    cartridge.gbWrite(0xA000, 0x33);
    for (int gate = 0; gate < 256; ++gate) {
        cartridge.gbWrite(0x1FFF, static_cast<std::uint8_t>(gate));
        QCOMPARE(cartridge.gbRead(0xA000), quint8(gate == 0x0A ? 0x33 : 0xFF));
    }
}

void GbCartridgesTest::mbc5RamBanks_data()
{
    QTest::addColumn<int>("banks");
    QTest::newRow("8 KiB") << 1;
    QTest::newRow("32 KiB") << 4;
    QTest::newRow("64 KiB") << 8;
    QTest::newRow("128 KiB") << 16;
}

void GbCartridgesTest::mbc5RamBanks()
{
    QFETCH(int, banks);
    Mbc5Cartridge cartridge(imageOf(32 * kKiB), static_cast<std::uint32_t>(banks) * 8 * kKiB);
    cartridge.gbWrite(0x0000, 0x0A);
    const auto select = [&](int bank) {
        cartridge.gbWrite(0x5FFF, static_cast<std::uint8_t>(bank));
    };
    markRam(cartridge, banks, select);
    for (int bank = 0; bank < 32; ++bank) {
        select(bank);
        QCOMPARE(cartridge.gbRead(0xA000), quint8(0x80 + bank % banks));
        QCOMPARE(cartridge.gbRead(0xBFFF), quint8(0x40 + bank % banks));
    }
}

void GbCartridgesTest::saveImagesGoInAndOut()
{
    Mbc5Cartridge cartridge(imageOf(32 * kKiB), 32 * kKiB);
    const ByteVector save = makeNoise(32 * kKiB, 3);
    QVERIFY(!cartridge.loadSave(ByteVector(8 * kKiB)));
    QVERIFY(cartridge.loadSave(save));
    QVERIFY(cartridge.saveImage() == save);
    QCOMPARE(cartridge.saveChanges(), quint64(0));
    cartridge.gbWrite(0x0000, 0x0A);
    for (int bank = 0; bank < 4; ++bank) {
        cartridge.gbWrite(0x4000, static_cast<std::uint8_t>(bank));
        const ByteVector bytes = readRange(cartridge, 0xA000, 0x2000);
        QVERIFY(std::equal(bytes.begin(), bytes.end(), save.begin() + bank * 0x2000));
    }
}

void GbCartridgesTest::saveChangesCountOnlyChangedBytes()
{
    Mbc1Cartridge cartridge(imageOf(32 * kKiB), 8 * kKiB);
    cartridge.gbWrite(0xA000, 1); // the gate is closed
    QCOMPARE(cartridge.saveChanges(), quint64(0));
    cartridge.gbWrite(0x0000, 0x0A);
    cartridge.gbWrite(0xA000, 0); // as it was
    QCOMPARE(cartridge.saveChanges(), quint64(0));
    cartridge.gbWrite(0xA000, 1);
    cartridge.gbWrite(0xA001, 1);
    QCOMPARE(cartridge.saveChanges(), quint64(2));
}

GBDRIVER_TEST(GbCartridgesTest, none)
#include "gb_cartridges_test.moc"
