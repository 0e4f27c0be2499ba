// The emulator library as a cartridge behind the virtual reader.
#include "command_blocks.h"
#include "mgba_cartridge.h"
#include "test_class.h"
#include "virtual/image_generator.h"
#include "virtual/virtual_reader.h"

#include <QtTest>

#include <memory>
#include <string>
#include <vector>

using namespace virtual_reader;

namespace
{

constexpr std::uint32_t kKiB = 1024;

ByteVector imageOf(std::uint8_t type)
{
    return gbImage({type, 256 * kKiB, 8 * kKiB, "LIBRARY", 3});
}

std::unique_ptr<MgbaCartridge> libraryCartridge(const ByteVector &image)
{
    std::string error;
    auto cartridge = MgbaCartridge::create(image, &error);
    if (cartridge == nullptr)
        qFatal("%s", error.c_str());
    return cartridge;
}

} // namespace

class MgbaCartridgeTest : public QObject
{
    Q_OBJECT

private slots:
    void noImageIsRefused();
    void readerShowsTheImage();
    void consoleMemoryDoesNotShow();
    void savesGoInAndOut();
    void powerCycleResetsTheMapper();
};

void MgbaCartridgeTest::noImageIsRefused()
{
    std::string error;
    QVERIFY(MgbaCartridge::create({}, &error) == nullptr);
    QVERIFY(!error.empty());
}

void MgbaCartridgeTest::readerShowsTheImage()
{
    const ByteVector image = imageOf(0x1B);
    VirtualReader reader(libraryCartridge(image));
    const ByteVector run = selectGb();
    reader.commandFileWritten(run.data(), run.size());
    ByteVector shown(32 * kKiB);
    const auto count = reader.readFile(ReaderFile::Dump, 0, shown.data(), 32 * kKiB, true);
    QCOMPARE(count.value_or(0), 32 * kKiB);
    QVERIFY(std::equal(shown.begin(), shown.end(), image.begin()));
}

void MgbaCartridgeTest::consoleMemoryDoesNotShow()
{
    const auto cartridge = libraryCartridge(imageOf(0x1B));
    for (const std::uint16_t address : std::vector<std::uint16_t>{0x8000, 0x9FFF, 0xC000, 0xFFFF}) {
        cartridge->gbWrite(address, 0x12);
        QCOMPARE(int(cartridge->gbRead(address)), 0xFF);
    }
}

void MgbaCartridgeTest::savesGoInAndOut()
{
    const auto cartridge = libraryCartridge(imageOf(0x1B));
    const ByteVector save = makeNoise(8 * kKiB, 4);
    QVERIFY(cartridge->loadSave(save));
    QVERIFY(cartridge->saveImage() == save);
    QCOMPARE(cartridge->saveChanges(), quint64(0));
    cartridge->gbWrite(0x0000, 0x0A);
    QCOMPARE(cartridge->gbRead(0xA123), save[0x123]);
    cartridge->gbWrite(0xA123, static_cast<std::uint8_t>(~save[0x123]));
    QCOMPARE(cartridge->saveImage()[0x123], static_cast<std::uint8_t>(~save[0x123]));
    QCOMPARE(cartridge->saveChanges(), quint64(1));
}

void MgbaCartridgeTest::powerCycleResetsTheMapper()
{
    const ByteVector image = imageOf(0x1B);
    const auto cartridge = libraryCartridge(image);
    cartridge->gbWrite(0x2000, 5);
    QCOMPARE(cartridge->gbRead(0x4000), image[5 * 0x4000]);
    cartridge->powerCycle();
    QCOMPARE(cartridge->gbRead(0x4000), image[0x4000]);
}

GBDRIVER_TEST(MgbaCartridgeTest, none)
#include "mgba_cartridge_test.moc"
