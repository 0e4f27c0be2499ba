// The cartridge report by itself: what it passes on and in which order, the sizes at its
// thresholds, what it returns, and who translates its texts.
#include "worker/cartridge_report.h"

#include "drive_faults.h"
#include "reader_bench.h"

#include "cart/setting_tables.h"
#include "test_class.h"
#include "translators.h"

#include <QCoreApplication>
#include <QtTest>

using namespace virtual_reader;

namespace
{

constexpr char kGbEightKibibytes = 2; // RAM size code
constexpr std::uint32_t kGbaLogoOffset = 0x04;

const QStringList kDevice = {"line --Device information--", "line Driver label: VIRTUAL",
                             "line Device firmware: QDX_PCB02_FW303", "line \r\n"};
const QStringList kNothingFound = {"line Can not auto detect cartridge information.",
                                   "line Maybe no insert cart or it's a black cart.",
                                   "line Also try:",
                                   "line  1.Turn off anti-virus software.",
                                   "line  2.Damaged or Dirty.",
                                   "line  3.Switch correct volte on dump board.",
                                   "line  4.Try again.",
                                   "rule"};

std::unique_ptr<Cartridge> makeGbWithRam(char ramCode)
{
    return makeGbHeaderCartridge(0, 0, ramCode);
}

QString itemText(const std::optional<int> &item)
{
    return item ? QString::number(*item) : "-";
}

// All that a report passes on goes to `events`: "line TEXT", "rule", "settings SYSTEM ITEM1 ITEM2
// ITEM3".
class ReportBench : public ReaderBench
{
public:
    using ReaderBench::ReaderBench;

    CartridgeReport report(const HeaderDecoders &decoders = {})
    {
        ReportOutput output;
        output.line = [this](const QString &text) { events << "line " + text; };
        output.rule = [this] { events << "rule"; };
        output.settings = [this](const DetectedSettings &detected) {
            events << QString("settings %1 %2 %3 %4")
                          .arg(detected.sysType)
                          .arg(itemText(detected.item1), itemText(detected.item2),
                               itemText(detected.item3));
        };
        const CartridgeReport report = makeCartridgeReport(output, decoders);
        events.removeAll("release");
        return report;
    }
};

// Decoders that find what a test wants to see printed.
std::int32_t foundSaveSize = 0;
std::int32_t foundRomSize = 0;

int findNoGb(const std::uint8_t *, GbHeaderInfo *)
{
    return 0;
}

int findGb(const std::uint8_t *, GbHeaderInfo *info)
{
    *info = {"T", "C", foundRomSize, foundSaveSize, 0};
    return 1;
}

int findGba(const std::uint8_t *, GbaHeaderInfo *info)
{
    *info = {"T", "2001", "P", "AGB-TTTT", foundRomSize, foundSaveSize, 0};
    return 1;
}

} // namespace

class CartridgeReportTest : public QObject
{
    Q_OBJECT

private slots:
    void gbSettingsComeAfterTheRule_data();
    void gbSettingsComeAfterTheRule();
    void gbaSettingsComeBeforeTheRule();
    void nothingFoundPassesNoSettings();
    void failuresEndWithoutARule_data();
    void failuresEndWithoutARule();
    void gbaLogoAloneSelectsTheSystem();

    void gbSaveSizesAtTheThreshold_data();
    void gbSaveSizesAtTheThreshold();
    void gbaSaveSizesAtTheThreshold_data();
    void gbaSaveSizesAtTheThreshold();

    void reportHoldsWhatWasSeen();
    void labelIsUtf8();
    void longestFirmwareNameIsWhole();
    void failedReadLeavesZeros();
    void unknownGameIsAGbaCartridge_data();
    void unknownGameIsAGbaCartridge();

    void textsBelongToTheMainTab();
};

void CartridgeReportTest::gbSettingsComeAfterTheRule_data()
{
    QTest::addColumn<char>("ramCode");
    QTest::addColumn<QString>("ram");
    QTest::addColumn<QString>("settings");
    QTest::newRow("with RAM") << kGbEightKibibytes << "8KB"
                              << "settings 0 0 32768 8192";
    QTest::newRow("without") << '\0' << "0B"
                             << "settings 0 0 32768 -";
}

void CartridgeReportTest::gbSettingsComeAfterTheRule()
{
    QFETCH(char, ramCode);
    QFETCH(QString, ram);
    QFETCH(QString, settings);
    ReportBench bench(makeGbWithRam(ramCode));
    const CartridgeReport report = bench.report();
    QVERIFY(report.outcome == ReportOutcome::GbCartridge);
    QCOMPARE(bench.events,
             kDevice + QStringList({"line --GB/GBC Cartridge information--", "line Title: VIRTUAL",
                                    "line Cart type: ROM ONLY", "line ROM Size: 32KB",
                                    "line RAM Size: " + ram, "rule", settings}));
}

void CartridgeReportTest::gbaSettingsComeBeforeTheRule()
{
    ReportBench bench(makeGbaGame("AC4J"));
    const CartridgeReport report = bench.report();
    QVERIFY(report.outcome == ReportOutcome::GbaCartridge);
    QCOMPARE(bench.events,
             kDevice + QStringList({"line --GBA Cartridge information--",
                                    "line Title: Meitantei Conan - Nerawareta Tantei (Jpn)",
                                    "line Year: 2003", "line Publisher: Banpresto",
                                    "line ROM Size: 8192KB", "line RAM Size: 8KB",
                                    "settings 1 8388608 2 8192", "rule"}));
}

void CartridgeReportTest::nothingFoundPassesNoSettings()
{
    ReportBench bench(nullptr);
    const CartridgeReport report = bench.report();
    QVERIFY(report.outcome == ReportOutcome::Unknown);
    QCOMPARE(bench.events, kDevice + kNothingFound);
}

void CartridgeReportTest::failuresEndWithoutARule_data()
{
    QTest::addColumn<int>("call"); // DriveCall that fails
    QTest::addColumn<int>("after");
    QTest::addColumn<int>("outcome");
    QTest::addColumn<QStringList>("events");
    const int mode = static_cast<int>(DriveCall::OpenForWrite);
    const int read = static_cast<int>(DriveCall::Read);
    const int noMode = static_cast<int>(ReportOutcome::NoMode);
    const int shortRead = static_cast<int>(ReportOutcome::ShortRead);
    const QStringList modeLines = kDevice + QStringList{"line Initialize device error."};
    const QStringList readLines = kDevice + QStringList{"line Read ROM error."};
    QTest::newRow("no reader") << -1 << 0 << static_cast<int>(ReportOutcome::NoReader)
                               << QStringList{"line Can not found dump device."};
    QTest::newRow("GB mode") << mode << 0 << noMode << modeLines;
    QTest::newRow("GB read") << read << 0 << shortRead << readLines;
    QTest::newRow("GBA mode") << mode << 2 << noMode << modeLines;
    QTest::newRow("GBA read") << read << 1 << shortRead << readLines;
}

void CartridgeReportTest::failuresEndWithoutARule()
{
    QFETCH(int, call);
    QFETCH(int, after);
    QFETCH(QStringList, events);
    ReportBench bench(makeGbaGame("AC4J"));
    bench.drive().setGone(call < 0);
    if (call >= 0)
        bench.drive().addFault({static_cast<DriveCall>(call),
                                call == static_cast<int>(DriveCall::Read) ? "DUMP.ROM" : "CMD.CMD",
                                static_cast<std::uint32_t>(after), DriveFault::kForever});
    const CartridgeReport report = bench.report();
    QCOMPARE(bench.events, events);
    QTEST(static_cast<int>(report.outcome), "outcome");
    QCOMPARE("line " + report.error, events.last());
    QVERIFY(!isUnknownGbaGame(report));
}

// What a decoder gets that tells a GBA cartridge of an unknown game from no cartridge.
void CartridgeReportTest::gbaLogoAloneSelectsTheSystem()
{
    ReportBench bench(nullptr);
    foundRomSize = 0;
    foundSaveSize = 8192;
    const CartridgeReport report = bench.report({findNoGb, findGba});
    QVERIFY(report.outcome == ReportOutcome::Unknown);
    QCOMPARE(bench.events,
             kDevice + QStringList({"line Detect GBA cartridge, but can not detect detail.",
                                    "settings 1 - - -", "rule"}));
}

void CartridgeReportTest::gbSaveSizesAtTheThreshold_data()
{
    QTest::addColumn<int>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << 0 << "0B";
    QTest::newRow("MBC2") << 512 << "512B";
    QTest::newRow("one less") << 1023 << "1023B";
    QTest::newRow("one kibibyte") << 1024 << "1KB";
    QTest::newRow("one more") << 1025 << "1KB";
    QTest::newRow("8 KiB") << 8192 << "8KB";
    QTest::newRow("unsigned") << -1024 << "4194303KB";
}

void CartridgeReportTest::gbSaveSizesAtTheThreshold()
{
    QFETCH(int, bytes);
    QFETCH(QString, text);
    ReportBench bench(nullptr);
    foundRomSize = 65536;
    foundSaveSize = bytes;
    bench.report({findGb, findGba});
    QCOMPARE(bench.events,
             kDevice + QStringList({"line --GB/GBC Cartridge information--", "line Title: T",
                                    "line Cart type: C", "line ROM Size: 64KB",
                                    "line RAM Size: " + text, "rule",
                                    "settings 0 0 65536 " +
                                        (bytes == 0 ? QString("-") : QString::number(bytes))}));
}

void CartridgeReportTest::gbaSaveSizesAtTheThreshold_data()
{
    QTest::addColumn<int>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << 0 << "0B";
    QTest::newRow("small EEPROM") << 512 << "512B";
    QTest::newRow("one less") << 1023 << "1023B";
    QTest::newRow("one kibibyte") << 1024 << "1024B";
    QTest::newRow("one more") << 1025 << "1KB";
    QTest::newRow("large EEPROM") << 8192 << "8KB";
    QTest::newRow("unsigned") << -1024 << "4194303KB";
}

void CartridgeReportTest::gbaSaveSizesAtTheThreshold()
{
    QFETCH(int, bytes);
    QFETCH(QString, text);
    ReportBench bench(nullptr);
    foundRomSize = 4194304;
    foundSaveSize = bytes;
    bench.report({findNoGb, findGba});
    QCOMPARE(bench.events,
             kDevice + QStringList({"line --GBA Cartridge information--", "line Title: T",
                                    "line Year: 2001", "line Publisher: P", "line ROM Size: 4096KB",
                                    "line RAM Size: " + text,
                                    QString("settings 1 4194304 0 %1").arg(bytes), "rule"}));
}

void CartridgeReportTest::reportHoldsWhatWasSeen()
{
    ReportBench bench(makeGbWithRam(kGbEightKibibytes));
    const CartridgeReport gb = bench.report();
    QCOMPARE(gb.label, QString("VIRTUAL"));
    QCOMPARE(gb.firmware, QString("QDX_PCB02_FW303"));
    QCOMPARE(gb.error, QString());
    QCOMPARE(gb.gb.title, QString("VIRTUAL"));
    QCOMPARE(gb.gb.ramSize, 8192);
    QCOMPARE(gb.gba.romSize, 0);
    QCOMPARE(gb.header, bench.rom().left(8192));

    // A new report starts from nothing.
    bench.reader().insertCartridge(makeGbaGame("ALXP"));
    const CartridgeReport gba = bench.report();
    QCOMPARE(gba.error, QString());
    QCOMPARE(gba.gb.title, QString());
    QCOMPARE(gba.gba.codes, QString("AGB-ALXP-UKV"));
    QCOMPARE(gba.gba.saveType, int(kSaveEeprom));
    QCOMPARE(gba.header, bench.rom().left(8192));
}

void CartridgeReportTest::labelIsUtf8()
{
    const QString label = QString::fromUtf8("Lesegerät 読");
    BenchSetup setup;
    setup.drive.label = label.toStdString();
    ReportBench bench(nullptr, setup);
    QCOMPARE(bench.report().label, label);
    QCOMPARE(bench.events[1], "line Driver label: " + label);
}

void CartridgeReportTest::longestFirmwareNameIsWhole()
{
    BenchSetup setup;
    setup.config.identity = "0123456789ABCDEF"; // all bytes, so that no zero ends it
    ReportBench bench(nullptr, setup);
    QCOMPARE(bench.report().firmware, QString("0123456789ABCDEF"));
    QCOMPARE(bench.events[2], QString("line Device firmware: 0123456789ABCDEF"));
}

void CartridgeReportTest::failedReadLeavesZeros()
{
    ReportBench bench(makeGbWithRam('\0'));
    bench.report();
    bench.drive().addFault(dumpOpenFault());
    const CartridgeReport report = bench.report();
    QVERIFY(report.outcome == ReportOutcome::ShortRead);
    QCOMPARE(report.header, QByteArray(8192, '\0'));
}

void CartridgeReportTest::unknownGameIsAGbaCartridge_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("isGba");
    QTest::newRow("unknown game") << "ZZZZ" << true;
    QTest::newRow("known game") << "ALXP" << false;
    QTest::newRow("last byte of the logo wrong") << "broken" << false;
    QTest::newRow("no cartridge") << "none" << false;
    QTest::newRow("GB cartridge") << "gb" << false;
}

void CartridgeReportTest::unknownGameIsAGbaCartridge()
{
    QFETCH(QString, kind);
    ByteVector image = gbaGame(kind.size() == 4 ? kind : "ZZZZ");
    if (kind == "broken")
        image[kGbaLogoOffset + 155] = 0;
    CartridgeOptions options;
    options.system = CartridgeSystem::Gba;
    auto cartridge = kind == "gb" ? makeGbWithRam('\0') : cartridgeOf(image, options);
    ReportBench bench(kind == "none" ? nullptr : std::move(cartridge));
    const CartridgeReport report = bench.report();
    QTEST(isUnknownGbaGame(report), "isGba");
    // The window says the same of all that it does not recognise.
    const bool isRecognised = kind == "ALXP" || kind == "gb";
    QCOMPARE(bench.events == kDevice + kNothingFound, !isRecognised);
    QCOMPARE(report.error,
             isRecognised ? QString() : QString("Can not auto detect cartridge information."));
}

void CartridgeReportTest::textsBelongToTheMainTab()
{
    RecordingTranslator recorder;
    QVERIFY(QCoreApplication::installTranslator(&recorder));
    ReportBench bench(makeGbWithRam(kGbEightKibibytes));
    bench.report();
    bench.reader().insertCartridge(makeGbaGame("ALXP"));
    bench.report();
    bench.reader().insertCartridge(nullptr);
    bench.report();
    foundRomSize = 0;
    bench.report({findNoGb, findGba});
    bench.drive().addFault(dumpOpenFault());
    bench.report();
    bench.drive().addFault(everyCommandFault());
    bench.report();
    bench.drive().setGone(true);
    bench.report();

    recorder.asked.removeDuplicates();
    recorder.asked.sort();
    QStringList expected;
    for (const char *text : {"Can not found dump device.",
                             "--Device information--",
                             "Driver label: ",
                             "Device firmware: ",
                             "\r\n",
                             "Initialize device error.",
                             "Read ROM error.",
                             "--GB/GBC Cartridge information--",
                             "Title: ",
                             "Cart type: ",
                             "ROM Size: ",
                             "RAM Size: ",
                             "KB",
                             "B",
                             "--GBA Cartridge information--",
                             "Year: ",
                             "Publisher: ",
                             "Detect GBA cartridge, but can not detect detail.",
                             "Can not auto detect cartridge information.",
                             "Maybe no insert cart or it's a black cart.",
                             "Also try:",
                             " 1.Turn off anti-virus software.",
                             " 2.Damaged or Dirty.",
                             " 3.Switch correct volte on dump board.",
                             " 4.Try again."})
        expected << QString("MainTab: ") + text;
    expected.sort();
    QCOMPARE(recorder.asked, expected);
}

GBDRIVER_TEST(CartridgeReportTest, core)
#include "cartridge_report_test.moc"
