// The GBA header decoder on every game of the table, and what the header says itself.
#include "cart/gba_header.h"

#include "constants/boot_logos.h"
#include "device/checksums.h"
#include "game_list.h"
#include "header_bytes.h"
#include "locale_codec.h"
#include "test_class.h"

#include <QTextCodec>
#include <QtTest>

#include <vector>

namespace
{

struct ExpectedSave {
    int sizeBytes;
    int type; // 0 SRAM, 1 flash, 2 EEPROM
};

const QMap<QByteArray, ExpectedSave> kExpectedSaves = {
    {"gba_sram", {32768, 0}},      {"gba_eeprom_4k", {512, 2}},
    {"gba_eeprom_64k", {8192, 2}}, {"gba_eeprom", {512, 2}},
    {"gba_flash_512", {65536, 1}}, {"gba_flash_1m", {131072, 1}},
    {"gba_flash", {65536, 1}},     {"", {0, 0}},
};

constexpr int kPresetRomSize = 12345;

// A record in which nothing is as a decoder would leave it.
GbaHeaderInfo usedInfo()
{
    GbaHeaderInfo info;
    info.title = "an older title";
    info.year = "an older year";
    info.publisher = "an older publisher";
    info.codes = "older codes";
    info.romSize = kPresetRomSize;
    info.saveSize = 22;
    info.saveType = 33;
    return info;
}

bool isUntouched(const GbaHeaderInfo &info)
{
    const GbaHeaderInfo before = usedInfo();
    return info.title == before.title && info.year == before.year &&
           info.publisher == before.publisher && info.codes == before.codes &&
           info.romSize == before.romSize && info.saveSize == before.saveSize &&
           info.saveType == before.saveType;
}

} // namespace

class GbaHeaderTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void logoIsThePublishedOne();
    void recordStartsEmpty();

    void everyGameIsDecoded();
    void knownGamesAreDecoded_data();
    void knownGamesAreDecoded();
    void titlesAreDecodedWithTheSystemsCodec();
    void nothingBehindTheGameCodeIsRead();

    void everyWrongLogoByteIsRefused();
    void erasedMemoryIsRefused();
    void unknownGamesLeaveTheRecordAlone_data();
    void unknownGamesLeaveTheRecordAlone();

    void ownTitleEndsAtTheFirstZero_data();
    void ownTitleEndsAtTheFirstZero();
    void ownCodeEndsAtTheFirstZero_data();
    void ownCodeEndsAtTheFirstZero();
};

// The file is UTF-8; what the tests' system uses must not matter.
void GbaHeaderTest::init()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

void GbaHeaderTest::logoIsThePublishedOne()
{
    QCOMPARE(crc32(kGbaBootLogo.data(), kGbaBootLogo.size()), std::uint32_t{0xD0BEB55E});
}

void GbaHeaderTest::recordStartsEmpty()
{
    const GbaHeaderInfo info;
    QVERIFY(info.title.isEmpty());
    QVERIFY(info.year.isEmpty());
    QVERIFY(info.publisher.isEmpty());
    QVERIFY(info.codes.isEmpty());
    QCOMPARE(info.romSize, 0);
    QCOMPARE(info.saveSize, 0);
    QCOMPARE(info.saveType, 0);
}

void GbaHeaderTest::everyGameIsDecoded()
{
    const QVector<ListedGame> games = readGameList();
    QCOMPARE(games.size(), 2499);
    for (const ListedGame &game : games) {
        const QByteArray code = firstGameCode(game.codes);
        const ListedGame &expected = games[firstRowWith(games, code)];
        GbaHeaderInfo info = usedInfo();
        const int result = decodeGbaHeader(constBytesOf(makeGbaHeader(code)), &info);

        QCOMPARE(result, expected.romSize.toInt());
        QCOMPARE(info.romSize, expected.romSize.toInt());
        QCOMPARE(info.title, QString::fromUtf8(expected.title));
        QCOMPARE(info.year, QString::fromUtf8(expected.year));
        QCOMPARE(info.publisher, QString::fromUtf8(expected.publisher));
        QCOMPARE(info.codes, QString::fromUtf8(expected.codes));
        QVERIFY2(kExpectedSaves.contains(expected.saveKey), expected.saveKey);
        QCOMPARE(info.saveSize, kExpectedSaves[expected.saveKey].sizeBytes);
        QCOMPARE(info.saveType, kExpectedSaves[expected.saveKey].type);
    }
}

void GbaHeaderTest::knownGamesAreDecoded_data()
{
    QTest::addColumn<QByteArray>("code");
    QTest::addColumn<QString>("title");
    QTest::addColumn<int>("romSize");
    QTest::addColumn<int>("saveSize");
    QTest::addColumn<int>("saveType");
    const QString firstTitle = "2 Game Pack!: Hot Wheels - Stunt Track Challenge + Hot Wheels - "
                               "World Race (Euro, USA)";
    const auto add = [](const char *name, const QByteArray &code, const QString &title, int romSize,
                        int saveSize, int saveType) {
        QTest::newRow(name) << code << title << romSize << saveSize << saveType;
    };
    add("no save memory", "AC9E", "Cartoon Network Block Party (USA)", 4194304, 0, 0);
    add("SRAM", "BVDJ", "bit Generations - Boundish (Jpn)", 4194304, 32768, 0);
    add("EEPROM, 4 Kbit", "ALXP", "Ace Lightning (Euro)", 4194304, 512, 2);
    add("EEPROM, 64 Kbit", "AC4J", "Meitantei Conan - Nerawareta Tantei (Jpn)", 8388608, 8192, 2);
    add("EEPROM, size unknown", "ACZP", "Comix Zone (Euro)", 4194304, 512, 2);
    add("flash, 512 Kbit", "A3UJ", "Mother 3 (Jpn)", 33554432, 65536, 1);
    add("flash, 1 Mbit", "BIXJ", "Calciobit (Jpn)", 8388608, 131072, 1);
    add("flash, size unknown", "AWRP", "Advance Wars (Euro)", 8388608, 65536, 1);
    add("second code of a row", "BQJP", firstTitle, 16777216, 0, 0);
    add("several rows", "BILP", "Bionicle - Maze of Shadows (Euro, Rev. 1)", 8388608, 512, 2);
    add("code cut by a zero", QByteArray("AW\0P", 4), "Advance Wars (Euro)", 8388608, 65536, 1);
    add("code starts with zero", QByteArray("\0WRP", 4), firstTitle, 16777216, 0, 0);
}

void GbaHeaderTest::knownGamesAreDecoded()
{
    QFETCH(QByteArray, code);
    QFETCH(int, romSize);
    GbaHeaderInfo info = usedInfo();
    QCOMPARE(decodeGbaHeader(constBytesOf(makeGbaHeader(code)), &info), romSize);
    QTEST(info.title, "title");
    QCOMPARE(info.romSize, romSize);
    QTEST(info.saveSize, "saveSize");
    QTEST(info.saveType, "saveType");
}

void GbaHeaderTest::titlesAreDecodedWithTheSystemsCodec()
{
    const QByteArray title = "Pok\xC3\xA9mon - FireRed Version (USA)";
    GbaHeaderInfo info;
    QCOMPARE(decodeGbaHeader(constBytesOf(makeGbaHeader("BPRE")), &info), 16777216);
    QCOMPARE(info.title, QString::fromUtf8(title));

    for (const char *encoding : localeCodecs()) {
        const LocaleCodec codec(encoding);
        QCOMPARE(decodeGbaHeader(constBytesOf(makeGbaHeader("BPRE")), &info), 16777216);
        QCOMPARE(info.title, QTextCodec::codecForName(encoding)->toUnicode(title));
    }
}

// The block is no longer than it must be, so that the address sanitizer sees a read behind it.
void GbaHeaderTest::nothingBehindTheGameCodeIsRead()
{
    const QByteArray header = makeGbaHeader("AWRP");
    const std::vector<std::uint8_t> block(constBytesOf(header), constBytesOf(header) + 0xB0);
    GbaHeaderInfo info;
    QCOMPARE(decodeGbaHeader(block.data(), &info), 8388608);
}

// The console ignores four bits of the logo; here they count like the others.
void GbaHeaderTest::everyWrongLogoByteIsRefused()
{
    QVERIFY(gbaLogoMatches(constBytesOf(makeGbaHeader("AWRP"))));
    for (int offset = 0x04; offset < 0xA0; ++offset) {
        for (int bit = 0; bit < 8; ++bit) {
            const QByteArray header = withFlippedBits(makeGbaHeader("AWRP"), offset, 1 << bit);
            GbaHeaderInfo info = usedInfo();
            QCOMPARE(decodeGbaHeader(constBytesOf(header), &info), 0);
            QVERIFY(isUntouched(info));
            QVERIFY(!gbaLogoMatches(constBytesOf(header)));
        }
    }
    // The bytes on both sides are no part of the logo.
    for (const int offset : {0x03, 0xA0}) {
        const QByteArray header = withFlippedBits(makeGbaHeader("AWRP"), offset, 0xFF);
        QVERIFY(gbaLogoMatches(constBytesOf(header)));
    }
}

// What an empty slot (all ones) and a zeroed buffer look like.
void GbaHeaderTest::erasedMemoryIsRefused()
{
    for (const char filling : {'\xFF', '\0'}) {
        GbaHeaderInfo info = usedInfo();
        QCOMPARE(decodeGbaHeader(constBytesOf(QByteArray(8192, filling)), &info), 0);
        QVERIFY(isUntouched(info));
    }
}

void GbaHeaderTest::unknownGamesLeaveTheRecordAlone_data()
{
    QTest::addColumn<QByteArray>("code");
    QTest::newRow("no such code") << QByteArray("ZZZZ");
    QTest::newRow("small letters") << QByteArray("awrp");
    QTest::newRow("one small letter") << QByteArray("AWRp");
    QTest::newRow("blanks") << QByteArray("    ");
    QTest::newRow("all ones") << QByteArray(4, '\xFF');
}

void GbaHeaderTest::unknownGamesLeaveTheRecordAlone()
{
    QFETCH(QByteArray, code);
    const QByteArray header = makeGbaHeader(code);
    GbaHeaderInfo info = usedInfo();
    QCOMPARE(decodeGbaHeader(constBytesOf(header), &info), kPresetRomSize);
    QVERIFY(isUntouched(info));

    GbaHeaderInfo freshInfo;
    QCOMPARE(decodeGbaHeader(constBytesOf(header), &freshInfo), 0);
    QVERIFY(freshInfo.title.isEmpty());
    // What tells this cartridge from one that is none.
    QVERIFY(gbaLogoMatches(constBytesOf(header)));
}

void GbaHeaderTest::ownTitleEndsAtTheFirstZero_data()
{
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<QString>("title");
    QTest::newRow("empty") << QByteArray(12, '\0') << QString();
    QTest::newRow("short") << QByteArray("ADVANCEWARS\0", 12) << QString("ADVANCEWARS");
    QTest::newRow("12 letters") << QByteArray("TWELVELETTER") << QString("TWELVELETTER");
    QTest::newRow("text behind a zero") << QByteArray("SHOWN\0HIDDEN", 12) << QString("SHOWN");
    QTest::newRow("Latin-1") << QByteArray("CAF\xC9\0\0\0\0\0\0\0\0", 12)
                             << QString("CAF") + QChar(0xC9);
}

void GbaHeaderTest::ownTitleEndsAtTheFirstZero()
{
    QFETCH(QByteArray, field);
    QByteArray header = makeGbaHeader("AWRP");
    putBytes(&header, 0xA0, field);
    QTEST(gbaHeaderTitle(constBytesOf(header)), "title");
}

void GbaHeaderTest::ownCodeEndsAtTheFirstZero_data()
{
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<QString>("code");
    QTest::newRow("four letters") << QByteArray("ZZZZ") << QString("ZZZZ");
    QTest::newRow("two letters") << QByteArray("AW\0P", 4) << QString("AW");
    QTest::newRow("empty") << QByteArray("\0WRP", 4) << QString();
}

void GbaHeaderTest::ownCodeEndsAtTheFirstZero()
{
    QFETCH(QByteArray, field);
    QByteArray header = makeGbaHeader(field);
    // The maker code follows at once.
    putBytes(&header, 0xB0, "01");
    QTEST(gbaHeaderCode(constBytesOf(header)), "code");
}

GBDRIVER_TEST(GbaHeaderTest, none)
#include "gba_header_test.moc"
