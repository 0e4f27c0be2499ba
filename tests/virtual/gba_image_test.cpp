// Generated GBA images: a header that is right by independent arithmetic, contents without repeats,
// and the marks of the save libraries.
#include "samples.h"
#include "test_class.h"
#include "virtual/gba_save_library.h"
#include "virtual/image_generator.h"

#include <QSet>
#include <QtTest>

#include <string>

using namespace virtual_reader;

namespace
{

const char kLogoHex[] = "24FFAE51699AA2213D84820A84E409AD11248B98C0817F21A352BE199309CE20"
                        "10464A4AF82731EC58C7E83382E3CEBF85F4DF94CE4B09C194568AC01372A7FC"
                        "9F844D73A3CA9A615897A327FC039876231DC7610304AE56BF38840040A70EFD"
                        "FF52FE036F9530F197FBC08560D68025A963BE03014E38E2F9A234FFBB3E0344"
                        "780090CB88113A9465C07C6387F03CAFD625E48B380AAC7221D4F807";

QByteArray bytesOf(const ByteVector &image, std::size_t offset, int length)
{
    return {reinterpret_cast<const char *>(image.data()) + offset, length};
}

ByteVector make(const GbaImageSpec &spec)
{
    return gbaImage(spec);
}

GbaImageSpec withSize(std::uint32_t size)
{
    GbaImageSpec spec;
    spec.romSize = size;
    return spec;
}

} // namespace

class GbaImageTest : public QObject
{
    Q_OBJECT

private slots:
    void headerSaysWhatWasAskedFor();
    void anyFourBytesAreAGameCode();
    void complementIsRight_data();
    void complementIsRight();
    void sizesNeedNotBePowersOfTwo_data();
    void sizesNeedNotBePowersOfTwo();
    void noTwoSectorsAreAlike();
    void sameRequestSameBytes();
    void marksArePlantedAndFound_data();
    void marksArePlantedAndFound();
    void marksAreFoundAnywhere_data();
    void marksAreFoundAnywhere();
    void impossibleRequestsAreRefused_data();
    void impossibleRequestsAreRefused();
};

void GbaImageTest::headerSaysWhatWasAskedFor()
{
    GbaImageSpec spec;
    spec.code = "AWRP";
    spec.title = "TWELVE CHARS";
    const ByteVector image = make(spec);
    QCOMPARE(image.size(), std::size_t(4) * 1024 * 1024);
    QCOMPARE(bytesOf(image, 0, 4), QByteArray::fromHex("2E0000EA"));
    QCOMPARE(bytesOf(image, 0x04, 156), QByteArray::fromHex(kLogoHex));
    QCOMPARE(bytesOf(image, 0xA0, 18), QByteArray("TWELVE CHARSAWRPVD"));
    QCOMPARE(int(image[0xB2]), 0x96);
    QCOMPARE(bytesOf(image, 0xB3, 10), QByteArray(10, '\0'));
    QCOMPARE(bytesOf(image, 0xBE, 2), QByteArray(2, '\0'));
    // The branch at the start leads here, and this one to itself.
    QCOMPARE(bytesOf(image, 0xC0, 4), QByteArray::fromHex("FEFFFFEA"));
}

void GbaImageTest::anyFourBytesAreAGameCode()
{
    GbaImageSpec spec;
    for (const std::string &code :
         {std::string("bqje"), std::string("\0WRP", 4), std::string("\xFF\x80 !")}) {
        spec.code = code;
        QCOMPARE(bytesOf(make(spec), 0xAC, 4), QByteArray::fromStdString(code));
    }
}

void GbaImageTest::complementIsRight_data()
{
    QTest::addColumn<QByteArray>("title");
    QTest::newRow("usual") << QByteArray("VIRTUAL");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("high sum") << QByteArray("ZZZZZZZZZZZZ");
}

void GbaImageTest::complementIsRight()
{
    QFETCH(QByteArray, title);
    GbaImageSpec spec;
    spec.title = title.toStdString();
    const ByteVector image = make(spec);
    unsigned sum = 0x19;
    for (std::size_t i = 0xA0; i <= 0xBD; ++i)
        sum += image[i];
    QCOMPARE(sum & 0xFF, 0U);
}

void GbaImageTest::sizesNeedNotBePowersOfTwo_data()
{
    QTest::addColumn<quint32>("size");
    QTest::newRow("smallest") << 512U;
    QTest::newRow("a halfword into a sector") << 1026U;
    QTest::newRow("3 MiB") << 0x300000U;
    QTest::newRow("two bytes below 1 MiB") << 0xFFFFEU;
    QTest::newRow("32 MiB") << 0x2000000U;
}

void GbaImageTest::sizesNeedNotBePowersOfTwo()
{
    QFETCH(quint32, size);
    const ByteVector image = make(withSize(size));
    QCOMPARE(image.size(), std::size_t(size));
    const std::size_t last = (size - 1) / 512;
    const std::size_t width = std::min<std::size_t>(4, size - last * 512);
    if (last > 0)
        QCOMPARE(littleEndian(image.data() + last * 512, width), quint32(last));
}

void GbaImageTest::noTwoSectorsAreAlike()
{
    const ByteVector image = make(withSize(0x800000));
    QSet<QByteArray> sectors;
    for (std::size_t offset = 0; offset < image.size(); offset += 512)
        sectors.insert(bytesOf(image, offset + 4, 508)); // also without their numbers
    QCOMPARE(sectors.size(), int(image.size() / 512));
    for (std::size_t i = 1; i < image.size() / 512; ++i)
        QCOMPARE(littleEndian(image.data() + i * 512, 4), quint32(i));
}

void GbaImageTest::sameRequestSameBytes()
{
    GbaImageSpec spec = withSize(0x10000);
    const ByteVector image = make(spec);
    QVERIFY(make(spec) == image);
    spec.seed = 2;
    QVERIFY(make(spec) != image);
}

void GbaImageTest::marksArePlantedAndFound_data()
{
    QTest::addColumn<int>("planted");
    QTest::addColumn<QByteArray>("prefix");
    QTest::addColumn<int>("found");
    const auto row = [](const char *name, SaveKind planted, const char *prefix, SaveKind found) {
        QTest::newRow(name) << int(planted) << QByteArray(prefix) << int(found);
    };
    row("SRAM", SaveKind::Sram, "SRAM_V", SaveKind::Sram);
    row("FLASH 64K", SaveKind::Flash64k, "FLASH512_V", SaveKind::Flash64k);
    row("FLASH 128K", SaveKind::Flash128k, "FLASH1M_V", SaveKind::Flash128k);
    row("EEPROM 512", SaveKind::Eeprom512, "EEPROM_V", SaveKind::Eeprom512);
    row("EEPROM 8K looks the same", SaveKind::Eeprom8k, "EEPROM_V", SaveKind::Eeprom512);
    row("none", SaveKind::None, "", SaveKind::None);
}

void GbaImageTest::marksArePlantedAndFound()
{
    QFETCH(int, planted);
    QFETCH(QByteArray, prefix);
    QFETCH(int, found);
    GbaImageSpec spec = withSize(0x10000);
    spec.saveKind = static_cast<SaveKind>(planted);
    const ByteVector image = make(spec);
    QCOMPARE(int(findGbaSaveMark(image)), found);
    const QByteArray text = bytesOf(image, 0, int(image.size()));
    for (const char *mark : {"EEPROM_V", "SRAM_V", "FLASH_V", "FLASH512_V", "FLASH1M_V"})
        QCOMPARE(text.contains(mark), prefix == mark);
}

void GbaImageTest::marksAreFoundAnywhere_data()
{
    QTest::addColumn<QByteArray>("mark");
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("found");
    const auto row = [](const char *name, const char *mark, int offset, SaveKind found) {
        QTest::newRow(name) << QByteArray(mark) << offset << int(found);
    };
    row("plain FLASH", "FLASH_V120", 0x4000, SaveKind::Flash64k);
    row("another version", "SRAM_V110", 0xC4, SaveKind::Sram);
    row("at the very end", "EEPROM_V", 0x10000 - 8, SaveKind::Eeprom512);
    row("cut off at the end", "EEPROM_", 0x10000 - 7, SaveKind::None);
    row("off the word boundary", "FLASH1M_V103", 0x4002, SaveKind::None);
}

void GbaImageTest::marksAreFoundAnywhere()
{
    QFETCH(QByteArray, mark);
    QFETCH(int, offset);
    QFETCH(int, found);
    ByteVector image = make(withSize(0x10000));
    std::copy(mark.begin(), mark.end(), image.begin() + offset);
    QCOMPARE(int(findGbaSaveMark(image)), found);
}

void GbaImageTest::impossibleRequestsAreRefused_data()
{
    QTest::addColumn<quint32>("size");
    QTest::addColumn<QByteArray>("code");
    QTest::addColumn<QByteArray>("title");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, quint32 size, const char *code, const char *title,
                        const char *reason) {
        QTest::newRow(name) << size << QByteArray(code) << QByteArray(title) << reason;
    };
    row("too small", 510, "ABCD", "T", "ROM size 510");
    row("odd", 1025, "ABCD", "T", "ROM size 1025");
    row("too large", 0x2000002, "ABCD", "T", "ROM size 33554434");
    row("short code", 512, "ABC", "T", "game code \"ABC\"");
    row("long code", 512, "ABCDE", "T", "game code \"ABCDE\"");
    row("long title", 512, "ABCD", "THIRTEEN CHAR", "must have 12 characters at most");
    row("small letters", 512, "ABCD", "small", "small letters");
}

void GbaImageTest::impossibleRequestsAreRefused()
{
    QFETCH(quint32, size);
    QFETCH(QByteArray, code);
    QFETCH(QByteArray, title);
    QFETCH(QString, reason);
    GbaImageSpec spec = withSize(size);
    spec.code = code.toStdString();
    spec.title = title.toStdString();
    ByteVector image;
    std::string error;
    QVERIFY(!makeGbaImage(spec, &image, &error));
    QVERIFY2(QString::fromStdString(error).contains(reason), error.c_str());
    QVERIFY(image.empty());
}

GBDRIVER_TEST(GbaImageTest, none)
#include "gba_image_test.moc"
