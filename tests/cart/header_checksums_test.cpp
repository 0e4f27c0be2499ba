// The checksums in the headers of both kinds of cartridge, and which bytes each of them covers.
#include "cart/gb_header.h"
#include "cart/gba_header.h"

#include "header_bytes.h"
#include "test_class.h"

#include <QtTest>

#include <numeric>

namespace
{

// A whole ROM with its global checksum in place.
QByteArray makeRom(int size, char filling)
{
    QByteArray rom(size, filling);
    putBytes(&rom, 0, makeGbHeader());
    putBytes(&rom, 0x14E, QByteArray(2, '\0'));
    const std::uint64_t sum =
        std::accumulate(constBytesOf(rom), constBytesOf(rom) + size, std::uint64_t{0});
    rom[0x14E] = static_cast<char>(sum >> 8);
    rom[0x14F] = static_cast<char>(sum);
    return rom;
}

bool globalChecksumIsRight(const QByteArray &rom)
{
    return gbGlobalChecksumIsRight(constBytesOf(rom), static_cast<std::uint32_t>(rom.size()));
}

} // namespace

class HeaderChecksumsTest : public QObject
{
    Q_OBJECT

private slots:
    void headerChecksumOfAnEmptyHeader();
    void headerChecksumCoversTitleToVersion();
    void globalChecksumOfAnEmptyRom();
    void globalChecksumCoversTheWholeRom_data();
    void globalChecksumCoversTheWholeRom();
    void globalChecksumNeedsAWholeHeader();

    void complementOfAnEmptyHeader();
    void complementCoversTitleToVersion();
};

// 25 bytes of zero, each taken off together with 1.
void HeaderChecksumsTest::headerChecksumOfAnEmptyHeader()
{
    QByteArray header(0x150, '\0');
    QVERIFY(!gbHeaderChecksumIsRight(constBytesOf(header)));
    header[0x14D] = '\xE7';
    QVERIFY(gbHeaderChecksumIsRight(constBytesOf(header)));
}

void HeaderChecksumsTest::headerChecksumCoversTitleToVersion()
{
    QVERIFY(gbHeaderChecksumIsRight(constBytesOf(makeGbHeader())));
    for (int offset = 0x100; offset < 0x150; ++offset) {
        const QByteArray header = withFlippedBits(makeGbHeader(), offset, 0x40);
        const bool isCovered = offset >= 0x134 && offset <= 0x14D;
        QVERIFY2(gbHeaderChecksumIsRight(constBytesOf(header)) != isCovered,
                 qPrintable(QString::number(offset, 16)));
    }
}

void HeaderChecksumsTest::globalChecksumOfAnEmptyRom()
{
    QByteArray rom(32768, '\0');
    QVERIFY(globalChecksumIsRight(rom));
    rom[0x7FFF] = '\x12';
    QVERIFY(!globalChecksumIsRight(rom));
    rom[0x14F] = '\x12';
    QVERIFY(globalChecksumIsRight(rom));
    // The high byte stands first.
    rom[0x14F] = '\0';
    rom[0x14E] = '\x12';
    QVERIFY(!globalChecksumIsRight(rom));
}

void HeaderChecksumsTest::globalChecksumCoversTheWholeRom_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("header only") << 0x150;
    QTest::newRow("32 KiB") << 32768;
    QTest::newRow("8 MiB") << 8388608;
}

void HeaderChecksumsTest::globalChecksumCoversTheWholeRom()
{
    QFETCH(int, size);
    const QByteArray rom = makeRom(size, '\xFF');
    QVERIFY(globalChecksumIsRight(rom));
    for (const int offset : {0, 0x14D, 0x14E, 0x14F, size - 1})
        QVERIFY2(!globalChecksumIsRight(withFlippedBits(rom, offset, 0x01)),
                 qPrintable(QString::number(offset, 16)));
}

void HeaderChecksumsTest::globalChecksumNeedsAWholeHeader()
{
    const QByteArray rom(0x150, '\0');
    QVERIFY(gbGlobalChecksumIsRight(constBytesOf(rom), 0x150));
    QVERIFY(!gbGlobalChecksumIsRight(constBytesOf(rom), 0x14F));
    QVERIFY(!gbGlobalChecksumIsRight(constBytesOf(rom), 0));
}

void HeaderChecksumsTest::complementOfAnEmptyHeader()
{
    QByteArray header(0xC0, '\0');
    QVERIFY(!gbaComplementIsRight(constBytesOf(header)));
    header[0xBD] = '\xE7';
    QVERIFY(gbaComplementIsRight(constBytesOf(header)));
    // With the fixed byte that every header has.
    header[0xB2] = '\x96';
    header[0xBD] = '\x51';
    QVERIFY(gbaComplementIsRight(constBytesOf(header)));
}

void HeaderChecksumsTest::complementCoversTitleToVersion()
{
    const QByteArray right = makeGbaHeader("AWRP");
    QVERIFY(gbaComplementIsRight(constBytesOf(right)));
    for (int offset = 0x90; offset < 0xC0; ++offset) {
        const QByteArray header = withFlippedBits(right, offset, 0x10);
        const bool isCovered = offset >= 0xA0 && offset <= 0xBD;
        QVERIFY2(gbaComplementIsRight(constBytesOf(header)) != isCovered,
                 qPrintable(QString::number(offset, 16)));
    }
}

GBDRIVER_TEST(HeaderChecksumsTest, none)
#include "header_checksums_test.moc"
