// Generated images: headers that are right by independent arithmetic, contents without repeats.
#include "virtual/image_generator.h"

#include "samples.h"
#include "test_class.h"

#include <QByteArray>
#include <QSet>
#include <QtTest>

#include <string>

using namespace virtual_reader;

namespace
{

QByteArray bytesOf(const ByteVector &image, std::size_t offset, int length)
{
    return {reinterpret_cast<const char *>(image.data()) + offset, length};
}

ByteVector make(const GbImageSpec &spec)
{
    return gbImage(spec);
}

} // namespace

class ImageGeneratorTest : public QObject
{
    Q_OBJECT

private slots:
    void headerSaysWhatWasAskedFor_data();
    void headerSaysWhatWasAskedFor();
    void everyTypeCodeIsTaken();
    void checksumsAreRight_data();
    void checksumsAreRight();
    void noTwoSectorsAreAlike();
    void sectorsCarryTheirNumbers();
    void sameRequestSameBytes();
    void impossibleRequestsAreRefused_data();
    void impossibleRequestsAreRefused();
};

void ImageGeneratorTest::headerSaysWhatWasAskedFor_data()
{
    QTest::addColumn<quint32>("romSize");
    QTest::addColumn<quint32>("ramSize");
    QTest::addColumn<int>("romCode");
    QTest::addColumn<int>("ramCode");
    QTest::newRow("smallest") << 0x8000U << 0U << 0 << 0;
    QTest::newRow("2 KiB RAM") << 0x10000U << 2048U << 1 << 1;
    QTest::newRow("8 KiB RAM") << 0x20000U << 8192U << 2 << 2;
    QTest::newRow("32 KiB RAM") << 0x100000U << 32768U << 5 << 3;
    QTest::newRow("128 KiB RAM") << 0x200000U << 131072U << 6 << 4;
    QTest::newRow("64 KiB RAM") << 0x800000U << 65536U << 8 << 5;
}

void ImageGeneratorTest::headerSaysWhatWasAskedFor()
{
    QFETCH(quint32, romSize);
    QFETCH(quint32, ramSize);
    QFETCH(int, romCode);
    QFETCH(int, ramCode);
    const ByteVector image = make({0x1B, romSize, ramSize, "FIFTEEN LETTERS", 1});
    QCOMPARE(image.size(), std::size_t(romSize));
    QCOMPARE(int(image[0x147]), 0x1B);
    QCOMPARE(int(image[0x148]), romCode);
    QCOMPARE(int(image[0x149]), ramCode);
    QCOMPARE(bytesOf(image, 0x134, 16), QByteArray("FIFTEEN LETTERS\0", 16));
    QCOMPARE(bytesOf(image, 0x100, 4), QByteArray::fromHex("00C35001"));
    // The logo of every cartridge.
    QCOMPARE(bytesOf(image, 0x104, 48),
             QByteArray::fromHex("CEED6666CC0D000B03730083000C000D0008111F8889000EDCCC6EE6DDDDD999"
                                 "BBBB67636E0EECCCDDDC999FBBB9333E"));
}

void ImageGeneratorTest::everyTypeCodeIsTaken()
{
    for (int type = 0; type < 256; ++type) {
        const ByteVector image = make({static_cast<std::uint8_t>(type), 0x8000, 0, "TYPE", 1});
        QCOMPARE(int(image[0x147]), type);
    }
}

void ImageGeneratorTest::checksumsAreRight_data()
{
    QTest::addColumn<quint32>("romSize");
    QTest::addColumn<quint64>("seed");
    QTest::newRow("32 KiB") << 0x8000U << quint64(1);
    QTest::newRow("32 KiB, other seed") << 0x8000U << quint64(99);
    QTest::newRow("2 MiB") << 0x200000U << quint64(5);
    QTest::newRow("8 MiB") << 0x800000U << quint64(7);
}

void ImageGeneratorTest::checksumsAreRight()
{
    QFETCH(quint32, romSize);
    QFETCH(quint64, seed);
    const ByteVector image = make({0x19, romSize, 0, "SUMS", seed});
    // Both sums in the form in which the header can be checked: the fields make them come out.
    unsigned header = 0x19; // 25 bytes, each counted with its own minus one
    for (std::size_t i = 0x134; i <= 0x14D; ++i)
        header += image[i];
    QCOMPARE(header & 0xFF, 0U);
    quint64 sum = 0;
    for (std::size_t i = 0; i < image.size(); ++i)
        sum += i == 0x14E || i == 0x14F ? 0 : image[i];
    QCOMPARE(unsigned(image[0x14E] << 8 | image[0x14F]), unsigned(sum & 0xFFFF));
}

void ImageGeneratorTest::noTwoSectorsAreAlike()
{
    const ByteVector image = make({0x1B, 0x800000, 0, "SECTORS", 11});
    QSet<QByteArray> sectors;
    for (std::size_t offset = 0; offset < image.size(); offset += 512) {
        const QByteArray sector = bytesOf(image, offset, 512);
        QVERIFY(sector != QByteArray(512, sector[0]));
        // Alike but for the number at the start would not be enough.
        sectors.insert(sector.mid(4));
    }
    QCOMPARE(sectors.size(), int(image.size() / 512));
}

void ImageGeneratorTest::sectorsCarryTheirNumbers()
{
    const ByteVector image = make({0x1B, 0x800000, 0, "NUMBERS", 11});
    for (std::size_t bank = 0; bank < 512; ++bank)
        QCOMPARE(littleEndian(image.data() + bank * 0x4000, 4), quint32(bank * 32));
    QCOMPARE(littleEndian(image.data() + 512 * 77, 4), 77U);
}

void ImageGeneratorTest::sameRequestSameBytes()
{
    const GbImageSpec spec = {0x01, 0x10000, 0, "SAME", 5};
    QVERIFY(make(spec) == make(spec));
    GbImageSpec other = spec;
    other.seed = 6;
    QVERIFY(make(spec) != make(other));
    QVERIFY(makeNoise(100, 1) == makeNoise(100, 1));
    QVERIFY(makeNoise(100, 1) != makeNoise(100, 2));
}

void ImageGeneratorTest::impossibleRequestsAreRefused_data()
{
    QTest::addColumn<quint32>("romSize");
    QTest::addColumn<quint32>("ramSize");
    QTest::addColumn<QByteArray>("title");
    QTest::addColumn<QString>("reason");
    QTest::newRow("no ROM") << 0U << 0U << QByteArray("T") << "ROM size 0";
    QTest::newRow("16 KiB ROM") << 0x4000U << 0U << QByteArray("T") << "ROM size 16384";
    QTest::newRow("odd ROM") << 0x18000U << 0U << QByteArray("T") << "ROM size 98304";
    QTest::newRow("16 MiB ROM") << 0x1000000U << 0U << QByteArray("T") << "ROM size 16777216";
    QTest::newRow("16 KiB RAM") << 0x8000U << 0x4000U << QByteArray("T") << "RAM size 16384";
    QTest::newRow("long title") << 0x8000U << 0U << QByteArray("SIXTEEN LETTERS!") << "15";
    QTest::newRow("small letters") << 0x8000U << 0U << QByteArray("small") << "small letters";
    QTest::newRow("not ASCII") << 0x8000U << 0U << QByteArray("\xC3\x84") << "ASCII";
}

void ImageGeneratorTest::impossibleRequestsAreRefused()
{
    QFETCH(quint32, romSize);
    QFETCH(quint32, ramSize);
    QFETCH(QByteArray, title);
    QFETCH(QString, reason);
    ByteVector image;
    std::string error;
    QVERIFY(!makeGbImage({0, romSize, ramSize, title.toStdString(), 1}, &image, &error));
    QVERIFY2(QString::fromStdString(error).contains(reason), error.c_str());
    QVERIFY(image.empty());
}

GBDRIVER_TEST(ImageGeneratorTest, none)
#include "image_generator_test.moc"
