// The Info action: the complete log of every outcome, the settings that it leaves, and jobs that
// use them.
#include "file_dialog_answer.h"
#include "log_check.h"
#include "reader_fixture.h"
#include "translators.h"

#include "test_class.h"
#include "ui/settings.h"
#include "virtual/image_generator.h"
#include "worker/famicom_thread.h"
#include "worker/log_text.h"

#include <QDir>
#include <QPushButton>
#include <QtTest>

#include <memory>

using namespace virtual_reader;

namespace
{
constexpr int kJobTimeoutMs = 60000;
const char kRule[] = "<hr><br>";

struct TypeRow {
    int code;
    const char *name;
    int mapper; // row of the settings
};

constexpr TypeRow kTypes[] = {
    {0x00, "ROM ONLY", 0},
    {0x01, "ROM+MBC1", 1},
    {0x02, "ROM+MBC1+RAM", 1},
    {0x03, "ROM+MBC1+RAM+BATT", 1},
    {0x05, "ROM+MBC2", 2},
    {0x06, "ROM+MBC2+BATTERY", 2},
    {0x08, "ROM+RAM", 0},
    {0x09, "ROM+RAM+BATTERY", 0},
    {0x0B, "ROM+MMMO1", 0},
    {0x0C, "ROM+MMMO1+SRAM", 0},
    {0x0D, "ROM+MMMO1+SRAM+BATT", 0},
    {0x0F, "ROM+MBC3+TIMER+BATT", 3},
    {0x10, "ROM+MBC3+TIMER+RAM+BAT", 3},
    {0x11, "ROM+MBC3", 3},
    {0x12, "ROM+MBC3+RAM", 3},
    {0x13, "ROM+MBC3+RAM+BATT", 3},
    {0x15, "ROM+MBC4", 4},
    {0x16, "ROM+MBC4+RAM", 4},
    {0x17, "ROM+MBC4+RAM+BATTERY", 4},
    {0x19, "ROM+MBC5", 4},
    {0x1A, "ROM+MBC5+RAM", 4},
    {0x1B, "ROM+MBC5+RAM+BATT", 4},
    {0x1C, "ROM+MBC5+RUMBLE", 4},
    {0x1D, "ROM+MBC5+RUMBLE+SRAM", 4},
    {0x1E, "ROM+MBC5+RUMBLE+SRAM+BATT", 4},
    {0x1F, "Pocket Camera", 4},
    {0x20, "Unknow Cartridge Type32", 4},
    {0x22, "ROM+MBC7+BATT", 5},
    {0x55, "GameGenie", 4},
    {0x56, "GameShark V3.0", 4},
    {0xFB, "Unknow Cartridge Type251", 4},
    {0xFC, "POCKET CAMERA", 4},
    {0xFD, "Bandai TAMA5", 4},
    {0xFE, "Hudson HuC-3", 4},
    {0xFF, "HuC1+RAM+BATTERY", 6},
};

QStringList gbLines(const QString &type, const QString &rom, const QString &ram)
{
    return {"--GB/GBC Cartridge information--",
            "Title: VIRTUAL",
            "Cart type: " + type,
            "ROM Size: " + rom,
            "RAM Size: " + ram,
            kRule};
}

// What a GB job would take, and what a GBA job would.
QList<int> gbValues(Settings *settings)
{
    return {settings->getSysType(), settings->getMbcType(), settings->getGbRomSize(),
            settings->getGbRamSize()};
}

QList<int> gbaValues(Settings *settings)
{
    return {settings->getSysType(), settings->getGbaRomSize(), settings->getGbaRamType(),
            settings->getGbaRamSize()};
}
} // namespace

class MainTabReportTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void gbTypes_data();
    void gbTypes();
    void gbRomSizes_data();
    void gbRomSizes();
    void gbRamSizes_data();
    void gbRamSizes();

    void gbaSaves_data();
    void gbaSaves();
    void gbaTextsAreLocal();
    void unknownGbaGame();
    void noCartridge();

    void firmwareNameWithoutEnd();
    void firmwareNameIsUtf8();
    void titlesWithMarkupAreShownAsTheyAre();
    void linesAreTranslatedForTheTab();
    void everyReportLooksAnew();

    void dumpTakesWhatWasDetected_data();
    void dumpTakesWhatWasDetected();
    void gbaDumpTakesWhatWasDetected();

private:
    void use(std::unique_ptr<Cartridge> cartridge, VirtualReaderConfig config = {});
    void pressInfo() { QTest::mouseClick(m_tab->infoButton, Qt::LeftButton); }
    void pressAndWait(QPushButton *button, const QString &path);

    std::unique_ptr<ReaderFixture> m_fixture;
    std::unique_ptr<MainTab> m_tab;
};

void MainTabReportTest::use(std::unique_ptr<Cartridge> cartridge, VirtualReaderConfig config)
{
    m_fixture = std::make_unique<ReaderFixture>(std::move(cartridge), std::move(config));
    m_tab = std::make_unique<MainTab>();
    m_tab->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_tab.get()));
}

void MainTabReportTest::cleanup()
{
    m_tab.reset();
    m_fixture.reset();
}

void MainTabReportTest::pressAndWait(QPushButton *button, const QString &path)
{
    FileDialogAnswer answer(path);
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(answer.wasAsked);
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(*m_tab), kJobTimeoutMs);
}

void MainTabReportTest::gbTypes_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("mapper");
    for (const TypeRow &row : kTypes)
        QTest::newRow(row.name) << row.code << row.name << row.mapper;
}

void MainTabReportTest::gbTypes()
{
    QFETCH(int, code);
    QFETCH(QString, name);
    QFETCH(int, mapper);
    static const QStringList kLabels = {"NONE", "MBC1", "MBC2", "MBC3", "MBC5", "MBC7", "TAMA5"};
    static const QStringList kScripts = {"gb_mbc0.nut", "gb_mbc1.nut", "gb_mbc2.nut", "gb_mbc3.nut",
                                         "gb_mbc5.nut", "gb_mbc7.nut", "gb_tama5.nut"};
    use(makeGbHeaderCartridge(code, 0, 0));
    m_tab->settings->selectSysType(1);
    pressInfo();
    // The RAM of MBC2 is inside the mapper.
    COMPARE_LOG(*m_tab, deviceLines() + gbLines(name, "32KB", mapper == 2 ? "512B" : "0B"));
    QCOMPARE(shownSettings(*m_tab->settings),
             (QStringList{"GB/GBC", kLabels[mapper], "256 Kbit", "512 B"}));
    QCOMPARE(gbValues(m_tab->settings), (QList<int>{0, mapper, 32768, 512}));
    QCOMPARE(m_tab->settings->getMbcScript(), kScripts[mapper]);
    QCOMPARE(m_fixture->traffic(), gbHeaderTraffic());
}

void MainTabReportTest::gbRomSizes_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("label");
    QTest::addColumn<int>("bytes");
    const char *const labels[] = {"256 Kbit", "512 Kbit", "1 Mbit",  "2 Mbit", "4 Mbit",
                                  "8 Mbit",   "16 Mbit",  "32 Mbit", "64 Mbit"};
    for (int code = 0; code < 9; ++code)
        QTest::addRow("code %d", code)
            << code << QString("%1KB").arg(32 << code) << labels[code] << (32768 << code);
    for (const int code : {0x52, 0x53, 0x54})
        QTest::addRow("code %d", code) << code << "2048KB"
                                       << "16 Mbit" << 2097152;
    for (const int code : {9, 0x51, 0x55, 0xFF})
        QTest::addRow("code %d", code) << code << "32KB"
                                       << "256 Kbit" << 32768;
}

void MainTabReportTest::gbRomSizes()
{
    QFETCH(int, code);
    QFETCH(QString, text);
    QFETCH(QString, label);
    QFETCH(int, bytes);
    use(makeGbHeaderCartridge(0x19, code, 0));
    pressInfo();
    COMPARE_LOG(*m_tab, deviceLines() + gbLines("ROM+MBC5", text, "0B"));
    QCOMPARE(shownSettings(*m_tab->settings), (QStringList{"GB/GBC", "MBC5", label, "512 B"}));
    QCOMPARE(gbValues(m_tab->settings), (QList<int>{0, 4, bytes, 512}));
}

void MainTabReportTest::gbRamSizes_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("label");
    QTest::addColumn<int>("bytes"); // of the settings; 512 where they do not offer the size
    QTest::newRow("none") << 0 << "0B"
                          << "512 B" << 512;
    QTest::newRow("2 KiB, not offered") << 1 << "2KB"
                                        << "512 B" << 512;
    QTest::newRow("8 KiB") << 2 << "8KB"
                           << "8 K" << 8192;
    QTest::newRow("32 KiB") << 3 << "32KB"
                            << "32 K" << 32768;
    QTest::newRow("64 KiB") << 4 << "64KB"
                            << "64 K" << 65536;
    QTest::newRow("128 KiB") << 5 << "128KB"
                             << "128 K" << 131072;
    QTest::newRow("256 KiB, not offered") << 6 << "256KB"
                                          << "512 B" << 512;
    QTest::newRow("512 bytes") << 7 << "512B"
                               << "512 B" << 512;
    QTest::newRow("1 MiB, not offered") << 8 << "1024KB"
                                        << "512 B" << 512;
    QTest::newRow("unknown code") << 10 << "0B"
                                  << "512 B" << 512;
}

void MainTabReportTest::gbRamSizes()
{
    QFETCH(int, code);
    QFETCH(QString, text);
    QFETCH(QString, label);
    QFETCH(int, bytes);
    use(makeGbHeaderCartridge(0x1B, 0, code));
    m_tab->settings->selectItem3(32768); // choosing the system takes this back
    pressInfo();
    COMPARE_LOG(*m_tab, deviceLines() + gbLines("ROM+MBC5+RAM+BATT", "32KB", text));
    QCOMPARE(shownSettings(*m_tab->settings), (QStringList{"GB/GBC", "MBC5", "256 Kbit", label}));
    QCOMPARE(gbValues(m_tab->settings), (QList<int>{0, 4, 32768, bytes}));
}

void MainTabReportTest::gbaSaves_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QStringList>("lines"); // title, year, publisher, ROM, RAM
    QTest::addColumn<QStringList>("labels");
    QTest::addColumn<QList<int>>("values");
    const auto add = [](const char *name, const char *code, const QStringList &lines,
                        const QStringList &labels, const QList<int> &values) {
        QTest::newRow(name) << code << lines << labels << values;
    };
    add("SRAM", "BVDJ", {"bit Generations - Boundish (Jpn)", "2006", "Nintendo", "4096KB", "32KB"},
        {"GBA", "32 Mb", "SRAM", "32 K"}, {1, 4194304, 0, 32768});
    add("EEPROM, 4 Kbit", "ALXP",
        {"Ace Lightning (Euro)", "2002", "BBC Worldwide", "4096KB", "512B"},
        {"GBA", "32 Mb", "EEP", "512 B"}, {1, 4194304, 2, 512});
    add("EEPROM, 64 Kbit", "AC4J",
        {"Meitantei Conan - Nerawareta Tantei (Jpn)", "2003", "Banpresto", "8192KB", "8KB"},
        {"GBA", "64 Mb", "EEP", "8 K"}, {1, 8388608, 2, 8192});
    add("EEPROM, unknown size", "ACZP", {"Comix Zone (Euro)", "2002", "Sega", "4096KB", "512B"},
        {"GBA", "32 Mb", "EEP", "512 B"}, {1, 4194304, 2, 512});
    add("flash, 512 Kbit", "A3UJ", {"Mother 3 (Jpn)", "2006", "Nintendo", "32768KB", "64KB"},
        {"GBA", "256 Mb", "FLASH", "64 K"}, {1, 33554432, 1, 65536});
    add("flash, 1 Mbit", "BIXJ", {"Calciobit (Jpn)", "2006", "Nintendo", "8192KB", "128KB"},
        {"GBA", "64 Mb", "FLASH", "128 K"}, {1, 8388608, 1, 131072});
    add("flash, unknown size", "AWRP",
        {"Advance Wars (Euro)", "2001", "Nintendo", "8192KB", "64KB"},
        {"GBA", "64 Mb", "FLASH", "64 K"}, {1, 8388608, 1, 65536});
    // Nothing fits 0 bytes, so the first size of the type stays.
    add("none known", "AC9E",
        {"Cartoon Network Block Party (USA)", "2004", "Majesco", "4096KB", "0B"},
        {"GBA", "32 Mb", "SRAM", "32 K"}, {1, 4194304, 0, 32768});
    add("second code of a row", "BQJP",
        {"2 Game Pack!: Hot Wheels - Stunt Track Challenge + Hot Wheels - World Race (Euro, USA)",
         "200?", "DSI Games", "16384KB", "0B"},
        {"GBA", "128 Mb", "SRAM", "32 K"}, {1, 16777216, 0, 32768});
}

void MainTabReportTest::gbaSaves()
{
    QFETCH(QString, code);
    QFETCH(QStringList, lines);
    use(makeGbaGame(code));
    pressInfo();
    COMPARE_LOG(*m_tab, deviceLines() +
                            QStringList({"--GBA Cartridge information--", "Title: " + lines[0],
                                         "Year: " + lines[1], "Publisher: " + lines[2],
                                         "ROM Size: " + lines[3], "RAM Size: " + lines[4], kRule}));
    QTEST(shownSettings(*m_tab->settings), "labels");
    QTEST(gbaValues(m_tab->settings), "values");
    QCOMPARE(m_fixture->traffic(), gbHeaderTraffic() + gbaHeaderTraffic());
}

// The table is UTF-8, but its texts are read in the system's own encoding: on Windows, whose code
// pages are others, accented letters come as two characters.
void MainTabReportTest::gbaTextsAreLocal()
{
    use(makeGbaGame("BPES"));
    pressInfo();
    const QString log = m_tab->console->toPlainText();
    const QString title = QString::fromLocal8Bit(u8"Pokémon - Edición Esmeralda (Spa)");
    QVERIFY2(log.contains("Title: " + title), qPrintable(log));
}

void MainTabReportTest::unknownGbaGame()
{
    use(makeGbaGame("ZZZZ"));
    pressInfo();
    COMPARE_LOG(*m_tab, deviceLines() + nothingFoundLines());
    QCOMPARE(shownSettings(*m_tab->settings), (QStringList{"GB/GBC", "MBC5", "256 Kbit", "512 B"}));
    QCOMPARE(m_fixture->traffic(), gbHeaderTraffic() + gbaHeaderTraffic());
}

void MainTabReportTest::noCartridge()
{
    use(nullptr);
    pressInfo();
    COMPARE_LOG(*m_tab, deviceLines() + nothingFoundLines());
    QCOMPARE(shownSettings(*m_tab->settings), (QStringList{"GB/GBC", "MBC5", "256 Kbit", "512 B"}));
    QCOMPARE(m_fixture->traffic(), gbHeaderTraffic() + gbaHeaderTraffic());
    QVERIFY(isIdle(*m_tab));
}

void MainTabReportTest::firmwareNameWithoutEnd()
{
    VirtualReaderConfig config;
    config.identity = "0123456789ABCDEF"; // all 16 bytes, no NUL
    use(nullptr, config);
    pressInfo();
    QStringList device = deviceLines();
    device[2] = "Device firmware: 0123456789ABCDEF";
    COMPARE_LOG(*m_tab, device + nothingFoundLines());
}

void MainTabReportTest::firmwareNameIsUtf8()
{
    VirtualReaderConfig config;
    config.identity = "FW \xC3\xA9\xE2\x82\xAC";
    use(nullptr, config);
    pressInfo();
    QStringList device = deviceLines();
    device[2] = QStringLiteral(u"Device firmware: FW \u00e9\u20ac");
    COMPARE_LOG(*m_tab, device + nothingFoundLines());
}

// The log takes markup; what a cartridge says of itself is none.
void MainTabReportTest::titlesWithMarkupAreShownAsTheyAre()
{
    GbImageSpec spec;
    spec.title = "<B>BOLD</B>";
    use(cartridgeOf(gbImage(spec)));
    pressInfo();
    QStringList lines = gbLines("ROM ONLY", "32KB", "0B");
    lines[1] = logText("Title: <B>BOLD</B>");
    COMPARE_LOG(*m_tab, deviceLines() + lines);
    QVERIFY(m_tab->console->toPlainText().contains("Title: <B>BOLD</B>\n"));
}

void MainTabReportTest::linesAreTranslatedForTheTab()
{
    use(makeGbHeaderCartridge(0x1B, 0, 7));
    MarkingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    pressInfo();
    m_fixture->reader().insertCartridge(makeGbaGame("ALXP"));
    pressInfo();
    const QStringList device = {"[MainTab]--Device information--", "[MainTab]Driver label: VIRTUAL",
                                "[MainTab]Device firmware: QDX_PCB02_FW303", "[MainTab]\r\n"};
    COMPARE_LOG(
        *m_tab,
        device +
            QStringList({"[MainTab]--GB/GBC Cartridge information--", "[MainTab]Title: VIRTUAL",
                         "[MainTab]Cart type: ROM+MBC5+RAM+BATT",
                         "[MainTab]ROM Size: 32[MainTab]KB", "[MainTab]RAM Size: 512[MainTab]B",
                         kRule}) +
            device +
            QStringList({"[MainTab]--GBA Cartridge information--",
                         "[MainTab]Title: Ace Lightning (Euro)", "[MainTab]Year: 2002",
                         "[MainTab]Publisher: BBC Worldwide", "[MainTab]ROM Size: 4096[MainTab]KB",
                         "[MainTab]RAM Size: 512[MainTab]B", kRule}));
}

void MainTabReportTest::everyReportLooksAnew()
{
    use(makeGbHeaderCartridge(0x03, 4, 3));
    pressInfo();
    QCOMPARE(gbValues(m_tab->settings), (QList<int>{0, 1, 524288, 32768}));

    m_fixture->reader().insertCartridge(makeGbaGame("AC4J"));
    pressInfo();
    QCOMPARE(gbaValues(m_tab->settings), (QList<int>{1, 8388608, 2, 8192}));

    m_fixture->reader().insertCartridge(makeGbHeaderCartridge(0x00, 0, 0));
    pressInfo();
    QCOMPARE(gbValues(m_tab->settings), (QList<int>{0, 0, 32768, 512}));
}

void MainTabReportTest::dumpTakesWhatWasDetected_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("romSize");
    QTest::addColumn<int>("ramSize");
    QTest::newRow("no mapper") << 0x00 << 32768 << 0;
    QTest::newRow("MBC1") << 0x03 << 524288 << 32768;
    QTest::newRow("MBC5") << 0x1B << 1048576 << 8192;
}

// With the scripts that come with the program, and no choice by the user.
void MainTabReportTest::dumpTakesWhatWasDetected()
{
    QFETCH(int, type);
    QFETCH(int, romSize);
    QFETCH(int, ramSize);
    use(makeGbCartridge(static_cast<std::uint8_t>(type), static_cast<std::uint32_t>(romSize),
                        static_cast<std::uint32_t>(ramSize)));
    m_tab->settings->selectSysType(1);
    pressInfo();
    ReaderFixture::addShippedScripts();

    pressAndWait(m_tab->dumpButton, m_fixture->path("dump.gb"));
    QVERIFY(m_fixture->fileBytes("dump.gb") == m_fixture->rom());
    if (ramSize == 0)
        return;
    pressAndWait(m_tab->readRamButton, m_fixture->path("dump.sav"));
    QCOMPARE(m_fixture->fileBytes("dump.sav"), m_fixture->save());
}

// The size that the table gives is dumped, whatever the cartridge holds.
void MainTabReportTest::gbaDumpTakesWhatWasDetected()
{
    constexpr char kScript[] = "function cpu_dump(dev, size, max)\n"
                               "{\n"
                               "    for (local at = 0; at < size; at += 0x20000)\n"
                               "        cpu_read(dev, at / 2, 0x20000);\n"
                               "}\n";
    constexpr int kRomSize = 4194304;
    use(makeGbaGame("ALXP", kRomSize));
    ReaderFixture::addScript("gba.nut", kScript);
    pressInfo();
    pressAndWait(m_tab->dumpButton, m_fixture->path("dump.gba"));

    const FamicomThread &job = *m_tab->worker;
    QCOMPARE(job.script_name, ReaderFixture::scriptPath("gba.nut"));
    QCOMPARE(job.operate, 4);
    QCOMPARE(job.rom_size, kRomSize);
    QCOMPARE(job.ram_size, 512);
    QCOMPARE(job.save_type, 2);
    QVERIFY(m_fixture->fileBytes("dump.gba") == m_fixture->rom());
}

GBDRIVER_TEST(MainTabReportTest, gui)
#include "main_tab_report_test.moc"
