// The cartridge report by itself: what it passes on and in which order, the sizes at its
// thresholds, what it returns, and who translates its texts.
#include "worker/cartridge_report.h"

#include "cart/setting_tables.h"
#include "device/device_link.h"
#include "device/device_ops.h"
#include "test_class.h"
#include "virtual/cartridge_factory.h"
#include "virtual/faulty_drive.h"
#include "virtual/gb_cartridges.h"
#include "virtual/image_generator.h"
#include "virtual/in_process_drive.h"

#include <QCoreApplication>
#include <QTranslator>
#include <QtTest>

#include <memory>

using namespace virtual_reader;

namespace
{

constexpr std::uint32_t kGbRamSizeOffset = 0x149;
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
                                   "line <hr><br>"};

ByteVector gbImage(char ramCode)
{
    ByteVector image;
    std::string error;
    if (!makeGbImage({}, &image, &error))
        qFatal("%s", error.c_str());
    image[kGbRamSizeOffset] = static_cast<std::uint8_t>(ramCode);
    return image;
}

ByteVector gbaImage(const char *code)
{
    GbaImageSpec spec;
    spec.code = code;
    spec.romSize = 64 * 1024;
    ByteVector image;
    std::string error;
    if (!makeGbaImage(spec, &image, &error))
        qFatal("%s", error.c_str());
    return image;
}

std::unique_ptr<Cartridge> makeGbCartridge(char ramCode)
{
    return std::make_unique<GbCartridge>(gbImage(ramCode), 0);
}

std::unique_ptr<Cartridge> makeGbaCartridge(const ByteVector &image)
{
    CartridgeOptions options;
    options.system = CartridgeSystem::Gba;
    std::string error;
    auto cartridge = makeCartridge(image, options, &error);
    if (!cartridge)
        qFatal("%s", error.c_str());
    return cartridge;
}

QString itemText(const std::optional<int> &item)
{
    return item ? QString::number(*item) : "-";
}

// A virtual reader as this process's drive, a device link that has not looked for it yet, and all
// that a report passes on: "line TEXT", "settings SYSTEM ITEM1 ITEM2 ITEM3".
class ReportBench
{
public:
    explicit ReportBench(std::unique_ptr<Cartridge> cartridge,
                         const InProcessDriveOptions &options = {}, VirtualReaderConfig config = {})
        : m_files(createPlatformBackend()),
          m_reader(
              std::make_unique<KeptReader>(std::move(cartridge), std::move(config), SaveFile()),
              *m_files, options),
          drive(m_reader)
    {
        deviceLink = DeviceLink();
        deviceOps = DeviceOps();
        setDriveBackend(&drive);
    }
    ~ReportBench() { setDriveBackend(nullptr); }

    CartridgeReport report(const HeaderDecoders &decoders = {})
    {
        ReportOutput output;
        output.line = [this](const QString &text) { events << "line " + text; };
        output.settings = [this](const DetectedSettings &detected) {
            events << QString("settings %1 %2 %3 %4")
                          .arg(detected.sysType)
                          .arg(itemText(detected.item1), itemText(detected.item2),
                               itemText(detected.item3));
        };
        return makeCartridgeReport(output, decoders);
    }

    void insert(std::unique_ptr<Cartridge> cartridge)
    {
        m_reader.reader().insertCartridge(std::move(cartridge));
    }

private:
    std::unique_ptr<DriveBackend> m_files;
    InProcessDrive m_reader;

public:
    FaultyDrive drive;
    QStringList events;
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

// Remembers what it was asked to translate, as "Context: text".
class RecordingTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        asked << QString("%1: %2").arg(context, text);
        return QString();
    }
    bool isEmpty() const override { return false; }

    mutable QStringList asked;
};

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
    ReportBench bench(makeGbCartridge(ramCode));
    const CartridgeReport report = bench.report();
    QVERIFY(report.outcome == ReportOutcome::GbCartridge);
    QCOMPARE(bench.events,
             kDevice + QStringList({"line --GB/GBC Cartridge information--", "line Title: VIRTUAL",
                                    "line Cart type: ROM ONLY", "line ROM Size: 32KB",
                                    "line RAM Size: " + ram, "line <hr><br>", settings}));
}

void CartridgeReportTest::gbaSettingsComeBeforeTheRule()
{
    ReportBench bench(makeGbaCartridge(gbaImage("AC4J")));
    const CartridgeReport report = bench.report();
    QVERIFY(report.outcome == ReportOutcome::GbaCartridge);
    QCOMPARE(bench.events,
             kDevice + QStringList({"line --GBA Cartridge information--",
                                    "line Title: Meitantei Conan - Nerawareta Tantei (Jpn)",
                                    "line Year: 2003", "line Publisher: Banpresto",
                                    "line ROM Size: 8192KB", "line RAM Size: 8KB",
                                    "settings 1 8388608 2 8192", "line <hr><br>"}));
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
    ReportBench bench(makeGbaCartridge(gbaImage("AC4J")));
    bench.drive.setGone(call < 0);
    if (call >= 0)
        bench.drive.addFault({static_cast<DriveCall>(call),
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
                                    "settings 1 - - -", "line <hr><br>"}));
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
                                    "line RAM Size: " + text, "line <hr><br>",
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
    QCOMPARE(
        bench.events,
        kDevice +
            QStringList({"line --GBA Cartridge information--", "line Title: T", "line Year: 2001",
                         "line Publisher: P", "line ROM Size: 4096KB", "line RAM Size: " + text,
                         QString("settings 1 4194304 0 %1").arg(bytes), "line <hr><br>"}));
}

void CartridgeReportTest::reportHoldsWhatWasSeen()
{
    const ByteVector rom = gbImage(kGbEightKibibytes);
    ReportBench bench(makeGbCartridge(kGbEightKibibytes));
    const CartridgeReport gb = bench.report();
    QCOMPARE(gb.label, QString("VIRTUAL"));
    QCOMPARE(gb.firmware, QString("QDX_PCB02_FW303"));
    QCOMPARE(gb.error, QString());
    QCOMPARE(gb.gb.title, QString("VIRTUAL"));
    QCOMPARE(gb.gb.ramSize, 8192);
    QCOMPARE(gb.gba.romSize, 0);
    QCOMPARE(gb.header, QByteArray(reinterpret_cast<const char *>(rom.data()), 8192));

    // A new report starts from nothing.
    const ByteVector gbaRom = gbaImage("ALXP");
    bench.insert(makeGbaCartridge(gbaRom));
    const CartridgeReport gba = bench.report();
    QCOMPARE(gba.error, QString());
    QCOMPARE(gba.gb.title, QString());
    QCOMPARE(gba.gba.codes, QString("AGB-ALXP-UKV"));
    QCOMPARE(gba.gba.saveType, int(kSaveEeprom));
    QCOMPARE(gba.header, QByteArray(reinterpret_cast<const char *>(gbaRom.data()), 8192));
}

void CartridgeReportTest::labelIsUtf8()
{
    const QString label = QString::fromUtf8("Lesegerät 読");
    InProcessDriveOptions options;
    options.label = label.toStdString();
    ReportBench bench(nullptr, options);
    QCOMPARE(bench.report().label, label);
    QCOMPARE(bench.events[1], "line Driver label: " + label);
}

void CartridgeReportTest::longestFirmwareNameIsWhole()
{
    VirtualReaderConfig config;
    config.identity = "0123456789ABCDEF"; // all bytes, so that no zero ends it
    ReportBench bench(nullptr, {}, config);
    QCOMPARE(bench.report().firmware, QString("0123456789ABCDEF"));
    QCOMPARE(bench.events[2], QString("line Device firmware: 0123456789ABCDEF"));
}

void CartridgeReportTest::failedReadLeavesZeros()
{
    ReportBench bench(makeGbCartridge('\0'));
    bench.report();
    bench.drive.addFault({DriveCall::OpenForRead, "DUMP.ROM"});
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
    ByteVector image = gbaImage(kind.size() == 4 ? qPrintable(kind) : "ZZZZ");
    if (kind == "broken")
        image[kGbaLogoOffset + 155] = 0;
    auto cartridge = makeGbaCartridge(image);
    if (kind == "gb")
        cartridge = makeGbCartridge('\0');
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
    ReportBench bench(makeGbCartridge(kGbEightKibibytes));
    bench.report();
    bench.insert(makeGbaCartridge(gbaImage("ALXP")));
    bench.report();
    bench.insert(nullptr);
    bench.report();
    foundRomSize = 0;
    bench.report({findNoGb, findGba});
    bench.drive.addFault({DriveCall::OpenForRead, "DUMP.ROM"});
    bench.report();
    bench.drive.addFault({DriveCall::OpenForWrite, "CMD.CMD", 0, DriveFault::kForever});
    bench.report();
    bench.drive.setGone(true);
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
