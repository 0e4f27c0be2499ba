// What the GBA bus shows of a ROM, inside it and behind its end.
#include "virtual/gba_cartridge.h"
#include "virtual/image_generator.h"
#include "virtual/virtual_reader.h"

#include "command_blocks.h"
#include "test_class.h"

#include <QtTest>

#include <memory>

using namespace virtual_reader;

namespace
{

constexpr std::uint32_t kMiB = 1024 * 1024;

} // namespace

class GbaCartridgeTest : public QObject
{
    Q_OBJECT

private slots:
    void everyHalfwordIsReadInPlace_data();
    void everyHalfwordIsReadInPlace();
    void behindTheEndTheAddressComesBack_data();
    void behindTheEndTheAddressComesBack();
    void writesToTheRomAreIgnored();
    void hasNoGameBoyBusAndNoSave();
    void dumpFileShowsTheRomFromTheSetAddress();
    void dumpFileRunsOverTheEndOfTheRom();
};

void GbaCartridgeTest::everyHalfwordIsReadInPlace_data()
{
    QTest::addColumn<quint32>("size");
    QTest::newRow("one halfword") << 2U;
    QTest::newRow("1 MiB") << kMiB;
    QTest::newRow("3 MiB and a halfword") << 3 * kMiB + 2;
    QTest::newRow("32 MiB") << 32 * kMiB;
}

void GbaCartridgeTest::everyHalfwordIsReadInPlace()
{
    QFETCH(quint32, size);
    const ByteVector rom = makeNoise(size, 3);
    GbaCartridge cartridge(rom);
    quint32 wrong = 0;
    for (quint32 i = 0; i < size; i += 2)
        wrong += cartridge.gbaRead(i / 2) != rom[i] + rom[i + 1] * 256;
    QCOMPARE(wrong, 0U);
    QVERIFY(cartridge.romImage() == rom);
}

void GbaCartridgeTest::behindTheEndTheAddressComesBack_data()
{
    QTest::addColumn<quint32>("size");
    QTest::addColumn<quint32>("address"); // halfwords
    QTest::addColumn<int>("value");
    QTest::newRow("first behind 1 MiB") << kMiB << 0x80000U << 0x0000;
    QTest::newRow("second behind 1 MiB") << kMiB << 0x80001U << 0x0001;
    QTest::newRow("behind an odd size") << 3 * kMiB + 2 << 0x180001U << 0x0001;
    QTest::newRow("in the middle") << kMiB << 0xABCDEFU << 0xCDEF;
    QTest::newRow("highest address") << 16 * kMiB << 0xFFFFFFU << 0xFFFF;
}

void GbaCartridgeTest::behindTheEndTheAddressComesBack()
{
    QFETCH(quint32, size);
    QFETCH(quint32, address);
    QFETCH(int, value);
    GbaCartridge cartridge(ByteVector(size, 0x5A));
    QCOMPARE(int(cartridge.gbaRead(address)), value);
    QCOMPARE(int(cartridge.gbaRead(size / 2 - 1)), 0x5A5A);
}

void GbaCartridgeTest::writesToTheRomAreIgnored()
{
    GbaCartridge cartridge(ByteVector(kMiB, 0x5A));
    for (quint32 address = 0; address < 0x1000000; address += 0x8001)
        cartridge.gbaWrite(address, 0x1234);
    QVERIFY(cartridge.romImage() == ByteVector(kMiB, 0x5A));
}

void GbaCartridgeTest::hasNoGameBoyBusAndNoSave()
{
    GbaCartridge cartridge(ByteVector(kMiB, 0x5A));
    QCOMPARE(int(cartridge.gbRead(0x0104)), 0xFF);
    QVERIFY(cartridge.saveImage().empty());
    QVERIFY(!cartridge.gbaSaveErase());
}

void GbaCartridgeTest::dumpFileShowsTheRomFromTheSetAddress()
{
    const ByteVector rom = makeNoise(2 * kMiB, 4);
    VirtualReader reader(std::make_unique<GbaCartridge>(rom));
    // Halfword address 0x80000 is the second mebibyte.
    const ByteVector run = selectGba() + commandBlock(3, 6, {0, 0x00, 0x00, 0x08});
    reader.commandFileWritten(run.data(), run.size());
    ByteVector bytes(kMiB);
    QCOMPARE(*reader.readFile(ReaderFile::Dump, 0, bytes.data(), kMiB, true), kMiB);
    QVERIFY(std::equal(bytes.begin(), bytes.end(), rom.begin() + kMiB));
}

void GbaCartridgeTest::dumpFileRunsOverTheEndOfTheRom()
{
    VirtualReader reader(std::make_unique<GbaCartridge>(ByteVector(1026, 0x5A)));
    const ByteVector run = selectGba();
    reader.commandFileWritten(run.data(), run.size());
    ByteVector bytes(8);
    reader.readFile(ReaderFile::Dump, 1024, bytes.data(), 8, true);
    QCOMPARE(toByteArray(bytes), QByteArray::fromHex("5A5A010202020302"));
}

GBDRIVER_TEST(GbaCartridgeTest, none)
#include "gba_cartridge_test.moc"
