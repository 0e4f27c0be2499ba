// Which cartridge an image gives, seen through its buses, and which images are refused.
#include "samples.h"
#include "test_class.h"
#include "virtual/cartridge_factory.h"
#include "virtual/image_generator.h"

#include <QtTest>

#include <string>

using namespace virtual_reader;

namespace
{

constexpr std::uint32_t kKiB = 1024;

ByteVector imageOf(int type, std::uint32_t romSize, std::uint32_t ramSize)
{
    return gbImage({static_cast<std::uint8_t>(type), romSize, ramSize, "FACTORY", 1});
}

} // namespace

class CartridgeFactoryTest : public QObject
{
    Q_OBJECT

private slots:
    void picksTheMapperByType_data();
    void picksTheMapperByType();
    void picksTheRamByTypeAndCode_data();
    void picksTheRamByTypeAndCode();
    void everyTypeButMbc6IsBuilt();
    void refusesWrongSizes_data();
    void refusesWrongSizes();
    void unusualRomCodesAreNotChecked();
    void logoDecidesTheSystem_data();
    void logoDecidesTheSystem();
    void refusesWrongGbaSizes();
};

void CartridgeFactoryTest::picksTheMapperByType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<quint32>("romSize");
    QTest::addColumn<int>("bankAfterZero"); // what 0x2000<-0 shows at 0x4000
    for (const int type : {0x00, 0x08, 0x09})
        QTest::newRow(QByteArray::number(type, 16).constData()) << type << 32 * kKiB << 1;
    for (const int type : {0x01, 0x02, 0x03})
        QTest::newRow(QByteArray::number(type, 16).constData()) << type << 2048 * kKiB << 1;
    for (const int type : {0x19, 0x1A, 0x1B})
        QTest::newRow(QByteArray::number(type, 16).constData()) << type << 8192 * kKiB << 0;
}

void CartridgeFactoryTest::picksTheMapperByType()
{
    QFETCH(int, type);
    QFETCH(quint32, romSize);
    QFETCH(int, bankAfterZero);
    std::string error;
    const auto cartridge = makeCartridge(imageOf(type, romSize, 0), &error);
    QVERIFY2(cartridge != nullptr, error.c_str());
    cartridge->gbWrite(0x2000, 0);
    // The first bytes of a bank are its number times 32.
    QCOMPARE(int(cartridge->gbRead(0x4000)), bankAfterZero * 32);
    QCOMPARE(cartridge->romImage().size(), std::size_t(romSize));
}

void CartridgeFactoryTest::picksTheRamByTypeAndCode_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<quint32>("headerRam");
    QTest::addColumn<quint32>("ramSize");
    QTest::newRow("MBC1 without RAM") << 0x01 << 8 * kKiB << 0U;
    QTest::newRow("MBC1") << 0x02 << 8 * kKiB << 8 * kKiB;
    QTest::newRow("MBC1, battery") << 0x03 << 32 * kKiB << 32 * kKiB;
    QTest::newRow("ROM only") << 0x00 << 8 * kKiB << 0U;
    QTest::newRow("ROM+RAM") << 0x08 << 8 * kKiB << 8 * kKiB;
    QTest::newRow("ROM+RAM, battery") << 0x09 << 8 * kKiB << 8 * kKiB;
    QTest::newRow("MBC5 without RAM") << 0x19 << 8 * kKiB << 0U;
    QTest::newRow("MBC5, code 4") << 0x1B << 128 * kKiB << 128 * kKiB;
    QTest::newRow("MBC5, code 5") << 0x1A << 64 * kKiB << 64 * kKiB;
    QTest::newRow("MBC5, code 0") << 0x1B << 0U << 0U;
}

void CartridgeFactoryTest::picksTheRamByTypeAndCode()
{
    QFETCH(int, type);
    QFETCH(quint32, headerRam);
    QFETCH(quint32, ramSize);
    std::string error;
    const auto cartridge = makeCartridge(imageOf(type, 32 * kKiB, headerRam), &error);
    QVERIFY2(cartridge != nullptr, error.c_str());
    QCOMPARE(cartridge->saveImage().size(), std::size_t(ramSize));
}

void CartridgeFactoryTest::everyTypeButMbc6IsBuilt()
{
    ByteVector image = imageOf(0, 32 * kKiB, 0);
    for (int type = 0; type < 256; ++type) {
        image[0x147] = static_cast<std::uint8_t>(type);
        std::string error;
        const bool built = makeCartridge(image, &error) != nullptr;
        QVERIFY2(built == (type != 0x20), error.c_str());
        QCOMPARE(error.empty(), built);
        if (!built)
            QCOMPARE(QString::fromStdString(error),
                     QString("cartridge type 0x20, MBC6, is not modelled"));
    }
}

void CartridgeFactoryTest::refusesWrongSizes_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<quint32>("size"); // of the file
    QTest::addColumn<int>("romCode");
    QTest::addColumn<int>("ramCode");
    QTest::addColumn<QString>("reason");
    QTest::newRow("empty") << 0x00 << 0U << 0 << 0 << "image of 0 bytes";
    QTest::newRow("cut short") << 0x00 << 32 * kKiB - 1 << 0 << 0 << "power of two";
    QTest::newRow("one byte more") << 0x00 << 32 * kKiB + 1 << 0 << 0 << "power of two";
    QTest::newRow("16 MiB") << 0x1B << 16384 * kKiB << 8 << 0 << "power of two";
    QTest::newRow("half a file") << 0x1B << 64 * kKiB << 2 << 0 << "its header says 128 KiB";
    QTest::newRow("twice a file") << 0x1B << 64 * kKiB << 0 << 0 << "its header says 32 KiB";
    QTest::newRow("ROM only 64 KiB") << 0x00 << 64 * kKiB << 1 << 0 << "32 KiB at most";
    QTest::newRow("MBC1 4 MiB") << 0x01 << 4096 * kKiB << 7 << 0 << "2048 KiB at most";
    QTest::newRow("MBC1 64 KiB RAM") << 0x03 << 32 * kKiB << 0 << 5 << "RAM size code 0x05";
    QTest::newRow("unknown RAM code") << 0x1B << 32 * kKiB << 0 << 6 << "RAM size code 0x06";
}

void CartridgeFactoryTest::refusesWrongSizes()
{
    QFETCH(int, type);
    QFETCH(quint32, size);
    QFETCH(int, romCode);
    QFETCH(int, ramCode);
    QFETCH(QString, reason);
    ByteVector image = imageOf(type, 32 * kKiB, 0);
    image[0x148] = static_cast<std::uint8_t>(romCode);
    image[0x149] = static_cast<std::uint8_t>(ramCode);
    image.resize(size);
    std::string error;
    QVERIFY(makeCartridge(image, &error) == nullptr);
    QVERIFY2(QString::fromStdString(error).contains(reason), error.c_str());
}

void CartridgeFactoryTest::unusualRomCodesAreNotChecked()
{
    ByteVector image = imageOf(0x19, 64 * kKiB, 0);
    image[0x148] = 0x52;
    std::string error;
    QVERIFY(makeCartridge(image, &error) != nullptr);
}

void CartridgeFactoryTest::logoDecidesTheSystem_data()
{
    QTest::addColumn<bool>("gbLogo");
    QTest::addColumn<bool>("gbaLogo");
    QTest::addColumn<int>("asked");
    QTest::addColumn<bool>("isGba");
    const int byHeader = int(CartridgeSystem::ByHeader);
    const int gb = int(CartridgeSystem::Gb);
    const int gba = int(CartridgeSystem::Gba);
    QTest::newRow("GB logo") << true << false << byHeader << false;
    QTest::newRow("GBA logo") << false << true << byHeader << true;
    QTest::newRow("no logo") << false << false << byHeader << false;
    QTest::newRow("both logos") << true << true << byHeader << true;
    QTest::newRow("GB asked, GBA logo") << true << true << gb << false;
    QTest::newRow("GBA asked, GB logo") << true << false << gba << true;
    QTest::newRow("GBA asked, no logo") << false << false << gba << true;
}

void CartridgeFactoryTest::logoDecidesTheSystem()
{
    QFETCH(bool, gbLogo);
    QFETCH(bool, gbaLogo);
    QFETCH(int, asked);
    QFETCH(bool, isGba);
    ByteVector image = imageOf(0x00, 32 * kKiB, 0);
    if (!gbLogo)
        image[0x104] ^= 1;
    const ByteVector gba = gbaImage();
    std::string error;
    if (gbaLogo)
        std::copy_n(gba.begin() + 4, 156, image.begin() + 4);
    CartridgeOptions options;
    options.system = static_cast<CartridgeSystem>(asked);
    const auto cartridge = makeCartridge(image, options, &error);
    QVERIFY2(cartridge != nullptr, error.c_str());
    // On the bus that the cartridge does not have, nothing of the image shows.
    QCOMPARE(cartridge->gbRead(0x0104) == image[0x0104], !isGba);
    QCOMPARE(cartridge->gbaRead(0x10) == image[0x20] + image[0x21] * 256, isGba);
    QVERIFY(cartridge->romImage() == image);
}

void CartridgeFactoryTest::refusesWrongGbaSizes()
{
    CartridgeOptions options;
    options.system = CartridgeSystem::Gba;
    for (const std::size_t size : {0U, 510U, 513U, 32 * 1024 * kKiB + 2}) {
        std::string error;
        QVERIFY(makeCartridge(ByteVector(size), options, &error) == nullptr);
        QVERIFY2(QString::fromStdString(error).contains("from 512 bytes to 32 MiB"), error.c_str());
    }
}

GBDRIVER_TEST(CartridgeFactoryTest, none)
#include "cartridge_factory_test.moc"
