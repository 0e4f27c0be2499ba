// The host's commands, byte for byte as it sends them, on the chips of virtual cartridges.
#include "host_side.h"

#include "samples.h"
#include "test_class.h"
#include "virtual/cartridge_factory.h"
#include "virtual/image_generator.h"
#include "virtual/in_process_drive.h"

#include <QtTest>

#include <memory>
#include <string>

using namespace virtual_reader;

namespace
{

constexpr std::uint32_t kKiB = 1024;
constexpr std::uint32_t kBank = 16 * kKiB;

// The demo reader in this process, connected to the host.
struct HostBench {
    std::unique_ptr<DriveBackend> platform = createPlatformBackend();
    std::unique_ptr<InProcessDrive> drive;

    explicit HostBench(std::unique_ptr<Cartridge> cartridge)
    {
        ReaderSetup setup;
        setup.demo = true;
        setup.config.strictSectors = true;
        std::string error;
        drive = std::make_unique<InProcessDrive>(KeptReader::create(setup, &error), *platform);
        drive->reader().insertCartridge(std::move(cartridge));
        if (!connectHost(*drive))
            qFatal("the host finds no reader");
    }
    Cartridge &cartridge() { return drive->reader().cartridge(); }
    quint64 refusedBlocks() { return drive->reader().counters().refusedBlocks; }
};

std::unique_ptr<Cartridge> saveCartridge(GbaSaveType type, std::uint32_t size)
{
    CartridgeOptions options;
    options.saveType = type;
    options.saveSize = size;
    return cartridgeOf(gbaImage(), options);
}

} // namespace

class HostOnChipsTest : public QObject
{
    Q_OBJECT

private slots:
    void savesAreWrittenAndReadBack_data();
    void savesAreWrittenAndReadBack();
    void wrongSaveTypeReadsOnesAndWritesNothing();
    void flashIsErasedAndProgrammed_data();
    void flashIsErasedAndProgrammed();
    void wrongKeyProgramsOtherBytes();
};

void HostOnChipsTest::savesAreWrittenAndReadBack_data()
{
    QTest::addColumn<int>("chip");
    QTest::addColumn<quint32>("size");
    QTest::addColumn<quint32>("hostType");
    QTest::newRow("SRAM 32 KiB") << int(GbaSaveType::Sram) << 32 * kKiB << 0U;
    QTest::newRow("SRAM 64 KiB") << int(GbaSaveType::Sram) << 64 * kKiB << 0U;
    QTest::newRow("FLASH 64 KiB") << int(GbaSaveType::Flash) << 64 * kKiB << 1U;
    QTest::newRow("FLASH 128 KiB") << int(GbaSaveType::Flash) << 128 * kKiB << 2U;
    QTest::newRow("EEPROM 512 bytes") << int(GbaSaveType::Eeprom) << 512U << 3U;
    QTest::newRow("EEPROM 8 KiB") << int(GbaSaveType::Eeprom) << 8 * kKiB << 4U;
}

void HostOnChipsTest::savesAreWrittenAndReadBack()
{
    QFETCH(int, chip);
    QFETCH(quint32, size);
    QFETCH(quint32, hostType);
    const auto type = static_cast<GbaSaveType>(chip);
    HostBench bench(saveCartridge(type, size));
    const ByteVector old = makeNoise(size, 1);
    const ByteVector save = makeNoise(size, 2);
    QVERIFY(bench.cartridge().loadSave(old));
    hostSelectSave(hostType);
    QVERIFY(hostReadSave(size) == old);
    if (type == GbaSaveType::Flash) {
        hostEraseSave();
        int polls = 1;
        while (hostPollSave() != 0xFF && polls < 100)
            ++polls;
        QCOMPARE(polls, 3); // the default: two find it at work
    }
    hostWriteSave(save);
    QVERIFY(bench.cartridge().saveImage() == save);
    QVERIFY(hostReadSave(size) == save);
    QCOMPARE(bench.refusedBlocks(), quint64(0));
}

void HostOnChipsTest::wrongSaveTypeReadsOnesAndWritesNothing()
{
    HostBench bench(saveCartridge(GbaSaveType::Eeprom, 8 * kKiB));
    const ByteVector save = makeNoise(8 * kKiB, 1);
    bench.cartridge().loadSave(save);
    for (const std::uint32_t type : {0U, 1U, 2U, 3U}) {
        hostSelectSave(type);
        QVERIFY(hostReadSave(512) == HostBytes(512, 0xFF));
        hostWriteSave(HostBytes(512, 0x00));
    }
    QVERIFY(bench.cartridge().saveImage() == save);
    QVERIFY(bench.refusedBlocks() > 0);
}

void HostOnChipsTest::flashIsErasedAndProgrammed_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<quint32>("opcode");
    QTest::addColumn<quint32>("unlock1");
    QTest::addColumn<quint32>("unlock2");
    QTest::newRow("8 bit") << int(FlashWidth::Byte) << 14U << 0x555U << 0x2AAU;
    QTest::newRow("16 bit") << int(FlashWidth::Word) << 15U << 0xAAAU << 0x555U;
}

void HostOnChipsTest::flashIsErasedAndProgrammed()
{
    QFETCH(int, width);
    QFETCH(quint32, opcode);
    QFETCH(quint32, unlock1);
    QFETCH(quint32, unlock2);
    const ByteVector image = gbImage({0x1B, 64 * kKiB, 0, "NEW", 9});
    CartridgeOptions options;
    options.flash = static_cast<FlashWidth>(width);
    HostBench bench(cartridgeOf(ByteVector(64 * kKiB, 0x00), options));
    hostSelectFlash(opcode);
    for (const std::uint32_t code : {0x80U, 0x10U}) {
        hostWriteBus(unlock1, 0xAA);
        hostWriteBus(unlock2, 0x55);
        hostWriteBus(unlock1, code);
    }
    int polls = 1;
    while (hostReadBus(0, 1)[0] != 0xFF && polls < 100)
        ++polls;
    QCOMPARE(polls, 3);
    for (std::uint32_t bank = 0; bank < 4; ++bank) {
        hostWriteBus(0x2000, bank);
        const auto start = image.begin() + static_cast<std::ptrdiff_t>(bank * kBank);
        hostProgram(0x4000, HostBytes(start, start + kBank));
        QVERIFY(hostReadBus(0x4000, kBank) == HostBytes(start, start + kBank));
    }
    QVERIFY(bench.cartridge().romImage() == image);
    QCOMPARE(bench.refusedBlocks(), quint64(0));
}

void HostOnChipsTest::wrongKeyProgramsOtherBytes()
{
    CartridgeOptions options;
    options.flash = FlashWidth::Byte;
    options.flashSize = 64 * kKiB;
    HostBench bench(cartridgeOf({}, options));
    hostSelectFlash(14);
    hostUseZeroKey();
    const ByteVector bytes = makeNoise(480, 3);
    hostProgram(0x4000, bytes);
    const ByteVector rom = bench.cartridge().romImage();
    // Only the first 8 bytes of a block travel enciphered.
    QVERIFY(!std::equal(bytes.begin(), bytes.begin() + 8, rom.begin() + kBank));
    QVERIFY(std::equal(bytes.begin() + 8, bytes.end(), rom.begin() + kBank + 8));
}

GBDRIVER_TEST(HostOnChipsTest, none)
#include "host_on_chips_test.moc"
