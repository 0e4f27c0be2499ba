// From the report to the values of a job.
#include "cli/cli_detection.h"

#include "cart/setting_tables.h"
#include "cli/cli_command.h"
#include "test_class.h"
#include "worker/famicom_thread.h"

#include <QtTest>

Q_DECLARE_METATYPE(CartridgeValues)

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

class CliDetectionTest : public QObject
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

    void foundValuesMakeAJob()
    {
        CliJob job;
        QString problem;
        QVERIFY(completeJob(*findCliCommand("write-ram"), "f", kGba, &job, &problem));
        QCOMPARE(job.operate, int(GBA_WRITE_RAM));
        QCOMPARE(job.scriptName, QString("gba.nut"));
        QCOMPARE(job.fileName, QString("f"));
        QCOMPARE(job.romSize, 0);
        QCOMPARE(job.ramSize, 512);
        QCOMPARE(job.saveType, int(kSaveEeprom));
        QVERIFY(completeJob(*findCliCommand("dump"), "f", kGb, &job, &problem));
        QCOMPARE(job.operate, int(GB_READ_ROM));
        QCOMPARE(job.scriptName, QString("gb_mbc5.nut"));
        QCOMPARE(job.romSize, 65536);
        QCOMPARE(problem, QString());
    }

    void commandsAreFoundByTheirWholeName()
    {
        for (const char *name : {"dump", "read-ram", "write-ram"})
            QVERIFY2(findCliCommand(name) != nullptr, name);
        for (const char *name : {"", "info", "Dump", "dum", "dumps"})
            QVERIFY2(findCliCommand(name) == nullptr, name);
    }

    void doubtsAreToldWhereTheReportMisleads_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("ramCode");
        QTest::addColumn<QString>("command");
        QTest::addColumn<int>("mapper");
        QTest::addColumn<int>("ramSize");
        QTest::addColumn<QString>("advice"); // empty: no doubt
        QTest::newRow("TAMA5 as MBC5") << 0xFD << 0 << "dump" << 4 << 0 << "--mapper tama5";
        QTest::newRow("TAMA5") << 0xFD << 0 << "dump" << 6 << 0 << "";
        QTest::newRow("MBC6") << 0x20 << 3 << "dump" << 4 << 32768 << "no script can read";
        QTest::newRow("MBC5") << 0x1B << 3 << "read-ram" << 4 << 32768 << "";
    }
    void doubtsAreToldWhereTheReportMisleads()
    {
        QFETCH(int, type);
        QFETCH(int, ramCode);
        QFETCH(QString, command);
        QFETCH(int, mapper);
        QFETCH(int, ramSize);
        QFETCH(QString, advice);
        CartridgeReport report = gbReport(mapper, 1048576, ramSize);
        report.header[0x147] = static_cast<char>(type);
        report.header[0x149] = static_cast<char>(ramCode);
        const CliCommand *found = findCliCommand(command);
        QVERIFY(found != nullptr);
        CartridgeValues used = valuesFound(report);
        used.mapper = mapper;
        const QStringList doubts = doubtsAbout(report, *found, used);
        QCOMPARE(doubts.size(), advice.isEmpty() ? 0 : 1);
        QVERIFY(doubts.join("").contains(advice));
    }

    void unknownRomSizeIsToldFromTheSmallest()
    {
        CartridgeReport report = gbReport(4, 32768, 0);
        const CliCommand &dump = *findCliCommand("dump");
        QVERIFY(doubtsAbout(report, dump, valuesFound(report)).isEmpty());
        report.header[0x148] = 0x33;
        QVERIFY(doubtsAbout(report, dump, valuesFound(report)).join("").contains("--rom-size"));
        CartridgeValues said = valuesFound(report);
        said.romSize = 65536;
        QVERIFY(doubtsAbout(report, dump, said).isEmpty());
    }

    void noDoubtsAboutAGbaCartridge()
    {
        CartridgeReport report = gbaReport(1048576, 65536, kSaveFlash);
        report.header[0x147] = '\xFD';
        report.header[0x149] = 4;
        CartridgeValues used = valuesFound(report);
        used.mapper = 4;
        QVERIFY(doubtsAbout(report, *findCliCommand("read-ram"), used).isEmpty());
    }
};

GBDRIVER_TEST(CliDetectionTest, core)
#include "cli_detection_test.moc"
