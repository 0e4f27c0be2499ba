// Which mapper and how much save memory each header type gets, and what options change.
#include "mapper_bench.h"
#include "samples.h"
#include "test_class.h"
#include "virtual/cartridge_factory.h"
#include "virtual/mappers/camera_cartridge.h"
#include "virtual/mappers/huc1_cartridge.h"
#include "virtual/mappers/huc3_cartridge.h"
#include "virtual/mappers/mbc2_cartridge.h"
#include "virtual/mappers/mbc3_cartridge.h"
#include "virtual/mappers/mbc7_cartridge.h"
#include "virtual/mappers/mmm01_cartridge.h"
#include "virtual/mappers/tama5_cartridge.h"

#include <QtTest>

#include <algorithm>
#include <memory>
#include <typeindex>

using namespace virtual_reader;

namespace
{

ByteVector imageOf(int type, std::uint32_t romSize, std::uint32_t ramSize)
{
    return gbImage({static_cast<std::uint8_t>(type), romSize, ramSize, "FACTORY", 1});
}

struct Expectation {
    int firstType;
    int lastType;
    std::type_index kind;
};

const Expectation kExpectations[] = {
    {0x00, 0x00, typeid(GbCartridge)},     {0x01, 0x03, typeid(Mbc1Cartridge)},
    {0x04, 0x04, typeid(Mbc5Cartridge)},   {0x05, 0x06, typeid(Mbc2Cartridge)},
    {0x07, 0x07, typeid(Mbc5Cartridge)},   {0x08, 0x09, typeid(GbCartridge)},
    {0x0A, 0x0A, typeid(Mbc5Cartridge)},   {0x0B, 0x0D, typeid(Mmm01Cartridge)},
    {0x0E, 0x0E, typeid(Mbc5Cartridge)},   {0x0F, 0x13, typeid(Mbc3Cartridge)},
    {0x14, 0x1F, typeid(Mbc5Cartridge)},   {0x21, 0x21, typeid(Mbc5Cartridge)},
    {0x22, 0x22, typeid(Mbc7Cartridge)},   {0x23, 0xFB, typeid(Mbc5Cartridge)},
    {0xFC, 0xFC, typeid(CameraCartridge)}, {0xFD, 0xFD, typeid(Tama5Cartridge)},
    {0xFE, 0xFE, typeid(Huc3Cartridge)},   {0xFF, 0xFF, typeid(Huc1Cartridge)},
};

} // namespace

class MapperFactoryTest : public QObject
{
    Q_OBJECT

private slots:
    void everyTypeHasItsMapper();
    void saveMemoryByTypeAndCode_data();
    void saveMemoryByTypeAndCode();
    void capacitiesAreChecked_data();
    void capacitiesAreChecked();
    void multiCartBoardMustBeAskedFor();
    void otherBoardsAreNoMultiCarts();
    void menuHeaderCountsForMmm01();
    void motorIsNoRamLine();
    void flashStandsBehindAnyMapper();
};

void MapperFactoryTest::everyTypeHasItsMapper()
{
    int types = 0;
    for (const Expectation &row : kExpectations) {
        for (int type = row.firstType; type <= row.lastType; ++type, ++types) {
            std::string error;
            const auto cartridge = makeCartridge(imageOf(type, 32 * kKiB, 0), &error);
            QVERIFY2(cartridge != nullptr, error.c_str());
            const Cartridge &built = *cartridge;
            QVERIFY2(std::type_index(typeid(built)) == row.kind, qPrintable(QString::number(type)));
        }
    }
    QCOMPARE(types, 255); // all but 0x20
}

void MapperFactoryTest::saveMemoryByTypeAndCode_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<quint32>("headerRam");
    QTest::addColumn<quint32>("saveSize");
    const auto row = [](const char *name, int type, quint32 headerRam, quint32 saveSize) {
        QTest::newRow(name) << type << headerRam << saveSize;
    };
    row("MBC2 has its own", 0x06, 0, 512);
    row("MMM01 without RAM", 0x0B, 8 * kKiB, 0);
    row("MMM01 with RAM", 0x0D, 32 * kKiB, 32 * kKiB);
    row("MBC3, clock alone", 0x0F, 8 * kKiB, 0);
    row("MBC3, clock and RAM", 0x10, 32 * kKiB, 32 * kKiB);
    row("MBC3 alone", 0x11, 8 * kKiB, 0);
    row("MBC30", 0x13, 64 * kKiB, 64 * kKiB);
    row("motor alone", 0x1C, 8 * kKiB, 0);
    row("motor and RAM", 0x1E, 32 * kKiB, 32 * kKiB);
    row("MBC7 has its own", 0x22, 0, 256);
    row("camera", 0xFC, 128 * kKiB, 128 * kKiB);
    row("TAMA5 has its own", 0xFD, 0, 32);
    row("HuC-3", 0xFE, 32 * kKiB, 32 * kKiB);
    row("HuC1", 0xFF, 32 * kKiB, 32 * kKiB);
    row("unknown", 0x17, 64 * kKiB, 64 * kKiB);
}

void MapperFactoryTest::saveMemoryByTypeAndCode()
{
    QFETCH(int, type);
    QFETCH(quint32, headerRam);
    QFETCH(quint32, saveSize);
    std::string error;
    const auto cartridge = makeCartridge(imageOf(type, 64 * kKiB, headerRam), &error);
    QVERIFY2(cartridge != nullptr, error.c_str());
    QCOMPARE(quint32(cartridge->saveImage().size()), saveSize);
}

void MapperFactoryTest::capacitiesAreChecked_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<quint32>("largest");
    QTest::newRow("MBC2") << 0x05 << 256 * kKiB;
    QTest::newRow("MBC3") << 0x13 << 4096 * kKiB;
    QTest::newRow("MBC7") << 0x22 << 2048 * kKiB;
    QTest::newRow("camera") << 0xFC << 1024 * kKiB;
    QTest::newRow("TAMA5") << 0xFD << 512 * kKiB;
    QTest::newRow("HuC-3") << 0xFE << 2048 * kKiB;
    QTest::newRow("HuC1") << 0xFF << 1024 * kKiB;
}

void MapperFactoryTest::capacitiesAreChecked()
{
    QFETCH(int, type);
    QFETCH(quint32, largest);
    std::string error;
    QVERIFY2(makeCartridge(imageOf(type, largest, 0), &error) != nullptr, error.c_str());
    QVERIFY(makeCartridge(imageOf(type, largest * 2, 0), &error) == nullptr);
    const QString limit = QString("holds %1 KiB at most").arg(largest / kKiB);
    QVERIFY2(QString::fromStdString(error).contains(limit), error.c_str());
}

void MapperFactoryTest::multiCartBoardMustBeAskedFor()
{
    const ByteVector image = imageOf(0x01, 1024 * kKiB, 0);
    for (const bool multiCart : {false, true}) {
        CartridgeOptions options;
        options.multiCart = multiCart;
        std::string error;
        const auto cartridge = makeCartridge(image, options, &error);
        QVERIFY2(cartridge != nullptr, error.c_str());
        busWrite(*cartridge, 0x4000, 1);
        QCOMPARE(bankAt(*cartridge, 0x4000), multiCart ? 17 : 33);
    }
}

void MapperFactoryTest::otherBoardsAreNoMultiCarts()
{
    CartridgeOptions options;
    options.multiCart = true;
    std::string error;
    QVERIFY(makeCartridge(imageOf(0x1B, 1024 * kKiB, 0), options, &error) == nullptr);
    QVERIFY2(QString::fromStdString(error).contains("multicart"), error.c_str());
}

void MapperFactoryTest::menuHeaderCountsForMmm01()
{
    // The first game says MBC1 and 32 KiB; the menu at the end MMM01, 512 KiB and RAM.
    ByteVector image = imageOf(0x0D, 512 * kKiB, 8 * kKiB);
    const std::size_t menu = image.size() - 32 * kKiB;
    std::copy_n(image.begin(), 0x150, image.begin() + static_cast<std::ptrdiff_t>(menu));
    image[0x147] = 0x01;
    image[0x148] = 0x00;
    std::string error;
    const auto cartridge = makeCartridge(image, &error);
    QVERIFY2(cartridge != nullptr, error.c_str());
    QVERIFY(dynamic_cast<Mmm01Cartridge *>(cartridge.get()) != nullptr);
    QCOMPARE(cartridge->saveImage().size(), std::size_t(8 * kKiB));
    // Without its logo that is no header, and the first game's is the cartridge's.
    image[menu + 0x104] ^= 1;
    QVERIFY(makeCartridge(image, &error) == nullptr);
    QVERIFY2(QString::fromStdString(error).contains("its header says 32 KiB"), error.c_str());
}

void MapperFactoryTest::motorIsNoRamLine()
{
    std::string error;
    const auto cartridge = makeCartridge(imageOf(0x1E, 64 * kKiB, 64 * kKiB), &error);
    QVERIFY2(cartridge != nullptr, error.c_str());
    busWrite(*cartridge, 0x0000, 0x0A);
    busWrite(*cartridge, 0x4000, 1);
    busWrite(*cartridge, 0xA000, 0x77);
    busWrite(*cartridge, 0x4000, 0x09);
    QCOMPARE(busRead(*cartridge, 0xA000), 0x77);
    busWrite(*cartridge, 0x5FFF, 0x0A); // another bank, the motor still runs
    QCOMPARE(busRead(*cartridge, 0xA000), 0x00);
    QVERIFY(makeCartridge(imageOf(0x1E, 64 * kKiB, 128 * kKiB), &error) == nullptr);
    QVERIFY2(QString::fromStdString(error).contains("holds 64 KiB at most"), error.c_str());
}

void MapperFactoryTest::flashStandsBehindAnyMapper()
{
    for (const int type : {0x01, 0x05, 0x0B, 0x11, 0x19, 0xFE, 0xFF}) {
        CartridgeOptions options;
        options.flash = FlashWidth::Byte;
        std::string error;
        const auto cartridge = makeCartridge(imageOf(type, 64 * kKiB, 0), options, &error);
        QVERIFY2(cartridge != nullptr, error.c_str());
        busWrite(*cartridge, 0x0555, 0xAA);
        busWrite(*cartridge, 0x02AA, 0x55);
        busWrite(*cartridge, 0x0555, 0x90);
        QCOMPARE(busRead(*cartridge, 0x0000), 0x01); // the chip's maker instead of its contents
        QCOMPARE(busRead(*cartridge, 0x0001), 0xA4);
    }
}

GBDRIVER_TEST(MapperFactoryTest, none)
#include "mapper_factory_test.moc"
