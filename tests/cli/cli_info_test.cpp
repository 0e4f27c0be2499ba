// The command "info" of the built program: lines, JSON, checksums and exit codes for every kind of
// cartridge.
#include "program_run.h"
#include "test_class.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace
{

constexpr std::uint32_t kRomSize = 128 * 1024;
constexpr std::uint32_t kRamSize = 32 * 1024;
constexpr int kGbColourFlag = 0x143;
constexpr int kGbHeaderChecksum = 0x14D;
constexpr int kGbGlobalChecksum = 0x14E;
constexpr int kGbaComplement = 0xBD;

const char kDeviceText[] = "--Device information--\n"
                           "Driver label: VIRTUAL\n"
                           "Device firmware: QDX_PCB02_FW303\n"
                           "\n";
const char kGbText[] = "--GB/GBC Cartridge information--\n"
                       "Title: VIRTUAL\n"
                       "Cart type: ROM+MBC5+RAM+BATT\n"
                       "ROM Size: 128KB\n"
                       "RAM Size: 32KB\n";
const char kNothingText[] = "Can not auto detect cartridge information.\n"
                            "Maybe no insert cart or it's a black cart.\n"
                            "Also try:\n"
                            " 1.Turn off anti-virus software.\n"
                            " 2.Damaged or Dirty.\n"
                            " 3.Switch correct volte on dump board.\n"
                            " 4.Try again.\n";

const QJsonObject kReader = {{"label", "VIRTUAL"}, {"firmware", "QDX_PCB02_FW303"}};

// One more in the byte at `offset`.
void raise(QByteArray *image, int offset)
{
    (*image)[offset] = static_cast<char>(image->at(offset) + 1);
}

QByteArray toJson(const QJsonObject &object)
{
    return QJsonDocument(object).toJson();
}

} // namespace

class CliInfoTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void gbChecksums_data()
    {
        QTest::addColumn<QString>("damage");
        QTest::addColumn<QString>("header");
        QTest::addColumn<QString>("global");
        QTest::newRow("none") << ""
                              << "right"
                              << "right";
        QTest::newRow("header checksum") << "header"
                                         << "wrong"
                                         << "right";
        QTest::newRow("high byte of the global one") << "high"
                                                     << "right"
                                                     << "wrong";
        QTest::newRow("low byte of the global one") << "low"
                                                    << "right"
                                                    << "wrong";
        QTest::newRow("last byte of the ROM") << "last"
                                              << "right"
                                              << "wrong";
        QTest::newRow("colour flag") << "flag"
                                     << "wrong"
                                     << "wrong";
    }
    void gbChecksums()
    {
        QFETCH(QString, damage);
        QFETCH(QString, header);
        QFETCH(QString, global);
        QByteArray image = mbc5Image(kRomSize, kRamSize);
        if (damage == "header") {
            raise(&image, kGbHeaderChecksum);
            image = withGlobalChecksum(image);
        } else if (damage == "flag") {
            image[kGbColourFlag] = '\x80'; // behind the text, which stays as it is
        } else if (!damage.isEmpty()) {
            raise(&image, damage == "high"  ? kGbGlobalChecksum
                          : damage == "low" ? kGbGlobalChecksum + 1
                                            : image.size() - 1);
        }
        insert(image);
        const ProgramResult result = info("");
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        QCOMPARE(result.out, kDeviceText + QString(kGbText) + "Header checksum: " + header +
                                 "\nGlobal checksum: " + global + '\n');

        const QJsonObject object = json(info("--json"));
        QCOMPARE(object["headerChecksum"].toString(), header);
        QCOMPARE(object["globalChecksum"].toString(), global);
    }

    // The whole ROM is read for the global checksum; that is shown, but not as a job's log.
    void readingTheRomShowsProgress()
    {
        insert(mbc5Image(kRomSize, kRamSize));
        const ProgramResult result = info("");
        QVERIFY2(result.err.contains("] 100%  128.0 KiB of 128.0 KiB"), qPrintable(result.err));
        QVERIFY2(!result.err.contains("Start dump rom"), qPrintable(result.err));
    }

    void quickLeavesTheRomAlone()
    {
        insert(mbc5Image(kRomSize, kRamSize));
        const ProgramResult result = info("--quick");
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.err, QString());
        QCOMPARE(result.out, kDeviceText + QString(kGbText) +
                                 "Header checksum: right\nGlobal checksum: not checked\n");
        QCOMPARE(json(info("--quick --json"))["globalChecksum"].toString(), QString("not checked"));
    }

    // Without its script the ROM stays unread; everything else is said all the same.
    void romThatCanNotBeReadIsNotChecked()
    {
        insert(mbc5Image(kRomSize, kRamSize));
        const QString program = path("gbdriver-cli");
        QVERIFY(QFile::copy(CLI_PROGRAM, program));
        const ProgramResult result = runProgram(program, QString("info"), reader());
        QCOMPARE(codeOf(result), ExitCode::FileError);
        QCOMPARE(result.out, kDeviceText + QString(kGbText) +
                                 "Header checksum: right\n"
                                 "Global checksum: not checked, the ROM can not be read\n");
        QVERIFY2(result.err.contains("There is no mapper script"), qPrintable(result.err));
    }

    void gbAsJson()
    {
        insert(mbc5Image(kRomSize, kRamSize));
        QCOMPARE(toJson(json(info("--json"))), toJson({{"event", "detected"},
                                                       {"what", "cartridge"},
                                                       {"reader", kReader},
                                                       {"system", "gb"},
                                                       {"title", "VIRTUAL"},
                                                       {"type", "ROM+MBC5+RAM+BATT"},
                                                       {"mapper", "mbc5"},
                                                       {"romSize", 131072},
                                                       {"ramSize", 32768},
                                                       {"headerChecksum", "right"},
                                                       {"globalChecksum", "right"}}));
    }

    void gbWithoutRam()
    {
        insert(gbImage(0x00, 32 * 1024, 0));
        const ProgramResult result = info("");
        QCOMPARE(result.exitCode, 0);
        QVERIFY2(result.out.contains("Cart type: ROM ONLY\nROM Size: 32KB\nRAM Size: 0B\n"),
                 qPrintable(result.out));
        const QJsonObject object = json(info("--json --quick"));
        QCOMPARE(object["mapper"].toString(), QString("none"));
        QCOMPARE(object["ramSize"].toInt(-1), 0);
    }

    void gbaGame_data()
    {
        QTest::addColumn<bool>("isRight");
        QTest::newRow("right complement") << true;
        QTest::newRow("wrong complement") << false;
    }
    void gbaGame()
    {
        QFETCH(bool, isRight);
        const QString check = isRight ? "right" : "wrong";
        QByteArray image = gbaImage("ALXP", 64 * 1024);
        if (!isRight)
            raise(&image, kGbaComplement);
        insert(image);
        const ProgramResult result = info("");
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.err, QString());
        QCOMPARE(result.out, QString(kDeviceText) +
                                 "--GBA Cartridge information--\n"
                                 "Title: Ace Lightning (Euro)\n"
                                 "Year: 2002\n"
                                 "Publisher: BBC Worldwide\n"
                                 "ROM Size: 4096KB\n"
                                 "RAM Size: 512B\n"
                                 "Complement check: " +
                                 check + '\n');
        QCOMPARE(toJson(json(info("--json"))), toJson({{"event", "detected"},
                                                       {"what", "cartridge"},
                                                       {"reader", kReader},
                                                       {"system", "gba"},
                                                       {"title", "Ace Lightning (Euro)"},
                                                       {"year", "2002"},
                                                       {"publisher", "BBC Worldwide"},
                                                       {"codes", "AGB-ALXP-UKV"},
                                                       {"romSize", 4194304},
                                                       {"ramSize", 512},
                                                       {"saveType", "eep"},
                                                       {"headerTitle", "VIRTUAL"},
                                                       {"headerCode", "ALXP"},
                                                       {"complementCheck", check}}));
    }

    void gbaSaveTypesAsJson_data()
    {
        QTest::addColumn<QString>("saveType");
        QTest::addColumn<int>("ramSize");
        QTest::newRow("BVDJ") << "sram" << 32768;
        QTest::newRow("AC4J") << "eep" << 8192;
        QTest::newRow("AWRP") << "flash" << 65536;
        QTest::newRow("BIXJ") << "flash" << 131072;
        QTest::newRow("AC9E") << "" << 0; // not known: no key
    }
    void gbaSaveTypesAsJson()
    {
        QFETCH(QString, saveType);
        insert(gbaImage(QTest::currentDataTag(), 64 * 1024));
        const QJsonObject object = json(info("--json"));
        QCOMPARE(object.contains("saveType"), !saveType.isEmpty());
        QCOMPARE(object["saveType"].toString(), saveType);
        QTEST(object["ramSize"].toInt(-1), "ramSize");
    }

    // The table's texts are read in the system's own encoding, which is UTF-8 on Linux.
    void titlesAreLocal()
    {
        insert(gbaImage("BPES", 64 * 1024));
        const QString title = QString::fromLocal8Bit(u8"Pokémon - Edición Esmeralda (Spa)");
        QVERIFY(info("").out.contains("Title: " + title + '\n'));
        QCOMPARE(json(info("--json"))["title"].toString(), title);
    }

    void unknownGbaGame()
    {
        insert(gbaImage("ZZZZ", 64 * 1024));
        const ProgramResult result = info("");
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.out, QString(kDeviceText) + kNothingText +
                                 "\n"
                                 "It is a GBA cartridge with an unknown game.\n"
                                 "Game code: ZZZZ\n"
                                 "Header title: VIRTUAL\n"
                                 "Complement check: right\n");
        QCOMPARE(toJson(json(info("--json"))), toJson({{"event", "detected"},
                                                       {"what", "cartridge"},
                                                       {"reader", kReader},
                                                       {"system", "gba"},
                                                       {"headerTitle", "VIRTUAL"},
                                                       {"headerCode", "ZZZZ"},
                                                       {"complementCheck", "right"}}));
    }

    void noCartridge()
    {
        const ReaderChoice empty = {"cart=none", ""};
        const ProgramResult result = runProgram(CLI_PROGRAM, QString("info"), empty);
        QCOMPARE(codeOf(result), ExitCode::NotRecognised);
        QCOMPARE(result.err, QString("No cartridge was recognised. Push it in again, clean its "
                                     "contacts. It was only looked at.\n"));
        QCOMPARE(result.out, QString(kDeviceText) + kNothingText);
        const ProgramResult asJson = runProgram(CLI_PROGRAM, QString("info --json"), empty);
        QCOMPARE(codeOf(asJson), ExitCode::NotRecognised);
        QCOMPARE(toJson(detectedIn(asJson)),
                 toJson({{"event", "detected"},
                         {"what", "cartridge"},
                         {"reader", kReader},
                         {"error", "Can not auto detect cartridge information."}}));
    }

    void noReader_data()
    {
        QTest::addColumn<QString>("words");
        QTest::addColumn<QString>("virtualReader");
        QTest::addColumn<QString>("drives");
        QTest::newRow("no drive") << ""
                                  << ""
                                  << ";";
        QTest::newRow("another drive asked for") << " --drive F"
                                                 << "demo"
                                                 << "";
    }
    void noReader()
    {
        QFETCH(QString, words);
        QFETCH(QString, virtualReader);
        QFETCH(QString, drives);
        const ReaderChoice choice = {virtualReader, drives};
        const ProgramResult result = runProgram(CLI_PROGRAM, "info" + words, choice);
        QCOMPARE(codeOf(result), ExitCode::NoReader);
        QCOMPARE(result.out, QString("Can not found dump device.\n"));
        QVERIFY2(result.err.startsWith("No reader was found. Plug it in"), qPrintable(result.err));
        const ProgramResult asJson = runProgram(CLI_PROGRAM, "info --json" + words, choice);
        QCOMPARE(codeOf(asJson), ExitCode::NoReader);
        QCOMPARE(toJson(detectedIn(asJson)), toJson({{"event", "detected"},
                                                     {"what", "cartridge"},
                                                     {"error", "Can not found dump device."}}));
    }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    ReaderChoice reader() const { return {"cart=" + path("cart"), ""}; }
    void insert(const QByteArray &image) { QVERIFY(writeFile(path("cart"), image)); }

    ProgramResult info(const QString &words) const
    {
        return runProgram(CLI_PROGRAM, "info " + words, reader());
    }

    // The one event "detected". Every line of standard output must be a JSON object.
    static QJsonObject detectedIn(const ProgramResult &result)
    {
        QVector<QJsonObject> found;
        // The program prints UTF-8, whatever the encoding that the output was read in.
        for (const QByteArray &line : result.out.toLocal8Bit().split('\n')) {
            const QJsonObject object = QJsonDocument::fromJson(line).object();
            if (object.isEmpty() && !line.isEmpty())
                qWarning("no JSON object: %s", line.constData());
            if (object["event"] == "detected")
                found << object;
        }
        return found.size() == 1 ? found[0] : QJsonObject();
    }

    static QJsonObject json(const ProgramResult &result)
    {
        if (result.exitCode != 0)
            qWarning("exit code %d: %s", result.exitCode, qPrintable(result.err));
        return detectedIn(result);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

GBDRIVER_TEST(CliInfoTest, core)
#include "cli_info_test.moc"
