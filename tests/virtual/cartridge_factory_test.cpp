// Which cartridge an image gives, seen through its buses, and which images are refused.
#include "virtual/cartridge_factory.h"
#include "virtual/image_generator.h"

#include <QtTest>

#include <string>

namespace
{

constexpr std::uint32_t kKiB = 1024;

ByteVector imageOf(int type, std::uint32_t romSize, std::uint32_t ramSize)
{
    ByteVector image;
    std::string error;
    if (!makeGbImage({static_cast<std::uint8_t>(type), romSize, ramSize, "FACTORY", 1}, &image,
                     &error))
        qFatal("%s", error.c_str());
    return image;
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
    void refusesWhatIsNotModelled();
    void refusesWrongSizes_data();
    void refusesWrongSizes();
    void unusualRomCodesAreNotChecked();
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

void CartridgeFactoryTest::refusesWhatIsNotModelled()
{
    int modelled = 0;
    ByteVector image = imageOf(0, 32 * kKiB, 0);
    for (int type = 0; type < 256; ++type) {
        image[0x147] = static_cast<std::uint8_t>(type);
        std::string error;
        if (makeCartridge(image, &error) != nullptr) {
            ++modelled;
            continue;
        }
        const QString code =
            QString("0x%1").arg(type, 2, 16, QChar('0')).toUpper().replace("X", "x");
        QVERIFY2(QString::fromStdString(error).contains(code + " is not modelled; modelled are"),
                 error.c_str());
        QVERIFY(QString::fromStdString(error).contains("MBC5 (0x19 to 0x1B)"));
    }
    QCOMPARE(modelled, 9);
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

QTEST_APPLESS_MAIN(CartridgeFactoryTest)
#include "cartridge_factory_test.moc"
