// The compiled game table against the file it is made from, what is known about its contents, and
// the search in it.
#include "cart/game_database.h"

#include "game_list.h"
#include "test_class.h"

#include <QtTest>

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace
{

// True if the field holds `text` and is zero from there to its end.
template <std::size_t kSize> bool holds(const char (&field)[kSize], const QByteArray &text)
{
    return text.size() < static_cast<int>(kSize) &&
           QByteArray(field, kSize) == text.leftJustified(kSize, '\0');
}

const GbaGameRecord &recordAt(int row)
{
    return gameDatabase[static_cast<std::size_t>(row)];
}

template <typename Condition> int rowsThat(Condition condition)
{
    return static_cast<int>(std::count_if(gameDatabase.begin(), gameDatabase.end(), condition));
}

// The longest value that `lengthOf` finds in any record.
template <typename Length> std::size_t longest(Length lengthOf)
{
    std::size_t length = 0;
    for (const GbaGameRecord &record : gameDatabase)
        length = std::max(length, lengthOf(record));
    return length;
}

// Position of what findGame() found, or -1.
int foundRow(const QByteArray &key)
{
    const GbaGameRecord *game = findGame({key.constData(), static_cast<std::size_t>(key.size())});
    return game ? static_cast<int>(game - gameDatabase.data()) : -1;
}

} // namespace

class GameDatabaseTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void recordsHaveNoGaps();
    void arrayIsTheFileFieldByField();
    void knownRowsStandAtTheirPlaces_data();
    void knownRowsStandAtTheirPlaces();

    void rowsByKindOfSaveMemory_data();
    void rowsByKindOfSaveMemory();
    void rowsByRomSize_data();
    void rowsByRomSize();
    void rowsHaveOneOrTwoCodes();
    void longestValuesAreKnown();
    void someCodesStandInSeveralRows();

    void everyCodeIsFoundInItsFirstRow();
    void keysAreFoundAnywhereInTheCodes_data();
    void keysAreFoundAnywhereInTheCodes();

private:
    QVector<ListedGame> m_games;
};

void GameDatabaseTest::initTestCase()
{
    m_games = readGameList();
    QCOMPARE(m_games.size(), 2499);
    QCOMPARE(gameDatabase.size(), std::size_t{2499});
}

void GameDatabaseTest::recordsHaveNoGaps()
{
    QCOMPARE(sizeof(gameDatabase), std::size_t{2499 * 250});
    QCOMPARE(offsetof(GbaGameRecord, title), std::size_t{0});
    QCOMPARE(offsetof(GbaGameRecord, year), std::size_t{140});
    QCOMPARE(offsetof(GbaGameRecord, publisher), std::size_t{150});
    QCOMPARE(offsetof(GbaGameRecord, codes), std::size_t{180});
    QCOMPARE(offsetof(GbaGameRecord, romSize), std::size_t{220});
    QCOMPARE(offsetof(GbaGameRecord, saveKey), std::size_t{230});
}

void GameDatabaseTest::arrayIsTheFileFieldByField()
{
    for (int row = 0; row < m_games.size(); ++row) {
        const ListedGame &listed = m_games[row];
        const GbaGameRecord &record = recordAt(row);
        const QByteArray message = "row " + QByteArray::number(row);
        QVERIFY2(holds(record.title, listed.title), message);
        QVERIFY2(holds(record.year, listed.year), message);
        QVERIFY2(holds(record.publisher, listed.publisher), message);
        QVERIFY2(holds(record.codes, listed.codes), message);
        QVERIFY2(holds(record.romSize, listed.romSize), message);
        QVERIFY2(holds(record.saveKey, listed.saveKey), message);
    }
}

void GameDatabaseTest::knownRowsStandAtTheirPlaces_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QByteArray>("line");
    const auto add = [](const char *name, int row, const char *line) {
        QTest::newRow(name) << row << QByteArray(line);
    };
    add("first", 0,
        "2 Game Pack!: Hot Wheels - Stunt Track Challenge + Hot Wheels - World Race (Euro, USA)|"
        "200?|DSI Games|AGB-BQJE-USA, AGB-BQJP|16777216|");
    add("EEPROM", 1, "Ace Lightning (Euro)|2002|BBC Worldwide|AGB-ALXP-UKV|4194304|gba_eeprom_4k");
    add("flash", 2, "Advance Wars (Euro)|2001|Nintendo|AGB-AWRP-EUR|8388608|gba_flash");
    add("two codes", 3,
        "Bionicle - Matoran Adventures (Euro, USA)|2002|Electronic Arts|"
        "AGB-A5AE-USA, AGB-A5AP-EUR|4194304|gba_eeprom_4k");
    add("blank behind the code", 274,
        "Aleck Bordon Adventure - Tower & Shaft Advance (Jpn)|2004|Aruze|AGB-BABJ |4194304|"
        "gba_eeprom_4k");
    add("500", 500, "Cartoon Network Block Party (USA)|2004|Majesco|AGB-AC9E-USA|4194304|");
    add("quotes in the title", 698,
        "Disney's Donald Duck \"Adv@nce\"!*# (Euro)|2001|Ubi Soft|AGB-ADKP|8388608|");
    add("two question marks", 745,
        "Drake & Josh (USA)|19?"
        "?|THQ|AGB-BJYE-USA|4194304|");
    add("1500", 1500,
        "Meitantei Conan - Nerawareta Tantei (Jpn)|2003|Banpresto|AGB-AC4J-JPN|8388608|"
        "gba_eeprom_64k");
    add("last", 2498, "Play-Yan Micro (Jpn)|2005|Nintendo|AGS-006|4194304|gba_sram");
}

void GameDatabaseTest::knownRowsStandAtTheirPlaces()
{
    QFETCH(int, row);
    QFETCH(QByteArray, line);
    const GbaGameRecord &record = recordAt(row);
    const QByteArrayList values = {record.title, record.year,    record.publisher,
                                   record.codes, record.romSize, record.saveKey};
    QCOMPARE(values.join('|'), line);
}

void GameDatabaseTest::rowsByKindOfSaveMemory_data()
{
    QTest::addColumn<QByteArray>("saveKey");
    QTest::addColumn<int>("rows");
    QTest::newRow("none or unknown") << QByteArray("") << 603;
    QTest::newRow("SRAM") << QByteArray("gba_sram") << 476;
    QTest::newRow("EEPROM, 4 Kbit") << QByteArray("gba_eeprom_4k") << 888;
    QTest::newRow("EEPROM, 64 Kbit") << QByteArray("gba_eeprom_64k") << 349;
    QTest::newRow("EEPROM, size unknown") << QByteArray("gba_eeprom") << 3;
    QTest::newRow("flash, 512 Kbit") << QByteArray("gba_flash_512") << 71;
    QTest::newRow("flash, 1 Mbit") << QByteArray("gba_flash_1m") << 32;
    QTest::newRow("flash, size unknown") << QByteArray("gba_flash") << 77;
}

void GameDatabaseTest::rowsByKindOfSaveMemory()
{
    QFETCH(QByteArray, saveKey);
    QFETCH(int, rows);
    QCOMPARE(rowsThat([&](const GbaGameRecord &record) { return saveKey == record.saveKey; }),
             rows);
}

void GameDatabaseTest::rowsByRomSize_data()
{
    QTest::addColumn<QByteArray>("romSize");
    QTest::addColumn<int>("rows");
    QTest::newRow("4 MiB") << QByteArray("4194304") << 930;
    QTest::newRow("8 MiB") << QByteArray("8388608") << 1116;
    QTest::newRow("16 MiB") << QByteArray("16777216") << 373;
    QTest::newRow("32 MiB") << QByteArray("33554432") << 80;
}

void GameDatabaseTest::rowsByRomSize()
{
    QFETCH(QByteArray, romSize);
    QFETCH(int, rows);
    QCOMPARE(rowsThat([&](const GbaGameRecord &record) { return romSize == record.romSize; }),
             rows);
}

void GameDatabaseTest::rowsHaveOneOrTwoCodes()
{
    const auto codesOf = [](const GbaGameRecord &record) {
        return QByteArray(record.codes).count(", ") + 1;
    };
    QCOMPARE(rowsThat([&](const GbaGameRecord &record) { return codesOf(record) == 1; }), 2334);
    QCOMPARE(rowsThat([&](const GbaGameRecord &record) { return codesOf(record) == 2; }), 165);
}

void GameDatabaseTest::longestValuesAreKnown()
{
    using Record = GbaGameRecord;
    QCOMPARE(longest([](const Record &record) { return std::strlen(record.title); }), size_t{130});
    QCOMPARE(longest([](const Record &record) { return std::strlen(record.year); }), size_t{5});
    QCOMPARE(longest([](const Record &record) { return std::strlen(record.publisher); }),
             size_t{27});
    QCOMPARE(longest([](const Record &record) { return std::strlen(record.codes); }), size_t{32});
    QCOMPARE(longest([](const Record &record) { return std::strlen(record.romSize); }), size_t{8});
    QCOMPARE(longest([](const Record &record) { return std::strlen(record.saveKey); }), size_t{14});
}

void GameDatabaseTest::someCodesStandInSeveralRows()
{
    QMap<QByteArray, int> rowsOfCode;
    for (const GbaGameRecord &record : gameDatabase) {
        QVector<QByteArray> codes = gameCodesIn(record.codes);
        std::sort(codes.begin(), codes.end());
        const auto end = std::unique(codes.begin(), codes.end());
        for (auto code = codes.begin(); code != end; ++code)
            ++rowsOfCode[*code];
    }
    QCOMPARE(std::count_if(rowsOfCode.begin(), rowsOfCode.end(), [](int rows) { return rows > 1; }),
             68);
}

// By its first code a row is found, or an earlier one that has the code as well; so is it by any
// other.
void GameDatabaseTest::everyCodeIsFoundInItsFirstRow()
{
    int shadowed = 0;
    for (int row = 0; row < m_games.size(); ++row) {
        const QByteArray firstCode = firstGameCode(m_games[row].codes);
        QCOMPARE(firstCode.size(), 4);
        const int expected = firstRowWith(m_games, firstCode);
        QCOMPARE(foundRow(firstCode), expected);
        QVERIFY(expected <= row);
        shadowed += expected < row ? 1 : 0;
        for (const QByteArray &code : gameCodesIn(m_games[row].codes))
            QCOMPARE(foundRow(code), firstRowWith(m_games, code));
    }
    QCOMPARE(shadowed, 69);
}

void GameDatabaseTest::keysAreFoundAnywhereInTheCodes_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<int>("row");
    QTest::newRow("first code") << QByteArray("BQJE") << 0;
    QTest::newRow("second code") << QByteArray("BQJP") << 0;
    QTest::newRow("across two codes") << QByteArray("A, A") << 0;
    QTest::newRow("earlier of three rows") << QByteArray("AAQP") << 293;
    QTest::newRow("part of a code") << QByteArray("AW") << 2;
    QTest::newRow("longer prefix") << QByteArray("ZMAJ") << 101;
    QTest::newRow("blank behind a code") << QByteArray("ABJ ") << 274;
    QTest::newRow("part number") << QByteArray("TAKG") << 448;
    QTest::newRow("last row") << QByteArray("-006") << 2498;
    QTest::newRow("empty") << QByteArray("") << 0;
    QTest::newRow("small letters") << QByteArray("awrp") << -1;
    QTest::newRow("no such code") << QByteArray("ZZZZ") << -1;
    QTest::newRow("zero inside") << QByteArray("AW\0P", 4) << -1;
}

void GameDatabaseTest::keysAreFoundAnywhereInTheCodes()
{
    QFETCH(QByteArray, key);
    QFETCH(int, row);
    QCOMPARE(foundRow(key), row);
}

GBDRIVER_TEST(GameDatabaseTest, none)
#include "game_database_test.moc"
