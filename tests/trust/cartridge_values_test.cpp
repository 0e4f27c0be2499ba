// What a report says, what is taken from it, and what is doubted.
#include "trust/cartridge_values.h"

#include "cart/setting_tables.h"
#include "test_class.h"

#include <QtTest>

Q_DECLARE_METATYPE(CartridgeTask)
Q_DECLARE_METATYPE(CartridgeValues)
Q_DECLARE_METATYPE(Danger)
Q_DECLARE_METATYPE(QVector<Doubt>)

namespace
{

CartridgeReport gbReport(int mapper, int romSize, int ramSize)
{
    CartridgeReport report;
    report.outcome = ReportOutcome::GbCartridge;
    report.header.fill('\0', static_cast<int>(kReportedBytes));
    report.gb.mbcType = mapper;
    report.gb.romSize = romSize;
    report.gb.ramSize = ramSize;
    return report;
}

CartridgeReport gbaReport(int romSize, int saveSize, int saveType)
{
    CartridgeReport report;
    report.outcome = ReportOutcome::GbaCartridge;
    report.header.fill('\0', static_cast<int>(kReportedBytes));
    report.gba.romSize = romSize;
    report.gba.saveSize = saveSize;
    report.gba.saveType = saveType;
    return report;
}

// "system gb, mapper mbc1, ROM 131072 bytes, save 8192 bytes"; what is open is left out.
QString textOf(const CartridgeValues &values)
{
    QStringList parts;
    if (values.system)
        parts << (values.system == kSystemGba ? "system gba" : "system gb");
    if (values.mapper)
        parts << "mapper " + labelOf(kMappers, *values.mapper);
    if (values.romSize)
        parts << QString("ROM %1 bytes").arg(*values.romSize);
    if (values.saveType)
        parts << "save type " + labelOf(kGbaSaveTypes, *values.saveType);
    if (values.ramSize)
        parts << QString("save %1 bytes").arg(*values.ramSize);
    return parts.join(", ");
}

const CartridgeValues kNothing;
const CartridgeValues kGb = {kSystemGb, 4, 65536, 8192, {}};
const CartridgeValues kGba = {kSystemGba, {}, 4194304, 512, kSaveEeprom};

} // namespace

class CartridgeValuesTest : public QObject
{
    Q_OBJECT

private slots:
    void gbValues()
    {
        QCOMPARE(textOf(valuesFound(gbReport(1, 131072, 8192))),
                 QString("system gb, mapper mbc1, ROM 131072 bytes, save 8192 bytes"));
        const CartridgeValues values = valuesFound(gbReport(6, 32768, 0));
        QCOMPARE(*values.mapper, 6);
        QVERIFY(!values.ramSize);
        QVERIFY(!values.saveType);
    }

    // The report, which follows the window, has codes 4 and 5 the other way round.
    void saveSizesAreThoseOfTheCartridges_data()
    {
        QTest::addColumn<int>("mapper");
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("reported");
        QTest::addColumn<int>("found");
        QTest::newRow("8 KiB") << 4 << 2 << 8192 << 8192;
        QTest::newRow("32 KiB") << 4 << 3 << 32768 << 32768;
        QTest::newRow("128 KiB") << 4 << 4 << 65536 << 131072;
        QTest::newRow("64 KiB") << 4 << 5 << 131072 << 65536;
        QTest::newRow("built into the mapper") << 2 << 4 << 512 << 512;
    }
    void saveSizesAreThoseOfTheCartridges()
    {
        QFETCH(int, mapper);
        QFETCH(int, code);
        QFETCH(int, reported);
        CartridgeReport report = gbReport(mapper, 1048576, reported);
        report.header[0x149] = static_cast<char>(code);
        QTEST(*valuesFound(report).ramSize, "found");
    }

    // The report takes it for an MBC5.
    void tama5HasItsOwnMapper()
    {
        CartridgeReport report = gbReport(4, 524288, 0);
        report.header[0x147] = '\xFD';
        QCOMPARE(textOf(valuesFound(report)), QString("system gb, mapper tama5, ROM 524288 bytes"));
    }

    void gbaValues()
    {
        QCOMPARE(textOf(valuesFound(gbaReport(8388608, 131072, kSaveFlash))),
                 QString("system gba, ROM 8388608 bytes, save type flash, save 131072 bytes"));
        // Type SRAM of a game without a known save means nothing.
        const CartridgeValues values = valuesFound(gbaReport(8388608, 0, kSaveSram));
        QVERIFY(!values.mapper);
        QVERIFY(!values.ramSize);
        QVERIFY(!values.saveType);
    }

    void otherOutcomesFindNothing_data()
    {
        QTest::addColumn<int>("outcome");
        QTest::newRow("no reader") << static_cast<int>(ReportOutcome::NoReader);
        QTest::newRow("no mode") << static_cast<int>(ReportOutcome::NoMode);
        QTest::newRow("short read") << static_cast<int>(ReportOutcome::ShortRead);
        QTest::newRow("unknown") << static_cast<int>(ReportOutcome::Unknown);
    }
    void otherOutcomesFindNothing()
    {
        QFETCH(int, outcome);
        CartridgeReport report = gbReport(4, 65536, 8192);
        report.outcome = static_cast<ReportOutcome>(outcome);
        QCOMPARE(textOf(valuesFound(report)), QString());
    }

    void everyMapperIsNamed()
    {
        QStringList names;
        for (const MapperRow &row : kMappers)
            names << textOf({{}, row.value, {}, {}, {}});
        QCOMPARE(names, (QStringList{"mapper none", "mapper mbc1", "mapper mbc2", "mapper mbc3",
                                     "mapper mbc5", "mapper mbc7", "mapper tama5"}));
    }

    // Said, found, merged: each as textOf() has it.
    void saidWinsOverFound_data()
    {
        QTest::addColumn<CartridgeValues>("said");
        QTest::addColumn<CartridgeValues>("found");
        QTest::addColumn<QString>("merged");
        const auto add = [](const char *name, const CartridgeValues &said,
                            const CartridgeValues &found,
                            const char *merged) { QTest::newRow(name) << said << found << merged; };
        const char kGbText[] = "system gb, mapper mbc5, ROM 65536 bytes, save 8192 bytes";
        add("nothing said", kNothing, kGb, kGbText);
        add("nothing found", kGb, kNothing, kGbText);
        add("nothing at all", kNothing, kNothing, "");
        add("same system", {kSystemGb, {}, {}, {}, {}}, kGb, kGbText);
        add("mapper", {{}, 1, {}, {}, {}}, kGb,
            "system gb, mapper mbc1, ROM 65536 bytes, save 8192 bytes");
        add("mapper none", {{}, 0, {}, {}, {}}, kGb,
            "system gb, mapper none, ROM 65536 bytes, save 8192 bytes");
        add("ROM size", {{}, {}, 32768, {}, {}}, kGb,
            "system gb, mapper mbc5, ROM 32768 bytes, save 8192 bytes");
        add("RAM size", {{}, {}, {}, 32768, {}}, kGb,
            "system gb, mapper mbc5, ROM 65536 bytes, save 32768 bytes");
        add("save type", {{}, {}, {}, {}, kSaveSram}, kGba,
            "system gba, ROM 4194304 bytes, save type sram, save 512 bytes");
        add("other system", {kSystemGba, {}, {}, {}, {}}, kGb, "system gba");
        add("values without a system", {{}, 1, 32768, {}, {}}, kNothing,
            "mapper mbc1, ROM 32768 bytes");
    }
    void saidWinsOverFound()
    {
        QFETCH(CartridgeValues, said);
        QFETCH(CartridgeValues, found);
        QTEST(textOf(mergeValues(said, found)), "merged");
    }

    void doubtsAreToldWhereTheReportMisleads_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("ramCode");
        QTest::addColumn<CartridgeTask>("task");
        QTest::addColumn<int>("mapper");
        QTest::addColumn<int>("ramSize");
        QTest::addColumn<QVector<Doubt>>("doubts");
        const QVector<Doubt> none;
        QTest::newRow("TAMA5 as MBC5")
            << 0xFD << 0 << CartridgeTask::Dump << 4 << 0 << QVector<Doubt>{Doubt::Tama5AsMbc5};
        QTest::newRow("TAMA5") << 0xFD << 0 << CartridgeTask::Dump << 6 << 0 << none;
        QTest::newRow("MBC6") << 0x20 << 3 << CartridgeTask::Dump << 4 << 32768
                              << QVector<Doubt>{Doubt::Mbc6AsMbc5};
        QTest::newRow("MBC5") << 0x1B << 3 << CartridgeTask::ReadSave << 4 << 32768 << none;
    }
    void doubtsAreToldWhereTheReportMisleads()
    {
        QFETCH(int, type);
        QFETCH(int, ramCode);
        QFETCH(CartridgeTask, task);
        QFETCH(int, mapper);
        QFETCH(int, ramSize);
        CartridgeReport report = gbReport(mapper, 1048576, ramSize);
        report.header[0x147] = static_cast<char>(type);
        report.header[0x149] = static_cast<char>(ramCode);
        CartridgeValues used = valuesFound(report);
        used.mapper = mapper;
        QTEST(doubtsAbout(report, task, used), "doubts");
    }

    void unknownRomSizeIsToldFromTheSmallest()
    {
        CartridgeReport report = gbReport(4, 32768, 0);
        const auto doubtsOfDump = [&report](const CartridgeValues &used) {
            return doubtsAbout(report, CartridgeTask::Dump, used);
        };
        QCOMPARE(doubtsOfDump(valuesFound(report)), QVector<Doubt>());
        report.header[0x148] = 0x33;
        QCOMPARE(doubtsOfDump(valuesFound(report)), QVector<Doubt>{Doubt::UnknownRomSize});
        // It is about ROMs only.
        QCOMPARE(doubtsAbout(report, CartridgeTask::ReadSave, valuesFound(report)),
                 QVector<Doubt>());
        CartridgeValues said = valuesFound(report);
        said.romSize = 65536;
        QCOMPARE(doubtsOfDump(said), QVector<Doubt>());
    }

    void noDoubtsAboutAGbaCartridge()
    {
        CartridgeReport report = gbaReport(1048576, 65536, kSaveFlash);
        report.header[0x147] = '\xFD';
        report.header[0x149] = 4;
        CartridgeValues used = valuesFound(report);
        used.mapper = 4;
        QCOMPARE(doubtsAbout(report, CartridgeTask::ReadSave, used), QVector<Doubt>());
    }

    void savesThatNoJobCanMoveAreADanger_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<Danger>("danger");
        QTest::newRow("MBC6") << 0x20 << Danger::Mbc6Save;
        QTest::newRow("MBC7") << 0x22 << Danger::Mbc7Save;
        QTest::newRow("TAMA5") << 0xFD << Danger::Tama5Save;
        QTest::newRow("MBC5") << 0x1B << Danger::None;
        QTest::newRow("HuC1") << 0xFF << Danger::None;
    }
    void savesThatNoJobCanMoveAreADanger()
    {
        QFETCH(int, type);
        QFETCH(Danger, danger);
        CartridgeReport report = gbReport(4, 1048576, 8192);
        report.header[0x147] = static_cast<char>(type);
        QCOMPARE(dangerOf(report, CartridgeTask::ReadSave), danger);
        QCOMPARE(dangerOf(report, CartridgeTask::WriteSave), danger);
        QCOMPARE(dangerOf(report, CartridgeTask::Dump), Danger::None);
        QCOMPARE(dangerOf(report, CartridgeTask::Flash), Danger::None);
        // The byte means nothing in a GBA ROM.
        report.outcome = ReportOutcome::GbaCartridge;
        QCOMPARE(dangerOf(report, CartridgeTask::WriteSave), Danger::None);
    }

    void titleIsThatOfTheSystem()
    {
        CartridgeReport gb = gbReport(4, 65536, 0);
        gb.gb.title = "A GB GAME";
        QCOMPARE(titleOf(gb), QString("A GB GAME"));
        QVERIFY(isRecognised(gb));
        CartridgeReport gba = gbaReport(65536, 0, 0);
        gba.gba.title = "A GBA GAME";
        QCOMPARE(titleOf(gba), QString("A GBA GAME"));
        QVERIFY(isRecognised(gba));
        gb.outcome = ReportOutcome::ShortRead;
        QCOMPARE(titleOf(gb), QString());
        QVERIFY(!isRecognised(gb));
    }
};

GBDRIVER_TEST(CartridgeValuesTest, core)
#include "cartridge_values_test.moc"
