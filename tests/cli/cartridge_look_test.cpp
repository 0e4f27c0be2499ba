// What a command knows before its job, and who told it: the cartridge in the reader of this
// process, the game table, the user.
#include "cli/cartridge_look.h"

#include "cart/setting_tables.h"
#include "cartridge_stack.h"
#include "cli/command_table.h"
#include "report_capture.h"
#include "test_class.h"

#include <QFileInfo>
#include <QtTest>

using namespace virtual_reader;

namespace
{

constexpr std::uint32_t kKibi = 1024;
constexpr std::uint32_t kMebi = 1024 * 1024;
constexpr int kManySearches = 1000;
constexpr int kMbc3 = 3;
constexpr int kMbc5 = 4;

QByteArray gbGame(std::uint8_t type, std::uint32_t ramSize)
{
    return stackedImage(GbImageSpec{type, 128 * kKibi, ramSize, "LOOKED AT", 1});
}

QByteArray gbaRom(const std::string &code)
{
    GbaImageSpec spec;
    spec.code = code;
    return stackedImage(spec);
}

// Every file of the reader's whose path ends so fails with this call.
DriveFault fault(DriveCall call, const char *pathEnd)
{
    DriveFault broken;
    broken.call = call;
    broken.pathEnd = pathEnd;
    broken.times = DriveFault::kForever;
    return broken;
}

} // namespace

class CartridgeLookTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_stack = std::make_unique<CartridgeStack>();
        m_options = CliOptions();
        m_options.request = CliRequest::ReadRam;
    }

    void cleanup()
    {
        m_stack.reset();
        m_faults.clear();
    }

    void everyValueHasItsSource_data()
    {
        QTest::addColumn<QByteArray>("image");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("GB header") << gbGame(0x1B, 8 * kKibi)
                                   << QStringList{"  system     gb               header",
                                                  "  mapper     mbc5             header",
                                                  "  ROM        131072 bytes     header",
                                                  "  save       8192 bytes       header"};
        // The window has codes 4 and 5 the other way round.
        QTest::newRow("RAM code 4") << gbGame(0x1B, 128 * kKibi)
                                    << QStringList{"  system     gb               header",
                                                   "  mapper     mbc5             header",
                                                   "  ROM        131072 bytes     header",
                                                   "  save       131072 bytes     header"};
        QTest::newRow("game table") << gbaRom("A9MP")
                                    << QStringList{"  system     gba              header",
                                                   "  ROM        4194304 bytes    game table",
                                                   "  save type  sram             game table",
                                                   "  save       32768 bytes      game table"};
        QTest::newRow("unknown game")
            << gbaRom("ZZZZ") << QStringList{"  system     gba              header"};
    }
    void everyValueHasItsSource()
    {
        QFETCH(QByteArray, image);
        QCOMPARE(look(image).code, ExitCode::Done);
        QVERIFY2(m_messages.contains("Using:\n"), qPrintable(m_messages));
        const QStringList lines =
            m_messages.section("Using:\n", 1).split('\n').filter(QRegularExpression("^  "));
        QTEST(lines, "lines");
    }

    void userWinsAndTheHeaderIsStillTold()
    {
        m_options.values.mapper = kMappers[kMbc3].value;
        m_options.values.ramSize = 32768;
        m_options.values.romSize = 131072;
        const CartridgeLook seen = look(gbGame(0x1B, 8 * kKibi));
        QCOMPARE(seen.code, ExitCode::Done);
        QCOMPARE(seen.values.mapper, m_options.values.mapper);
        QCOMPARE(seen.values.ramSize, m_options.values.ramSize);
        for (const char *line : {
                 "  system     gb               header\n",
                 "  mapper     mbc3             user: --mapper (the cartridge says mbc5)\n",
                 "  ROM        131072 bytes     user: --rom-size\n",
                 "  save       32768 bytes      user: --ram-size (the cartridge says 8192 bytes)\n",
             })
            QVERIFY2(m_messages.contains(line), qPrintable(m_messages));
    }

    void eventHasValuesAndSources()
    {
        m_style = OutputStyle::Json;
        m_options.values.ramSize = 32768;
        look(gbGame(0x1B, 8 * kKibi));
        m_style = OutputStyle::Text;
        const QJsonObject expected{
            {"event", "detected"},
            {"what", "cartridge"},
            {"title", "LOOKED AT"},
            {"system", "gb"},
            {"mapper", "mbc5"},
            {"romSize", 131072},
            {"ramSize", 32768},
            {"from", QJsonObject{{"system", "header"},
                                 {"mapper", "header"},
                                 {"romSize", "header"},
                                 {"ramSize", "user"}}},
            {"reader", QJsonObject{{"label", "VIRTUAL"}, {"firmware", "QDX_PCB02_FW303"}}}};
        QVERIFY2(m_objects.contains(expected), qPrintable(m_answers));
    }

    void contradictionIsRefused_data()
    {
        QTest::addColumn<QByteArray>("image");
        QTest::addColumn<int>("system");
        QTest::newRow("GB as GBA") << gbGame(0x1B, 8 * kKibi) << kSystemGba;
        QTest::newRow("GBA as GB") << gbaRom("A9MP") << kSystemGb;
        QTest::newRow("unknown GBA game as GB") << gbaRom("ZZZZ") << kSystemGb;
    }
    void contradictionIsRefused()
    {
        QFETCH(QByteArray, image);
        QFETCH(int, system);
        m_options.values.system = system;
        QCOMPARE(look(image).code, ExitCode::Refused);
        QVERIFY2(m_messages.contains("The cartridge is of another system than --system says; leave "
                                     "--system out. The cartridge was only looked at."),
                 qPrintable(m_messages));
        QVERIFY(!m_messages.contains("Using:"));
    }

    void saveThatNoJobCanMoveIsRefused_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("reason");
        QTest::newRow("MBC7") << 0x22 << "serial EEPROM";
        QTest::newRow("TAMA5") << 0xFD << "behind registers";
    }
    void saveThatNoJobCanMoveIsRefused()
    {
        QFETCH(int, type);
        QFETCH(QString, reason);
        const QByteArray image = gbGame(static_cast<std::uint8_t>(type), 0);
        for (const CliRequest request : {CliRequest::ReadRam, CliRequest::WriteRam}) {
            m_options.request = request;
            QCOMPARE(look(image).code, ExitCode::Refused);
            QVERIFY2(m_messages.contains(reason) &&
                         m_messages.contains("The cartridge was only looked at."),
                     qPrintable(m_messages));
        }
        m_options.request = CliRequest::Dump;
        QCOMPARE(look(image).code, ExitCode::Done);
    }

    void missingSaveMemoryIsRefusedUnlessTheUserKnowsBetter()
    {
        const QByteArray image = gbGame(0x19, 0);
        QCOMPARE(complete(look(image)), ExitCode::Refused);
        QVERIFY2(m_messages.contains("this cartridge has no save memory. If that is wrong, give "
                                     "--ram-size. The cartridge was only looked at."),
                 qPrintable(m_messages));
        m_options.values.ramSize = 8192;
        QCOMPARE(complete(look(image)), ExitCode::Done);
        QCOMPARE(m_job.ramSize, 8192);
        QCOMPARE(QFileInfo(m_job.scriptPath).fileName(), QString("gb_mbc5.nut"));
    }

    void unknownCartridgeNeedsTheUser_data()
    {
        QTest::addColumn<QByteArray>("image");
        QTest::addColumn<QString>("missing");
        QTest::newRow("empty slot")
            << QByteArray()
            << "No cartridge was recognised: push it in again, clean its contacts, or say what "
               "it is.\nMissing --system: one of gb, gba.";
        QTest::newRow("unknown GBA game")
            << gbaRom("ZZZZ")
            << "No table knows this GBA game, and its header tells no more.\n"
               "Missing --rom-size";
    }
    void unknownCartridgeNeedsTheUser()
    {
        QFETCH(QByteArray, image);
        QFETCH(QString, missing);
        m_options.request = CliRequest::Dump;
        const CartridgeLook seen = look(image);
        QCOMPARE(seen.code, ExitCode::Done); // the user may have said it all
        QCOMPARE(complete(seen), ExitCode::NotRecognised);
        QVERIFY2(m_messages.contains(missing), qPrintable(m_messages));
        QVERIFY2(m_messages.contains("Try \"gbdriver-cli dump --help\". The cartridge was only "
                                     "looked at."),
                 qPrintable(m_messages));
        m_options.values.system = kSystemGba;
        m_options.values.romSize = 4 * kMebi;
        QCOMPARE(complete(look(image)), ExitCode::Done);
        QCOMPARE(m_job.romSize, static_cast<int>(4 * kMebi));
    }

    void lookIsLeftOutOnRequest()
    {
        m_options.looks = false;
        m_options.values.system = kSystemGb;
        m_options.values.mapper = kMappers[kMbc5].value;
        const CartridgeLook seen = look(gbGame(0x22, 0)); // which would be refused
        QCOMPARE(seen.code, ExitCode::Done);
        QCOMPARE(m_stack->callCount(DriveCall::LogicalDrives), 0U);
        QVERIFY2(m_messages.contains("  mapper     mbc5             user: --mapper\n"),
                 qPrintable(m_messages));
        QCOMPARE(complete(seen), ExitCode::Usage);
        QVERIFY2(m_messages.contains("Missing --ram-size") &&
                     m_messages.contains("The cartridge was not touched."),
                 qPrintable(m_messages));
    }

    void readerThatFailsIsTold_data()
    {
        QTest::addColumn<int>("call");
        QTest::addColumn<QByteArray>("path");
        QTest::newRow("commands cannot be opened")
            << int(DriveCall::OpenForWrite) << QByteArray("CMD.CMD");
        QTest::newRow("commands cannot be written")
            << int(DriveCall::Write) << QByteArray("CMD.CMD");
        QTest::newRow("header cannot be read") << int(DriveCall::Read) << QByteArray("DUMP.ROM");
    }
    void readerThatFailsIsTold()
    {
        QFETCH(int, call);
        QFETCH(QByteArray, path);
        m_faults = {fault(static_cast<DriveCall>(call), path.constData())};
        QCOMPARE(look(gbGame(0x1B, 8 * kKibi)).code, ExitCode::NoAnswer);
        QVERIFY2(m_messages.contains("E:\\" + path), qPrintable(m_messages));
        QVERIFY2(m_messages.contains("The reader does not answer. Unplug it, plug it in again"),
                 qPrintable(m_messages));
        QVERIFY(!m_messages.contains("Using:"));
    }

    void missingReaderIsTold()
    {
        m_stack->setGone(true);
        QCOMPARE(look(gbGame(0x1B, 8 * kKibi)).code, ExitCode::NoReader);
        QVERIFY2(m_messages.contains("No reader was found. Plug it in"), qPrintable(m_messages));
        QVERIFY(!m_messages.contains("Using:"));
    }

    void doubtsStandBelowTheTable()
    {
        m_options.request = CliRequest::Dump;
        m_options.values.mapper = kMappers[kMbc5].value;
        QCOMPARE(look(gbGame(0xFD, 0)).code, ExitCode::Done);
        QVERIFY2(m_messages.section("Using:", 1).contains("give --mapper tama5."),
                 qPrintable(m_messages));
    }

private:
    CartridgeTask task() const { return *taskOf(m_options.request); }

    CartridgeLook look(const QByteArray &image)
    {
        ReportCapture capture(m_style);
        m_stack->put({{image, {}, kManySearches, m_faults}});
        const CartridgeLook seen = lookAtCartridge(m_options, task(), capture.reporter());
        m_answers = capture.answers();
        m_messages = capture.messages();
        if (m_style == OutputStyle::Json)
            m_objects = capture.objects();
        return seen;
    }

    ExitCode complete(const CartridgeLook &seen)
    {
        ReportCapture capture(OutputStyle::Text);
        const ExitCode code = makeLookedAtJob(m_options, task(), seen, capture.reporter(), &m_job);
        m_messages = capture.messages();
        return code;
    }

    std::unique_ptr<CartridgeStack> m_stack;
    std::vector<DriveFault> m_faults;
    CliOptions m_options;
    CartridgeJob m_job;
    OutputStyle m_style = OutputStyle::Text;
    QString m_answers;
    QString m_messages;
    QVector<QJsonObject> m_objects;
};

GBDRIVER_TEST(CartridgeLookTest, core)
#include "cartridge_look_test.moc"
