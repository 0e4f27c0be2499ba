// What the content of a dump says about itself: headers, checksums, and where the content ends.
#include "cart/dump_checks.h"

#include "header_bytes.h"
#include "samples.h"
#include "test_class.h"
#include "virtual/image_generator.h"

#include <QtTest>

#include <algorithm>
#include <numeric>
#include <vector>

using namespace virtual_reader;

Q_DECLARE_METATYPE(DumpSystem)
Q_DECLARE_METATYPE(DumpTail)

namespace
{

constexpr int kMiB = 1024 * 1024;
constexpr int kGbHeaderChecksum = 0x14D;
constexpr int kGbRomSizeCode = 0x148;

QByteArray makeGb(std::uint32_t size)
{
    GbImageSpec spec;
    spec.type = 0x19; // MBC5
    spec.romSize = size;
    return toByteArray(gbImage(spec));
}

QByteArray makeGba(std::uint32_t size)
{
    GbaImageSpec spec;
    spec.romSize = size;
    return toByteArray(gbaImage(spec));
}

// `image` with what the bus answers behind it up to `size`.
QByteArray withOpenBus(QByteArray image, int size)
{
    for (int offset = image.size(); offset < size; offset += 2) {
        const int halfword = offset / 2;
        image.append(static_cast<char>(halfword));
        image.append(static_cast<char>(halfword >> 8));
    }
    image.truncate(size);
    return image;
}

// A GB image whose halves are the same and whose global checksum is right: the bytes of a half sum
// up to 0x8000, so the checksum of both is 0.
QByteArray makeTwoEqualHalves()
{
    QByteArray half = makeGbHeader().leftJustified(0x8000, '\0');
    int missing = 0x8000 - std::accumulate(half.begin(), half.end(), 0, [](int sum, char byte) {
                      return sum + static_cast<std::uint8_t>(byte);
                  });
    for (int offset = 0x4000; missing > 0; ++offset) {
        half[offset] = static_cast<char>(std::min(missing, 0xFF));
        missing -= std::min(missing, 0xFF);
    }
    return half + half;
}

DumpChecks check(const QByteArray &image, DumpSystem system = DumpSystem::Unknown)
{
    return checkDump(constBytesOf(image), static_cast<std::uint32_t>(image.size()), system);
}

} // namespace

class DumpChecksTest : public QObject
{
    Q_OBJECT

private slots:
    void goodGbImagePasses();
    void goodGbaImagePasses();
    void oneWrongByteIsSeen_data();
    void oneWrongByteIsSeen();
    void systemComesFromTheLogoUnlessGiven();
    void gbSizeComesFromTheHeader_data();
    void gbSizeComesFromTheHeader();
    void smallInputIsNoCartridge_data();
    void smallInputIsNoCartridge();
    void contentEndsWhereTheTailBegins_data();
    void contentEndsWhereTheTailBegins();
    void mirroredGbImageHasTheChecksumOfItsContent();
    void checksumOverTwoEqualHalvesIsBelieved();
    void missingCartridgeIsSeen();
    void repeatedContentIsFound_data();
    void repeatedContentIsFound();
    void equalBytesAreFound_data();
    void equalBytesAreFound();
};

void DumpChecksTest::goodGbImagePasses()
{
    const DumpChecks checks = check(makeGb(0x80000));
    QCOMPARE(checks.system, DumpSystem::Gb);
    QVERIFY(checks.logoIsRight);
    QVERIFY(checks.headerChecksumIsRight);
    QCOMPARE(checks.globalChecksumIsRight, std::optional<bool>(true));
    QCOMPARE(checks.headerSize, std::optional<std::uint32_t>(0x80000));
    QVERIFY(!checks.allBytesEqual);
    QCOMPARE(checks.contentSize, 0x80000U);
    QCOMPARE(checks.tail, DumpTail::None);
}

void DumpChecksTest::goodGbaImagePasses()
{
    const DumpChecks checks = check(makeGba(kMiB));
    QCOMPARE(checks.system, DumpSystem::Gba);
    QVERIFY(checks.logoIsRight);
    QVERIFY(checks.headerChecksumIsRight);
    QVERIFY(!checks.globalChecksumIsRight.has_value());
    QVERIFY(!checks.headerSize.has_value());
    QVERIFY(!checks.allBytesEqual);
    QCOMPARE(checks.contentSize, static_cast<std::uint32_t>(kMiB));
    QCOMPARE(checks.tail, DumpTail::None);
}

void DumpChecksTest::oneWrongByteIsSeen_data()
{
    QTest::addColumn<QByteArray>("image");
    QTest::addColumn<DumpSystem>("system");
    QTest::addColumn<bool>("logo");
    QTest::addColumn<bool>("header");
    QTest::addColumn<bool>("global");
    const QByteArray gb = makeGb(0x10000);
    const QByteArray gba = makeGba(0x10000);
    const auto add = [](const char *name, const QByteArray &image, DumpSystem system, bool logo,
                        bool header, bool global) {
        QTest::newRow(name) << image << system << logo << header << global;
    };
    add("GB logo", withFlippedBits(gb, 0x104, 1), DumpSystem::Gb, false, true, false);
    add("GB title", withFlippedBits(gb, 0x134, 1), DumpSystem::Gb, true, false, false);
    add("GB header checksum", withFlippedBits(gb, kGbHeaderChecksum, 1), DumpSystem::Gb, true,
        false, false);
    add("GB last byte", withFlippedBits(gb, 0xFFFF, 0x80), DumpSystem::Gb, true, true, false);
    add("GBA logo", withFlippedBits(gba, 0x9F, 1), DumpSystem::Gba, false, true, false);
    add("GBA game code", withFlippedBits(gba, 0xAC, 1), DumpSystem::Gba, true, false, false);
    add("GBA complement", withFlippedBits(gba, 0xBD, 1), DumpSystem::Gba, true, false, false);
}

void DumpChecksTest::oneWrongByteIsSeen()
{
    QFETCH(QByteArray, image);
    QFETCH(DumpSystem, system);
    const DumpChecks checks = check(image, system);
    QCOMPARE(checks.system, system);
    QTEST(checks.logoIsRight, "logo");
    QTEST(checks.headerChecksumIsRight, "header");
    QTEST(checks.globalChecksumIsRight.value_or(false), "global");
    QCOMPARE(checks.tail, DumpTail::None);
}

void DumpChecksTest::systemComesFromTheLogoUnlessGiven()
{
    const QByteArray gb = makeGb(0x8000);
    QCOMPARE(check(makeGba(0x8000)).system, DumpSystem::Gba);
    QCOMPARE(check(gb).system, DumpSystem::Gb);

    const DumpChecks asGba = check(gb, DumpSystem::Gba);
    QCOMPARE(asGba.system, DumpSystem::Gba);
    QVERIFY(!asGba.logoIsRight);
    QVERIFY(!asGba.globalChecksumIsRight.has_value());

    const DumpChecks unknown = check(withFlippedBits(gb, 0x104, 1));
    QCOMPARE(unknown.system, DumpSystem::Unknown);
    QVERIFY(!unknown.logoIsRight);
    QVERIFY(!unknown.headerChecksumIsRight);
    QVERIFY(!unknown.globalChecksumIsRight.has_value());
    QVERIFY(!unknown.headerSize.has_value());
}

void DumpChecksTest::gbSizeComesFromTheHeader_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("size"); // 0: none
    QTest::newRow("32 KiB") << 0 << 0x8000;
    QTest::newRow("64 KiB") << 1 << 0x10000;
    QTest::newRow("8 MiB") << 8 << 8 * kMiB;
    QTest::newRow("unknown code") << 9 << 0;
    QTest::newRow("code FF") << 0xFF << 0;
}

void DumpChecksTest::gbSizeComesFromTheHeader()
{
    QFETCH(int, code);
    QFETCH(int, size);
    QByteArray image = makeGb(0x8000);
    image[kGbRomSizeCode] = static_cast<char>(code);
    QCOMPARE(check(image).headerSize.value_or(0), static_cast<std::uint32_t>(size));
}

void DumpChecksTest::smallInputIsNoCartridge_data()
{
    QTest::addColumn<QByteArray>("image");
    QTest::addColumn<DumpSystem>("system");
    QTest::addColumn<bool>("equal");
    const QByteArray gb = makeGb(0x8000);
    const QByteArray gba = makeGba(0x8000);
    for (const DumpSystem system : {DumpSystem::Unknown, DumpSystem::Gb, DumpSystem::Gba}) {
        const auto name = [system](const char *text) {
            return QByteArray(text) + " as " + QByteArray::number(static_cast<int>(system));
        };
        QTest::newRow(name("empty").constData()) << QByteArray() << system << false;
        QTest::newRow(name("one byte").constData()) << QByteArray("a") << system << true;
        QTest::newRow(name("two bytes").constData()) << QByteArray("ab") << system << false;
        QTest::newRow(name("three bytes").constData()) << QByteArray("aba") << system << false;
        QTest::newRow(name("GBA header, cut off").constData()) << gba.left(0xBF) << system << false;
        QTest::newRow(name("GB header, cut off").constData()) << gb.left(0x14F) << system << false;
    }
}

void DumpChecksTest::smallInputIsNoCartridge()
{
    QFETCH(QByteArray, image);
    QFETCH(DumpSystem, system);
    // A copy without the zero that ends an array, so that a byte too many is noticed.
    const std::vector<std::uint8_t> exact(image.begin(), image.end());
    const auto size = static_cast<std::uint32_t>(exact.size());
    const DumpChecks checks = checkDump(exact.data(), size, system);
    QCOMPARE(checks.system, system);
    QVERIFY(!checks.logoIsRight);
    QVERIFY(!checks.headerChecksumIsRight);
    QVERIFY(!checks.globalChecksumIsRight.value_or(false));
    QVERIFY(!checks.headerSize.has_value());
    QTEST(checks.allBytesEqual, "equal");
    QCOMPARE(checks.contentSize, size);
    QCOMPARE(checks.tail, DumpTail::None);
}

void DumpChecksTest::contentEndsWhereTheTailBegins_data()
{
    QTest::addColumn<QByteArray>("image");
    QTest::addColumn<DumpTail>("tail");
    QTest::addColumn<int>("contentSize");
    const auto add = [](const char *name, const QByteArray &image, DumpTail tail, int contentSize) {
        QTest::newRow(name) << image << tail << contentSize;
    };
    const QByteArray gb = makeGb(0x10000);
    const QByteArray gba = makeGba(0x40000);
    const QByteArray paddedGba = gba.left(0x30000) + QByteArray(0x10000, '\xFF');
    const QByteArray zeros(0x10000, '\0');
    add("GB twice", gb + gb, DumpTail::Mirrored, 0x10000);
    add("GB eight times", gb.repeated(8), DumpTail::Mirrored, 0x10000);
    add("GB one and a half times", gb + gb.left(0x8000), DumpTail::Mirrored, 0x10000);
    add("GB padded with FF", gb + QByteArray(0x10000, '\xFF'), DumpTail::None, 0x20000);
    add("GB padded with 00", gb + zeros, DumpTail::None, 0x20000);
    add("GB and the address", withOpenBus(gb, 0x20000), DumpTail::None, 0x20000);
    add("GB twice but for the last byte", withFlippedBits(gb + gb, 0x1FFFF, 1), DumpTail::None,
        0x20000);
    add("GBA twice", gba + gba, DumpTail::Mirrored, 0x40000);
    add("GBA four times", gba.repeated(4), DumpTail::Mirrored, 0x40000);
    add("GBA padded", paddedGba, DumpTail::None, 0x40000);
    add("GBA padded, twice", paddedGba + paddedGba, DumpTail::Mirrored, 0x40000);
    add("GBA and open bus", withOpenBus(gba, 0x80000), DumpTail::OpenBus, 0x40000);
    // The last halfword of the padding is what the open bus would be.
    add("GBA padded and open bus", withOpenBus(paddedGba, kMiB), DumpTail::OpenBus, 0x40000);
    add("GBA and open bus, no power of two", withOpenBus(gba + zeros, 0x60000), DumpTail::OpenBus,
        0x50000);
    add("GBA and open bus, odd size", withOpenBus(gba, 0x50001), DumpTail::OpenBus, 0x40000);
    add("GBA and too little open bus", withOpenBus(gba, 0x40000 + 510), DumpTail::None,
        0x40000 + 510);
    add("GBA and least open bus", withOpenBus(gba, 0x40000 + 512), DumpTail::OpenBus, 0x40000);
    add("GBA and open bus that ends early", withOpenBus(gba, 0x80000) + QByteArray(2, '\x55'),
        DumpTail::None, 0x80002);
    add("GBA of odd size", gba + QByteArray("abc"), DumpTail::None, 0x40003);
}

void DumpChecksTest::contentEndsWhereTheTailBegins()
{
    QFETCH(QByteArray, image);
    QFETCH(int, contentSize);
    const DumpChecks checks = check(image);
    QTEST(checks.tail, "tail");
    QCOMPARE(checks.contentSize, static_cast<std::uint32_t>(contentSize));
    QVERIFY(checks.logoIsRight);
    QVERIFY(checks.headerChecksumIsRight);
    QVERIFY(!checks.allBytesEqual);
}

void DumpChecksTest::mirroredGbImageHasTheChecksumOfItsContent()
{
    const QByteArray gb = makeGb(0x20000);
    QCOMPARE(check(gb + gb).globalChecksumIsRight, std::optional<bool>(true));
    const QByteArray wrong = withFlippedBits(gb, 0x4321, 1);
    QCOMPARE(check(wrong + wrong).globalChecksumIsRight, std::optional<bool>(false));
}

void DumpChecksTest::checksumOverTwoEqualHalvesIsBelieved()
{
    const DumpChecks checks = check(makeTwoEqualHalves());
    QCOMPARE(checks.globalChecksumIsRight, std::optional<bool>(true));
    QCOMPARE(checks.tail, DumpTail::None);
    QCOMPARE(checks.contentSize, 0x10000U);
}

void DumpChecksTest::missingCartridgeIsSeen()
{
    for (const DumpSystem system : {DumpSystem::Gba, DumpSystem::Unknown}) {
        const DumpChecks openBus = check(withOpenBus({}, 4 * kMiB), system);
        QCOMPARE(openBus.tail, DumpTail::OpenBus);
        QCOMPARE(openBus.contentSize, 0U);
        QVERIFY(!openBus.logoIsRight);
    }

    const DumpChecks pulledUp = check(QByteArray(0x20000, '\xFF'), DumpSystem::Gb);
    QVERIFY(pulledUp.allBytesEqual);
    QCOMPARE(pulledUp.tail, DumpTail::None);
    QCOMPARE(pulledUp.contentSize, 0x20000U);
    QVERIFY(!pulledUp.headerChecksumIsRight);
}

void DumpChecksTest::repeatedContentIsFound_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("contentSize");
    const QByteArray noise = ::noise(0x2000, 7);
    QTest::newRow("save of 8 KiB") << noise << 0x2000;
    QTest::newRow("read as 16 KiB") << noise + noise << 0x2000;
    QTest::newRow("read as 32 KiB") << noise.repeated(4) << 0x2000;
    QTest::newRow("read as 24 KiB") << noise.repeated(3) << 0x2000;
    QTest::newRow("read as 9 KiB") << noise + noise.left(0x400) << 0x2000;
    QTest::newRow("first differs in the last copy")
        << noise.repeated(3) + withFlippedBits(noise, 0, 1) << 0x8000;
    QTest::newRow("last differs in the first copy")
        << withFlippedBits(noise, 0x1FFF, 1) + noise.repeated(3) << 0x8000;
    QTest::newRow("pairs repeat, the rest not")
        << noise.repeated(2) + QByteArray(0x4000, '\0') << 0x8000;
    QTest::newRow("two pairs")
        << (noise + noise.left(0x1000) + QByteArray(0x1000, '\0')).repeated(2) << 0x4000;
    QTest::newRow("512 bytes in 8 KiB") << noise.left(512).repeated(16) << 512;
    QTest::newRow("two bytes") << QByteArray("ab").repeated(1024) << 2;
    QTest::newRow("one byte") << QByteArray(2048, 'a') << 2048;
    QTest::newRow("repetition too short") << noise + noise.left(255) << 0x2000 + 255;
    QTest::newRow("repetition just long enough") << noise + noise.left(256) << 0x2000;
    QTest::newRow("small") << QByteArray("abab") << 4;
    QTest::newRow("empty") << QByteArray() << 0;
}

void DumpChecksTest::repeatedContentIsFound()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, contentSize);
    const auto size = static_cast<std::uint32_t>(bytes.size());
    QCOMPARE(static_cast<int>(repeatedContentSize(constBytesOf(bytes), size)), contentSize);
}

void DumpChecksTest::equalBytesAreFound_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("areEqual");
    QTest::newRow("erased") << QByteArray(0x2000, '\xFF') << true;
    QTest::newRow("zero") << QByteArray(0x2000, '\0') << true;
    QTest::newRow("any value") << QByteArray(3, 'x') << true;
    QTest::newRow("one byte") << QByteArray(1, 'x') << true;
    QTest::newRow("first differs") << "y" + QByteArray(0x2000, 'x') << false;
    QTest::newRow("last differs") << QByteArray(0x2000, 'x') + "y" << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void DumpChecksTest::equalBytesAreFound()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, areEqual);
    const auto size = static_cast<std::uint32_t>(bytes.size());
    QCOMPARE(allBytesEqual(constBytesOf(bytes), size), areEqual);
}

GBDRIVER_TEST(DumpChecksTest, none)
#include "dump_checks_test.moc"
