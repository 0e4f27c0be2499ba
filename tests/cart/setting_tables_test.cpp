// The choice tables row by row, and the look-ups over them.
#include "cart/setting_tables.h"

#include "test_class.h"

#include <QtTest>

namespace
{
struct ExpectedRow {
    int value;
    const char *label;
};

template <typename Table>
void compareTable(const Table &table, const std::vector<ExpectedRow> &expected)
{
    QCOMPARE(table.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        QCOMPARE(table[i].index, static_cast<int>(i));
        QCOMPARE(table[i].value, expected[i].value);
        QCOMPARE(table[i].label, expected[i].label);
    }
}

template <typename Table> void everyRowIsFound(const Table &table)
{
    for (const auto &row : table) {
        QCOMPARE(rowWithValue(table, row.value), row.index);
        QCOMPARE(rowWithLabel(table, row.label), row.index);
    }
}
} // namespace

class SettingTablesTest : public QObject
{
    Q_OBJECT

private slots:
    void systems() { compareTable(kSystems, {{0, "GB/GBC"}, {1, "GBA"}}); }

    void mappers()
    {
        compareTable(kMappers, {{0, "NONE"},
                                {1, "MBC1"},
                                {2, "MBC2"},
                                {3, "MBC3"},
                                {4, "MBC5"},
                                {5, "MBC7"},
                                {6, "TAMA5"}});
    }

    void mapperScripts()
    {
        const QStringList expected = {"gb_mbc0.nut", "gb_mbc1.nut", "gb_mbc2.nut", "gb_mbc3.nut",
                                      "gb_mbc5.nut", "gb_mbc7.nut", "gb_tama5.nut"};
        QStringList scripts;
        for (const MapperRow &row : kMappers)
            scripts << QString::fromLatin1(row.script);
        QCOMPARE(scripts, expected);
        QCOMPARE(kMappers[kMapperMbc5Row].label, "MBC5");
    }

    void gbRomSizes()
    {
        compareTable(kGbRomSizes, {{32768, "256 Kbit"},
                                   {65536, "512 Kbit"},
                                   {131072, "1 Mbit"},
                                   {262144, "2 Mbit"},
                                   {524288, "4 Mbit"},
                                   {1048576, "8 Mbit"},
                                   {2097152, "16 Mbit"},
                                   {4194304, "32 Mbit"},
                                   {8388608, "64 Mbit"}});
    }

    void gbRamSizes()
    {
        compareTable(
            kGbRamSizes,
            {{512, "512 B"}, {8192, "8 K"}, {32768, "32 K"}, {65536, "64 K"}, {131072, "128 K"}});
    }

    void gbaRomSizes()
    {
        compareTable(kGbaRomSizes, {{1048576, "8 Mb"},
                                    {2097152, "16 Mb"},
                                    {4194304, "32 Mb"},
                                    {8388608, "64 Mb"},
                                    {16777216, "128 Mb"},
                                    {33554432, "256 Mb"},
                                    {67108864, "512 Mb"}});
    }

    void gbaSaveTypes() { compareTable(kGbaSaveTypes, {{0, "SRAM"}, {1, "FLASH"}, {2, "EEP"}}); }

    void gbaSaveSizes()
    {
        compareTable(kGbaSaveSizes, {{0, "NONE"},
                                     {512, "512 B"},
                                     {8192, "8 K"},
                                     {32768, "32 K"},
                                     {65536, "64 K"},
                                     {131072, "128 K"}});
    }

    void offeredSaveSizesFollowTheSaveType_data()
    {
        QTest::addColumn<int>("saveType");
        QTest::addColumn<int>("first");
        QTest::newRow("SRAM") << 0 << 3;
        QTest::newRow("FLASH") << 1 << 4;
        QTest::newRow("EEP") << 2 << 1;
        QTest::newRow("beyond the last type") << 3 << kNoRow;
        QTest::newRow("negative") << -1 << kNoRow;
    }
    void offeredSaveSizesFollowTheSaveType()
    {
        QFETCH(int, saveType);
        QFETCH(int, first);
        QCOMPARE(offeredSaveSizes(saveType), first);
    }

    void everyRowIsFoundByValueAndLabel()
    {
        everyRowIsFound(kSystems);
        everyRowIsFound(kMappers);
        everyRowIsFound(kGbRomSizes);
        everyRowIsFound(kGbRamSizes);
        everyRowIsFound(kGbaRomSizes);
        everyRowIsFound(kGbaSaveTypes);
        everyRowIsFound(kGbaSaveSizes);
    }

    void unknownValuesAndLabelsHaveNoRow()
    {
        QCOMPARE(rowWithValue(kGbRamSizes, 2048), kNoRow);
        QCOMPARE(rowWithValue(kMappers, 7), kNoRow);
        QCOMPARE(rowWithValue(kMappers, -1), kNoRow);
        QCOMPARE(rowWithLabel(kMappers, "MBC"), kNoRow);
        QCOMPARE(rowWithLabel(kMappers, "MBC55"), kNoRow);
        QCOMPARE(rowWithLabel(kMappers, ""), kNoRow);
    }

    void labelsAreFoundInAnyCase()
    {
        QCOMPARE(rowWithLabel(kMappers, "mbc5"), 4);
        QCOMPARE(rowWithLabel(kMappers, "Tama5"), 6);
        QCOMPARE(rowWithLabel(kGbaSaveTypes, "flash"), 1);
    }

    void onlyLettersHaveACase()
    {
        QVERIFY(!sameLabel("[", "{"));
        QVERIFY(!sameLabel("@", "`"));
        QVERIFY(sameLabel("", ""));
    }

    void rowsOutsideATableAreNone()
    {
        QVERIFY(hasRow(kSystems, 0));
        QVERIFY(hasRow(kSystems, 1));
        QVERIFY(!hasRow(kSystems, 2));
        QVERIFY(!hasRow(kSystems, -1));
    }
};

GBDRIVER_TEST(SettingTablesTest, none)
#include "setting_tables_test.moc"
