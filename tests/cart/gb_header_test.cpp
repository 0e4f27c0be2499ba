// The Game Boy header decoder: titles and every code of its three tables.
#include "cart/gb_header.h"

#include "constants/boot_logos.h"
#include "device/checksums.h"
#include "header_bytes.h"
#include "test_class.h"

#include <QtTest>

#include <map>
#include <vector>

namespace
{

struct ExpectedType {
    const char *name;
    int mapperRow;
};

const std::map<int, ExpectedType> kExpectedTypes = {
    {0, {"ROM ONLY", 0}},
    {1, {"ROM+MBC1", 1}},
    {2, {"ROM+MBC1+RAM", 1}},
    {3, {"ROM+MBC1+RAM+BATT", 1}},
    {5, {"ROM+MBC2", 2}},
    {6, {"ROM+MBC2+BATTERY", 2}},
    {8, {"ROM+RAM", 0}},
    {9, {"ROM+RAM+BATTERY", 0}},
    {11, {"ROM+MMMO1", 0}},
    {12, {"ROM+MMMO1+SRAM", 0}},
    {13, {"ROM+MMMO1+SRAM+BATT", 0}},
    {15, {"ROM+MBC3+TIMER+BATT", 3}},
    {16, {"ROM+MBC3+TIMER+RAM+BAT", 3}},
    {17, {"ROM+MBC3", 3}},
    {18, {"ROM+MBC3+RAM", 3}},
    {19, {"ROM+MBC3+RAM+BATT", 3}},
    {21, {"ROM+MBC4", 4}},
    {22, {"ROM+MBC4+RAM", 4}},
    {23, {"ROM+MBC4+RAM+BATTERY", 4}},
    {25, {"ROM+MBC5", 4}},
    {26, {"ROM+MBC5+RAM", 4}},
    {27, {"ROM+MBC5+RAM+BATT", 4}},
    {28, {"ROM+MBC5+RUMBLE", 4}},
    {29, {"ROM+MBC5+RUMBLE+SRAM", 4}},
    {30, {"ROM+MBC5+RUMBLE+SRAM+BATT", 4}},
    {31, {"Pocket Camera", 4}},
    {34, {"ROM+MBC7+BATT", 5}},
    {85, {"GameGenie", 4}},
    {86, {"GameShark V3.0", 4}},
    {252, {"POCKET CAMERA", 4}},
    {253, {"Bandai TAMA5", 4}},
    {254, {"Hudson HuC-3", 4}},
    {255, {"HuC1+RAM+BATTERY", 6}},
};

const std::map<int, int> kExpectedRomSizes = {
    {0, 32768},   {1, 65536},   {2, 131072},  {3, 262144},     {4, 524288},     {5, 1048576},
    {6, 2097152}, {7, 4194304}, {8, 8388608}, {0x52, 2097152}, {0x53, 2097152}, {0x54, 2097152},
};

const std::map<int, int> kExpectedRamSizes = {
    {0, 0},      {1, 2048},   {2, 8192}, {3, 32768},   {4, 65536},
    {5, 131072}, {6, 262144}, {7, 512},  {8, 1048576}, {9, 2097152},
};

int valueOr(const std::map<int, int> &table, int code, int otherwise)
{
    const auto row = table.find(code);
    return row == table.end() ? otherwise : row->second;
}

// A header with the three codes.
QByteArray headerWith(int type, int romCode, int ramCode)
{
    QByteArray header = makeGbHeader();
    header[0x147] = static_cast<char>(type);
    header[0x148] = static_cast<char>(romCode);
    header[0x149] = static_cast<char>(ramCode);
    return header;
}

// A record in which nothing is as a decoder would leave it.
GbHeaderInfo usedInfo()
{
    GbHeaderInfo info;
    info.title = "an older title";
    info.typeName = "an older type";
    info.romSize = 11;
    info.ramSize = 22;
    info.mbcType = 2;
    return info;
}

GbHeaderInfo decoded(const QByteArray &header)
{
    GbHeaderInfo info = usedInfo();
    if (decodeGbHeader(constBytesOf(header), &info) != 1)
        return {};
    return info;
}

} // namespace

class GbHeaderTest : public QObject
{
    Q_OBJECT

private slots:
    void logoIsThePublishedOne();
    void recordStartsEmpty();
    void headerIsDecoded();
    void nothingBehindTheRamSizeIsRead();
    void everyWrongLogoByteIsRefused();
    void erasedMemoryIsRefused();

    void titleIsTextUpToTheFirstZero_data();
    void titleIsTextUpToTheFirstZero();

    void everyTypeHasItsNameAndMapper();
    void everyRomCodeHasItsSize();
    void everyRamCodeHasItsSize();
    void ramInsideTheMapperHasNoCode_data();
    void ramInsideTheMapperHasNoCode();
};

void GbHeaderTest::logoIsThePublishedOne()
{
    QCOMPARE(crc32(kGbBootLogo.data(), kGbBootLogo.size()), std::uint32_t{0x46195417});
}

void GbHeaderTest::recordStartsEmpty()
{
    const GbHeaderInfo info;
    QVERIFY(info.title.isEmpty());
    QVERIFY(info.typeName.isEmpty());
    QCOMPARE(info.romSize, 0);
    QCOMPARE(info.ramSize, 0);
    QCOMPARE(info.mbcType, 0);
}

void GbHeaderTest::headerIsDecoded()
{
    GbHeaderInfo info = usedInfo();
    QCOMPARE(decodeGbHeader(constBytesOf(headerWith(0x03, 4, 3)), &info), 1);
    QCOMPARE(info.title, QString("TEST"));
    QCOMPARE(info.typeName, QString("ROM+MBC1+RAM+BATT"));
    QCOMPARE(info.romSize, 524288);
    QCOMPARE(info.ramSize, 32768);
    QCOMPARE(info.mbcType, 1);
}

// The block is no longer than it must be, so that the address sanitizer sees a read behind it.
void GbHeaderTest::nothingBehindTheRamSizeIsRead()
{
    const QByteArray header = headerWith(0x1B, 8, 5);
    const std::vector<std::uint8_t> block(constBytesOf(header), constBytesOf(header) + 0x14A);
    GbHeaderInfo info;
    QCOMPARE(decodeGbHeader(block.data(), &info), 1);
    QCOMPARE(info.ramSize, 131072);
}

void GbHeaderTest::everyWrongLogoByteIsRefused()
{
    for (int offset = 0x104; offset < 0x134; ++offset) {
        for (const int mask : {0x01, 0x80, 0xFF}) {
            const QByteArray header = withFlippedBits(makeGbHeader(), offset, mask);
            GbHeaderInfo info = usedInfo();
            QCOMPARE(decodeGbHeader(constBytesOf(header), &info), 0);
            QCOMPARE(info.title, usedInfo().title);
            QCOMPARE(info.typeName, usedInfo().typeName);
            QCOMPARE(info.romSize, usedInfo().romSize);
            QCOMPARE(info.ramSize, usedInfo().ramSize);
            QCOMPARE(info.mbcType, usedInfo().mbcType);
        }
    }
    // The bytes on both sides are no part of the logo.
    QCOMPARE(decoded(withFlippedBits(makeGbHeader(), 0x103, 0xFF)).title, QString("TEST"));
    QCOMPARE(decoded(withFlippedBits(makeGbHeader(), 0x135, 0x04)).title, QString("TAST"));
}

// What an empty slot (all ones) and a zeroed buffer look like.
void GbHeaderTest::erasedMemoryIsRefused()
{
    for (const char filling : {'\xFF', '\0'}) {
        GbHeaderInfo info = usedInfo();
        QCOMPARE(decodeGbHeader(constBytesOf(QByteArray(8192, filling)), &info), 0);
        QCOMPARE(info.title, usedInfo().title);
    }
}

void GbHeaderTest::titleIsTextUpToTheFirstZero_data()
{
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<QString>("title");
    const QByteArray letters("FIFTEEN LETTERS");

    QTest::newRow("empty") << QByteArray(16, '\0') << QString();
    QTest::newRow("starts with zero") << QByteArray("\0HIDDEN", 7) << QString();
    QTest::newRow("text behind a zero") << QByteArray("SHOWN\0HIDDEN", 12) << QString("SHOWN");
    QTest::newRow("blanks stay") << QByteArray(" A B ") << QString(" A B ");
    QTest::newRow("one letter") << QByteArray("A") << QString("A");
    QTest::newRow("15 letters") << letters << QString(letters);
    QTest::newRow("16 letters") << letters + '!' << QString(letters + '!');
    QTest::newRow("colour flag 0x80") << letters + '\x80' << QString(letters) + QChar(0xFFFD);
    QTest::newRow("colour flag 0xC0") << letters + '\xC0' << QString(letters) + QChar(0xFFFD);
    QTest::newRow("flag behind zeros")
        << QByteArray("NAME\0\0\0\0\0\0\0\0\0\0\0\x80", 16) << QString("NAME");
    QTest::newRow("UTF-8") << QByteArray("CAF\xC3\x89") << QString("CAF") + QChar(0xC9);
    QTest::newRow("not UTF-8") << QByteArray("A\xFF"
                                             "B")
                               << QString("A") + QChar(0xFFFD) + 'B';
}

void GbHeaderTest::titleIsTextUpToTheFirstZero()
{
    QFETCH(QByteArray, field);
    QFETCH(QString, title);
    QByteArray header = makeGbHeader();
    putBytes(&header, 0x134, field.leftJustified(16, '\0'));
    // Whatever follows the field is no part of the title.
    putBytes(&header, 0x144, "01");
    QCOMPARE(decoded(header).title, title);
}

void GbHeaderTest::everyTypeHasItsNameAndMapper()
{
    for (int code = 0; code < 256; ++code) {
        const auto row = kExpectedTypes.find(code);
        const bool isKnown = row != kExpectedTypes.end();
        const QString name =
            isKnown ? QString(row->second.name) : "Unknow Cartridge Type" + QString::number(code);
        const GbHeaderInfo info = decoded(headerWith(code, 0, 0));
        QCOMPARE(info.typeName, name);
        QCOMPARE(info.mbcType, isKnown ? row->second.mapperRow : 4);
    }
}

void GbHeaderTest::everyRomCodeHasItsSize()
{
    for (int code = 0; code < 256; ++code) {
        const int size = decoded(headerWith(0x19, code, 0)).romSize;
        QVERIFY2(size == valueOr(kExpectedRomSizes, code, 32768),
                 qPrintable(QString::number(code)));
    }
}

// With a mapper of each row of the settings.
void GbHeaderTest::everyRamCodeHasItsSize()
{
    for (const int type : {0x00, 0x03, 0x06, 0x13, 0x1B, 0x22, 0xFF, 0x20}) {
        for (int code = 1; code < 256; ++code) {
            const int size = decoded(headerWith(type, 0, code)).ramSize;
            QVERIFY2(size == valueOr(kExpectedRamSizes, code, 0),
                     qPrintable(QString("type %1, code %2").arg(type).arg(code)));
        }
    }
}

void GbHeaderTest::ramInsideTheMapperHasNoCode_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("ramSize");
    for (int type = 0; type < 256; ++type)
        QTest::newRow(qPrintable(QString("type %1").arg(type)))
            << type << (type == 5 || type == 6 ? 512 : 0);
}

void GbHeaderTest::ramInsideTheMapperHasNoCode()
{
    QFETCH(int, type);
    QFETCH(int, ramSize);
    QCOMPARE(decoded(headerWith(type, 0, 0)).ramSize, ramSize);
}

GBDRIVER_TEST(GbHeaderTest, none)
#include "gb_header_test.moc"
