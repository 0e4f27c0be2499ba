// Flash chips on Game Boy boards, as a host meets them: blocks on the wire, the mapper in between.
#define OPENSSL_API_COMPAT 0x10100000L
#include "command_blocks.h"

#include "test_class.h"
#include "virtual/cartridge_factory.h"
#include "virtual/image_generator.h"
#include "virtual/virtual_reader.h"

#include <openssl/blowfish.h>

#include <QtTest>

#include <memory>
#include <string>
#include <utility>

using namespace virtual_reader;

namespace
{

constexpr std::uint32_t kKiB = 1024;
constexpr std::uint32_t kBank = 16 * kKiB;
constexpr std::uint8_t kMbc1 = 0x03;
constexpr std::uint8_t kMbc5 = 0x1B;

ByteVector imageOf(std::uint8_t type, std::uint32_t size, std::uint64_t seed = 1)
{
    return gbImage({type, size, 32 * kKiB, "FLASH", seed});
}

CartridgeOptions flashOf(FlashWidth width, std::uint32_t size = 0)
{
    CartridgeOptions options;
    options.flash = width;
    options.flashSize = size;
    return options;
}

// A reader on the GB bus, with what a host does to flash cartridges.
struct FlashBench {
    VirtualReader reader;
    FlashWidth width;

    FlashBench(ByteVector image, const CartridgeOptions &options)
        : reader(nullptr), width(options.flash)
    {
        auto cartridge = cartridgeOf(std::move(image), options);
        reader.insertCartridge(std::move(cartridge));
        send(selectGb());
    }

    void send(const ByteVector &run) { reader.commandFileWritten(run.data(), run.size()); }
    void write(unsigned address, unsigned value) { send(gbWriteBlock(address, value)); }
    ByteVector read(std::uint32_t address, std::uint32_t length)
    {
        ByteVector bytes(length);
        reader.readFile(ReaderFile::Dump, address, bytes.data(), length, true);
        return bytes;
    }
    // First byte as a host polls it.
    int poll() { return read(0, 1024)[0]; }
    ByteVector rom() { return reader.cartridge().romImage(); }

    unsigned unlock1() const { return width == FlashWidth::Byte ? 0x555 : 0xAAA; }
    unsigned unlock2() const { return width == FlashWidth::Byte ? 0x2AA : 0x555; }
    ByteVector unlocked(unsigned code) const
    {
        return gbWriteBlock(unlock1(), 0xAA) + gbWriteBlock(unlock2(), 0x55) +
               gbWriteBlock(unlock1(), code);
    }
    void startErase() { send(unlocked(0x80) + unlocked(0x10)); }
    void eraseAndWait()
    {
        startErase();
        for (int i = 0; i < 100 && poll() != 0xFF; ++i) {
        }
    }

    // One program block with 8 to 480 bytes.
    ByteVector programBlock(std::uint8_t opcode, std::uint32_t address, ByteVector payload) const
    {
        BF_KEY schedule;
        BF_set_key(&schedule, 8, VirtualReaderConfig().key.data());
        BF_LONG halves[2] = {littleEndian(payload.data(), 4), littleEndian(payload.data() + 4, 4)};
        BF_encrypt(halves, &schedule);
        putLittleEndian(payload.data(), halves[0], 4);
        putLittleEndian(payload.data() + 4, halves[1], 4);
        const auto length = static_cast<unsigned>(payload.size());
        return commandBlock(2, opcode, {address & 0xFF, address >> 8, length & 0xFF, length >> 8},
                            payload, 7);
    }
    void program(std::uint8_t opcode, std::uint32_t address, const ByteVector &bytes)
    {
        for (std::uint32_t done = 0; done < bytes.size(); done += 256)
            send(programBlock(opcode, address + done,
                              ByteVector(bytes.begin() + done, bytes.begin() + done + 256)));
    }
    // Bank by bank at 4000-7FFF, with the registers of an MBC5.
    void programBanks(std::uint8_t opcode, const ByteVector &image)
    {
        for (std::uint32_t bank = 0; bank < image.size() / kBank; ++bank) {
            send(gbWriteBlock(0x3000, bank >> 8) + gbWriteBlock(0x2000, bank & 0xFF));
            const auto start = image.begin() + static_cast<std::ptrdiff_t>(bank * kBank);
            program(opcode, 0x4000, ByteVector(start, start + kBank));
        }
    }
};

std::uint8_t opcodeFor(FlashWidth width)
{
    return width == FlashWidth::Byte ? 14 : 15;
}

void addWidthRows()
{
    QTest::addColumn<int>("width");
    QTest::newRow("8 bit") << int(FlashWidth::Byte);
    QTest::newRow("16 bit") << int(FlashWidth::Word);
}

} // namespace

class GbFlashTest : public QObject
{
    Q_OBJECT

private slots:
    void readsLikeARomAtFirst_data() { addWidthRows(); }
    void readsLikeARomAtFirst();
    void erasedAndProgrammedThroughTheMapper_data() { addWidthRows(); }
    void erasedAndProgrammedThroughTheMapper();
    void highestBanksAreReached();
    void commandsOfTheOtherWidthHaveNoEffect_data() { addWidthRows(); }
    void commandsOfTheOtherWidthHaveNoEffect();
    void programmingWithoutErasingClearsBits();
    void erasePollsAreCountedByTransfers();
    void sectorEraseGoesThroughTheBank();
    void bankWriteInsideASequenceBreaksIt();
    void programmedDataAlsoReachesTheMapper();
    void mbc1DataSwitchesTheBank();
    void boardWithoutMapperTakes32KiB();
    void probeSeesTheWideChip_data();
    void probeSeesTheWideChip();
    void probeSeesNoWideChip_data();
    void probeSeesNoWideChip();
    void protectedChipKeepsItsContents();
    void endlessEraseNeverShowsOnes();
    void powerCycleCutsAnEraseAndResetsTheMapper();
    void romBoardIgnoresFlashCommands();
    void saveRamWorksBesideTheFlash();
    void chipsCanBeLargerThanTheImage();
    void blankBoardIsAnMbc5();
    void refusesWhatTheChipCannotHold_data();
    void refusesWhatTheChipCannotHold();
};

void GbFlashTest::readsLikeARomAtFirst()
{
    QFETCH(int, width);
    const ByteVector image = imageOf(kMbc5, 128 * kKiB);
    FlashBench bench(image, flashOf(static_cast<FlashWidth>(width)));
    for (unsigned bank = 0; bank < 8; ++bank) {
        bench.write(0x2000, bank);
        const auto start = image.begin() + static_cast<std::ptrdiff_t>(bank * kBank);
        QVERIFY(bench.read(0x4000, kBank) == ByteVector(start, start + kBank));
    }
    QVERIFY(bench.read(0, kBank) == ByteVector(image.begin(), image.begin() + kBank));
    QVERIFY(bench.rom() == image);
}

void GbFlashTest::erasedAndProgrammedThroughTheMapper()
{
    QFETCH(int, width);
    const auto flashWidth = static_cast<FlashWidth>(width);
    FlashBench bench(imageOf(kMbc5, 256 * kKiB), flashOf(flashWidth));
    bench.eraseAndWait();
    QVERIFY(bench.rom() == ByteVector(256 * kKiB, 0xFF));
    const ByteVector image = imageOf(kMbc5, 256 * kKiB, 77);
    bench.programBanks(opcodeFor(flashWidth), image);
    QVERIFY(bench.rom() == image);
    QCOMPARE(bench.reader.counters().refusedBlocks, quint64(0));
}

void GbFlashTest::highestBanksAreReached()
{
    FlashBench bench({}, flashOf(FlashWidth::Byte, 8192 * kKiB));
    const ByteVector bytes = makeNoise(256, 4);
    bench.send(gbWriteBlock(0x3000, 1) + gbWriteBlock(0x2000, 0xFF));
    bench.program(14, 0x7F00, bytes);
    const ByteVector rom = bench.rom();
    QVERIFY(std::equal(bytes.begin(), bytes.end(), rom.end() - 256));
    QCOMPARE(std::count(rom.begin(), rom.end() - 256, 0xFF), std::ptrdiff_t(8192 * kKiB - 256));
}

void GbFlashTest::commandsOfTheOtherWidthHaveNoEffect()
{
    QFETCH(int, width);
    const bool isByte = static_cast<FlashWidth>(width) == FlashWidth::Byte;
    const ByteVector image = imageOf(kMbc5, 64 * kKiB);
    FlashBench bench(image, flashOf(static_cast<FlashWidth>(width)));
    bench.width = isByte ? FlashWidth::Word : FlashWidth::Byte; // what the host believes
    bench.startErase();
    QVERIFY(bench.read(0, 1024) == ByteVector(image.begin(), image.begin() + 1024));
    bench.program(isByte ? 15 : 14, 0x4000, ByteVector(256, 0x00));
    QVERIFY(bench.rom() == image);
}

void GbFlashTest::programmingWithoutErasingClearsBits()
{
    FlashBench bench(imageOf(kMbc5, 64 * kKiB), flashOf(FlashWidth::Byte));
    const ByteVector before = bench.rom();
    const ByteVector bytes = makeNoise(256, 8);
    bench.write(0x2000, 2);
    bench.program(14, 0x4000, bytes);
    const ByteVector after = bench.rom();
    for (std::size_t i = 0; i < 256; ++i)
        QCOMPARE(int(after[2 * kBank + i]), before[2 * kBank + i] & bytes[i]);
}

void GbFlashTest::erasePollsAreCountedByTransfers()
{
    CartridgeOptions options = flashOf(FlashWidth::Word);
    options.flashChip.erasePolls = 4;
    FlashBench bench(imageOf(kMbc5, 64 * kKiB), options);
    bench.startErase();
    for (int i = 0; i < 4; ++i)
        QVERIFY(bench.poll() < 0x80);
    QCOMPARE(bench.poll(), 0xFF);
}

void GbFlashTest::sectorEraseGoesThroughTheBank()
{
    const ByteVector image = imageOf(kMbc5, 256 * kKiB);
    FlashBench bench(image, flashOf(FlashWidth::Byte));
    bench.write(0x2000, 9); // in the third sector of 64 KiB
    bench.send(bench.unlocked(0x80) + gbWriteBlock(0x555, 0xAA) + gbWriteBlock(0x2AA, 0x55) +
               gbWriteBlock(0x4000, 0x30));
    for (int i = 0; i < 3; ++i)
        bench.read(0x4000, 512);
    ByteVector expected = image;
    std::fill_n(expected.begin() + 128 * kKiB, 64 * kKiB, std::uint8_t{0xFF});
    QVERIFY(bench.rom() == expected);
}

void GbFlashTest::bankWriteInsideASequenceBreaksIt()
{
    const ByteVector image = imageOf(kMbc5, 64 * kKiB);
    FlashBench bench(image, flashOf(FlashWidth::Byte));
    bench.send(bench.unlocked(0xA0) + gbWriteBlock(0x2000, 0x00)); // programs the byte at 0x2000
    bench.poll();
    bench.poll();
    QCOMPARE(int(bench.rom()[0x2000]), 0);
    bench.send(gbWriteBlock(0x555, 0xAA) + gbWriteBlock(0x2AA, 0x55) + gbWriteBlock(0x2000, 1) +
               gbWriteBlock(0x555, 0xA0) + gbWriteBlock(0x4000, 0x00));
    QCOMPARE(bench.rom()[kBank], image[kBank]);
}

void GbFlashTest::programmedDataAlsoReachesTheMapper()
{
    FlashBench bench(imageOf(kMbc5, 64 * kKiB), flashOf(FlashWidth::Byte));
    Cartridge &cartridge = bench.reader.cartridge();
    ByteVector save(32 * kKiB, 0);
    save[3 * 8 * kKiB] = 0x33;
    QVERIFY(cartridge.loadSave(save));
    bench.eraseAndWait();
    bench.write(0x2000, 1);
    bench.program(14, 0x4000, ByteVector(256, 0x03)); // as the RAM bank register sees it
    bench.write(0x0000, 0x0A);
    QCOMPARE(int(bench.read(0xA000, 1)[0]), 0x33);
}

void GbFlashTest::mbc1DataSwitchesTheBank()
{
    // 512 KiB: the switched lines lead nowhere.
    FlashBench small(imageOf(kMbc1, 512 * kKiB), flashOf(FlashWidth::Byte));
    small.eraseAndWait();
    small.write(0x2000, 0x1F);
    const ByteVector bytes(256, 0x01);
    small.program(14, 0x4000, bytes);
    ByteVector rom = small.rom();
    QVERIFY(std::equal(bytes.begin(), bytes.end(), rom.begin() + 0x1F * kBank));
    // 1 MiB: the first byte written switches to the upper half, where the others land.
    FlashBench large(imageOf(kMbc1, 1024 * kKiB), flashOf(FlashWidth::Byte));
    large.eraseAndWait();
    large.write(0x2000, 0x1F);
    large.program(14, 0x4000, bytes);
    rom = large.rom();
    QCOMPARE(int(rom[0x1F * kBank]), 0x01);
    QCOMPARE(int(rom[0x1F * kBank + 1]), 0xFF);
    QCOMPARE(int(rom[0x3F * kBank + 1]), 0x01);
}

void GbFlashTest::boardWithoutMapperTakes32KiB()
{
    FlashBench bench(imageOf(0x00, 32 * kKiB), flashOf(FlashWidth::Byte));
    bench.eraseAndWait();
    const ByteVector image = imageOf(0x00, 32 * kKiB, 5);
    bench.program(14, 0x0000, image);
    QVERIFY(bench.rom() == image);
    QVERIFY(bench.read(0, 32 * kKiB) == image);
}

void GbFlashTest::probeSeesTheWideChip_data()
{
    QTest::addColumn<quint32>("size");
    QTest::addColumn<int>("code"); // -1: the chip's own
    QTest::addColumn<int>("shown");
    QTest::newRow("1 MiB") << 1024 * kKiB << -1 << 20;
    QTest::newRow("8 MiB") << 8192 * kKiB << -1 << 23;
    for (int code = 19; code <= 28; ++code)
        QTest::newRow(qPrintable(QString("code %1").arg(code))) << 64 * kKiB << code << code;
}

void GbFlashTest::probeSeesTheWideChip()
{
    QFETCH(quint32, size);
    QFETCH(int, code);
    QFETCH(int, shown);
    CartridgeOptions options = flashOf(FlashWidth::Word, size);
    if (code >= 0)
        options.flashChip.sizeCode = static_cast<std::uint8_t>(code);
    const ByteVector image = imageOf(kMbc5, 64 * kKiB);
    FlashBench bench(image, options);
    bench.write(0xAA, 0x98);
    const ByteVector answer = bench.read(0, 128);
    QCOMPARE(toByteArray({answer[0x20], answer[0x22], answer[0x24]}), QByteArray("QRY"));
    QCOMPARE(int(answer[0x4E]), shown);
    bench.write(0x00, 0xF0);
    QVERIFY(bench.read(0, 128) == ByteVector(image.begin(), image.begin() + 128));
}

void GbFlashTest::probeSeesNoWideChip_data()
{
    QTest::addColumn<int>("width");
    QTest::newRow("8 bit") << int(FlashWidth::Byte);
    QTest::newRow("ROM") << int(FlashWidth::None);
}

void GbFlashTest::probeSeesNoWideChip()
{
    QFETCH(int, width);
    const ByteVector image = imageOf(kMbc5, 64 * kKiB);
    FlashBench bench(image, flashOf(static_cast<FlashWidth>(width)));
    bench.write(0xAA, 0x98);
    QVERIFY(bench.read(0, 128) == ByteVector(image.begin(), image.begin() + 128));
    bench.write(0x00, 0xF0);
    QVERIFY(bench.read(0, 128) == ByteVector(image.begin(), image.begin() + 128));
}

void GbFlashTest::protectedChipKeepsItsContents()
{
    CartridgeOptions options = flashOf(FlashWidth::Byte);
    options.flashChip.writeProtected = true;
    const ByteVector image = imageOf(kMbc5, 64 * kKiB);
    FlashBench bench(image, options);
    bench.startErase();
    const ByteVector start(image.begin(), image.begin() + 1024);
    QVERIFY(bench.read(0, 1024) != start); // busy for a moment
    for (int i = 0; i < 50; ++i)
        QVERIFY(bench.read(0, 1024) == start);
    bench.program(14, 0x4000, ByteVector(256, 0x00));
    QVERIFY(bench.rom() == image);
}

void GbFlashTest::endlessEraseNeverShowsOnes()
{
    CartridgeOptions options = flashOf(FlashWidth::Byte);
    options.flashChip.eraseNeverEnds = true;
    FlashBench bench(imageOf(kMbc5, 128 * kKiB), options);
    const ByteVector image = bench.rom();
    bench.startErase();
    for (int i = 0; i < 200; ++i)
        QVERIFY(bench.poll() != 0xFF);
    bench.write(0x0000, 0xF0);
    QVERIFY(bench.read(0, 1024) == ByteVector(1024, 0x00));
    bench.write(0x2000, 4); // the second sector was not reached
    QVERIFY(bench.read(0x4000, kBank) ==
            ByteVector(image.begin() + 4 * kBank, image.begin() + 5 * kBank));
}

void GbFlashTest::powerCycleCutsAnEraseAndResetsTheMapper()
{
    CartridgeOptions options = flashOf(FlashWidth::Byte);
    options.flashChip.erasePolls = 10;
    FlashBench bench(imageOf(kMbc5, 256 * kKiB), options);
    const ByteVector image = bench.rom();
    bench.write(0x2000, 9);
    bench.startErase();
    for (int i = 0; i < 5; ++i)
        QVERIFY(bench.poll() != 0xFF);
    bench.reader.cartridge().powerCycle();
    QCOMPARE(bench.poll(), 0xFF);                                  // two of four sectors are done
    QVERIFY(bench.read(0x4000, kBank) == ByteVector(kBank, 0xFF)); // bank 1 again
    QCOMPARE(int(bench.rom()[128 * kKiB]), 0x00);
    QCOMPARE(bench.rom()[192 * kKiB], image[192 * kKiB]);
}

void GbFlashTest::romBoardIgnoresFlashCommands()
{
    const ByteVector image = imageOf(kMbc5, 64 * kKiB);
    FlashBench bench(image, {});
    for (const FlashWidth width : {FlashWidth::Byte, FlashWidth::Word}) {
        bench.width = width;
        bench.startErase();
        bench.program(opcodeFor(width), 0x4000, ByteVector(256, 0x00));
    }
    QVERIFY(bench.rom() == image);
}

void GbFlashTest::saveRamWorksBesideTheFlash()
{
    FlashBench bench(imageOf(kMbc5, 64 * kKiB), flashOf(FlashWidth::Word));
    const ByteVector image = bench.rom();
    bench.send(gbWriteBlock(0x0000, 0x0A) + gbWriteBlock(0x4000, 2));
    bench.send(commandBlock(2, 12, {0x00, 0xA0, 4, 0}, {1, 2, 3, 4}, 7));
    QVERIFY(bench.read(0xA000, 4) == ByteVector({1, 2, 3, 4}));
    QCOMPARE(int(bench.reader.cartridge().saveImage()[2 * 8 * kKiB + 3]), 4);
    QVERIFY(bench.rom() == image);
}

void GbFlashTest::chipsCanBeLargerThanTheImage()
{
    const ByteVector image = imageOf(kMbc5, 64 * kKiB);
    FlashBench bench(image, flashOf(FlashWidth::Byte, 256 * kKiB));
    ByteVector expected = image;
    expected.resize(256 * kKiB, 0xFF);
    QVERIFY(bench.rom() == expected);
    bench.write(0x2000, 4);
    QVERIFY(bench.read(0x4000, kBank) == ByteVector(kBank, 0xFF));
}

void GbFlashTest::blankBoardIsAnMbc5()
{
    FlashBench bench({}, flashOf(FlashWidth::Word, 128 * kKiB));
    QVERIFY(bench.rom() == ByteVector(128 * kKiB, 0xFF));
    const ByteVector image = imageOf(kMbc5, 128 * kKiB);
    bench.programBanks(15, image);
    QVERIFY(bench.rom() == image);
    QVERIFY(bench.reader.cartridge().saveImage().empty());
}

void GbFlashTest::refusesWhatTheChipCannotHold_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<quint32>("imageSize");
    QTest::addColumn<quint32>("flashSize");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, int type, quint32 image, quint32 flash,
                        const char *reason) {
        QTest::newRow(name) << type << image << flash << reason;
    };
    row("image too large", kMbc5, 64 * kKiB, 32 * kKiB, "the flash chip has 32768");
    row("no power of two", kMbc5, 64 * kKiB, 96 * kKiB, "power of two");
    row("larger than the bus reaches", kMbc5, 64 * kKiB, 16384 * kKiB, "power of two");
    row("larger than the mapper reaches", kMbc1, 64 * kKiB, 4096 * kKiB, "2048 KiB at most");
    row("nothing at all", kMbc5, 0, 0, "image of 0 bytes");
}

void GbFlashTest::refusesWhatTheChipCannotHold()
{
    QFETCH(int, type);
    QFETCH(quint32, imageSize);
    QFETCH(quint32, flashSize);
    QFETCH(QString, reason);
    const ByteVector image =
        imageSize == 0 ? ByteVector() : imageOf(static_cast<std::uint8_t>(type), imageSize);
    std::string error;
    QVERIFY(makeCartridge(image, flashOf(FlashWidth::Byte, flashSize), &error) == nullptr);
    QVERIFY2(QString::fromStdString(error).contains(reason), error.c_str());
}

GBDRIVER_TEST(GbFlashTest, none)
#include "gb_flash_test.moc"
