// The verdicts of the built program, each on a cartridge or a file that deserves it: what it says, to
// people and as an event, its exit code, and the name that the file gets.
#include "program_run.h"
#include "test_class.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace
{

constexpr std::uint32_t kKibi = 1024;
constexpr std::uint32_t kRomSize = 128 * kKibi;
constexpr std::uint32_t kRamSize = 32 * kKibi;
constexpr int kLogoOffset = 0x104;
constexpr int kRomSizeCode = 0x148;
constexpr char k256Kibi = 3; // as a size code
constexpr int kHeaderChecksum = 0x14D;
constexpr int kGbaComplement = 0xBD;

const char kConsistent[] = "consistent: logo, header checksum and checksum over the whole ROM are "
                           "right; 2 equal reads; not a known dump";
const char kGbaUnverified[] =
    "unverified: not a known dump; such a ROM has no checksum over all of its bytes";
const char kAllSaid[] = " --no-auto --system gb --mapper mbc5 --rom-size 128K";

QByteArray sha1Of(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex();
}

// One more in the byte at `offset`.
QByteArray raised(QByteArray image, int offset)
{
    image[offset] = static_cast<char>(image.at(offset) + 1);
    return image;
}

// A table of known dumps with one row.
QByteArray datOf(const QByteArray &image)
{
    return "<?xml version=\"1.0\"?>\n"
           "<datafile><header><name>Our games</name></header>\n"
           "<game name=\"A Game (World)\"><rom name=\"A Game (World).gb\" size=\"" +
           QByteArray::number(image.size()) + "\" sha1=\"" + sha1Of(image) +
           "\"/></game></datafile>\n";
}

} // namespace

Q_DECLARE_METATYPE(ExitCode)

class CliVerdictTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        QVERIFY(writeFile(path("games.dat"), datOf(mbc5Image(kRomSize, kRamSize))));
    }

    void dumpIsJudged_data();
    void dumpIsJudged();
    void saveIsJudged_data();
    void saveIsJudged();
    void fileIsJudged_data();
    void fileIsJudged();
    void unstableReadTakesNoName();
    void everyUnstableReadIsKept();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

    // Runs the command, once as people do and once as programs do, and compares what is said of the
    // file with the verdict that the row expects.
    void check(const QString &words, const QString &reader, const QString &file, int reads);
    static void checkEvents(const ProgramResult &result, const QString &summary,
                            const QString &file, int reads);
    QStringList leftovers() const { return QDir(path("")).entryList({"*.part"}, QDir::Files); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void CliVerdictTest::check(const QString &words, const QString &reader, const QString &file,
                           int reads)
{
    QFETCH(QString, summary);
    QFETCH(ExitCode, code);
    const ReaderChoice choice{reader, {}};
    const ProgramResult result = runProgram(CLI_PROGRAM, words, choice);
    QVERIFY2(codeOf(result) == code, qPrintable(result.out + result.err));
    const QByteArray bytes = fileBytes(file);
    QCOMPARE(result.out, QString("%1\n%2: %3 bytes, SHA-1 %4\n")
                             .arg(summary, file)
                             .arg(bytes.size())
                             .arg(QString(sha1Of(bytes))));
    QCOMPARE(leftovers(), QStringList());

    QVERIFY(words.startsWith("verify") || QFile::remove(file));
    const ProgramResult asJson = runProgram(CLI_PROGRAM, words + " --json", choice);
    QVERIFY2(codeOf(asJson) == code, qPrintable(asJson.out));
    QVERIFY(fileBytes(file) == bytes);
    checkEvents(asJson, summary, file, reads);
}

void CliVerdictTest::checkEvents(const ProgramResult &result, const QString &summary,
                                 const QString &file, int reads)
{
    QVector<QJsonObject> events;
    for (const QString &line : result.out.split('\n'))
        events << QJsonDocument::fromJson(line.toUtf8()).object();
    events.removeLast(); // behind the last line break
    QVERIFY(events.size() >= 2);
    const QByteArray bytes = fileBytes(file);
    QJsonObject expected{
        {"event", "verdict"},     {"verdict", summary.section(": ", 0, 0)}, {"file", file},
        {"size", bytes.size()},   {"sha1", QString(sha1Of(bytes))},         {"reads", reads},
        {"reasons", QJsonArray()}};
    if (summary.startsWith("verified")) {
        expected.insert("title", "A Game (World)");
        expected.insert("source", "Our games");
    } else {
        expected.insert("reasons",
                        QJsonArray::fromStringList(summary.section(": ", 1).split("; ")));
    }
    QCOMPARE(QJsonDocument(events[events.size() - 2]).toJson(), QJsonDocument(expected).toJson());
    QCOMPARE(events.last()["event"].toString(), QString("end"));
    QCOMPARE(events.last()["exitCode"].toInt(-1), result.exitCode);
}

void CliVerdictTest::dumpIsJudged_data()
{
    QTest::addColumn<QByteArray>("image"); // empty: no cartridge
    QTest::addColumn<QString>("options");  // of the reader
    QTest::addColumn<QString>("words");
    QTest::addColumn<int>("reads");
    QTest::addColumn<QString>("summary");
    QTest::addColumn<ExitCode>("code");
    const auto add = [](const char *name, const QByteArray &image, const char *options,
                        const QString &words, int reads, const QString &summary, ExitCode code) {
        QTest::newRow(name) << image << options << words << reads << summary << code;
    };
    const QByteArray good = mbc5Image(kRomSize, kRamSize);
    const QByteArray gba = gbaImage("ALXP", 4096 * kKibi);
    const QString suspicious = "suspicious: ";

    add("known", good, "", " --dat games.dat", 1, "verified: A Game (World) (Our games)",
        ExitCode::Done);
    add("known, read three times", good, "", " --dat games.dat --reads 3", 3,
        "verified: A Game (World) (Our games)", ExitCode::Done);
    add("not known", good, "", "", 2, kConsistent, ExitCode::Done);
    add("read once", good, "", " --no-verify", 1, "unverified: not a known dump; read only once",
        ExitCode::Unverified);
    add("GBA", gba, "", "", 2, kGbaUnverified, ExitCode::Unverified);
    add("GBA, read once", gba, "", " --reads 1", 1, QString(kGbaUnverified) + "; read only once",
        ExitCode::Unverified);

    add("bad contacts", good, ",flaky=5", "", 2, "unstable: reads differ in bank 5 of 8",
        ExitCode::DataMismatch);
    // The second read already tells.
    add("bad contacts, three reads wanted", good, ",flaky=1", " --reads 3", 2,
        "unstable: reads differ in bank 1 of 8", ExitCode::DataMismatch);
    add("bad contacts, first read known", good, ",flaky=7", " --dat games.dat --reads 2", 2,
        "unstable: reads differ in bank 7 of 8", ExitCode::DataMismatch);

    add("header checksum", withGlobalChecksum(raised(good, kHeaderChecksum)), "", "", 2,
        suspicious + "the header's checksum is wrong", ExitCode::DataMismatch);
    add("global checksum", raised(good, good.size() - 1), "", "", 2,
        suspicious + "the checksum over the whole ROM is wrong", ExitCode::DataMismatch);
    add("logo", raised(good, kLogoOffset), "", kAllSaid, 2,
        suspicious + "there is no boot logo in the header", ExitCode::DataMismatch);
    add("complement check", raised(gba, kGbaComplement), "", "", 2,
        suspicious + "the header's checksum is wrong", ExitCode::DataMismatch);
    add("chip smaller than its header says", withHeaderByte(good, kRomSizeCode, k256Kibi),
        ",flash=8", "", 2, suspicious + "everything from byte 131072 repeats what is before",
        ExitCode::DataMismatch);
    add("chip smaller than was asked for", good, "", " --rom-size 256K", 2,
        suspicious + "everything from byte 131072 repeats what is before; the header speaks of "
                     "131072 bytes, these are 262144",
        ExitCode::DataMismatch);
    add("less asked for than there is", good, "", " --rom-size 64K", 2,
        suspicious + "the checksum over the whole ROM is wrong; the header speaks of 131072 "
                     "bytes, these are 65536",
        ExitCode::DataMismatch);
    add("GBA game smaller than the table says", gbaImage("ALXP", 2048 * kKibi), "", "", 2,
        suspicious + "from byte 2097152 no memory answers", ExitCode::DataMismatch);
    add("empty slot", {}, "", kAllSaid, 2,
        suspicious + "all bytes are equal: an empty slot or no contact", ExitCode::DataMismatch);
}

void CliVerdictTest::dumpIsJudged()
{
    QFETCH(QByteArray, image);
    QFETCH(QString, options);
    QFETCH(QString, words);
    QFETCH(int, reads);
    QFETCH(QString, summary);
    QVERIFY(image.isEmpty() || writeFile(path("cart"), image));
    const QString reader = "cart=" + (image.isEmpty() ? QString("none") : path("cart")) + options;
    const bool isUnstable = summary.startsWith("unstable");
    words.replace("games.dat", path("games.dat"));
    check("dump " + path("dump") + words, reader, path(isUnstable ? "dump.unstable" : "dump"),
          reads);
    QCOMPARE(QFileInfo::exists(path("dump")), !isUnstable);
}

void CliVerdictTest::saveIsJudged_data()
{
    QTest::addColumn<QByteArray>("save");
    QTest::addColumn<QString>("words");
    QTest::addColumn<int>("reads");
    QTest::addColumn<QString>("summary");
    QTest::addColumn<ExitCode>("code");
    const QByteArray save = noise(kRamSize, 1);
    QTest::newRow("two reads") << save << "" << 2 << "consistent: 2 equal reads" << ExitCode::Done;
    QTest::newRow("four reads") << save << " --reads 4" << 4 << "consistent: 4 equal reads"
                                << ExitCode::Done;
    QTest::newRow("read once") << save << " --no-verify" << 1 << "unverified: read only once"
                               << ExitCode::Unverified;
    QTest::newRow("never saved")
        << QByteArray(kRamSize, '\xFF') << "" << 2
        << "suspicious: all bytes are equal: an empty save, no contact, or "
           "the wrong kind of save memory"
        << ExitCode::DataMismatch;
    // The RAM of 32 KiB, read as if it had four times as much.
    QTest::newRow("smaller than was asked for")
        << save << " --ram-size 128K" << 2
        << "unverified: everything from byte 32768 repeats what is before: two copies, or a "
           "smaller save memory"
        << ExitCode::Unverified;
}

void CliVerdictTest::saveIsJudged()
{
    QFETCH(QByteArray, save);
    QFETCH(QString, words);
    QFETCH(int, reads);
    QVERIFY(writeFile(path("cart"), mbc5Image(kRomSize, kRamSize)));
    QVERIFY(writeFile(path("kept.sav"), save));
    check("read-ram " + path("read.sav") + words,
          "cart=" + path("cart") + ",save=" + path("kept.sav"), path("read.sav"), reads);
    QVERIFY(fileBytes(path("read.sav")).left(save.size()) == save);
}

void CliVerdictTest::fileIsJudged_data()
{
    QTest::addColumn<QByteArray>("image");
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("summary");
    QTest::addColumn<ExitCode>("code");
    const QByteArray good = mbc5Image(kRomSize, kRamSize);
    const QString suspicious = "suspicious: ";
    QTest::newRow("known") << good << " --dat games.dat"
                           << "verified: A Game (World) (Our games)" << ExitCode::Done;
    QTest::newRow("not known") << good << ""
                               << "unverified: not a known dump; nobody saw it read twice"
                               << ExitCode::Unverified;
    QTest::newRow("GBA") << gbaImage("ALXP", 64 * kKibi) << ""
                         << QString(kGbaUnverified) + "; nobody saw it read twice"
                         << ExitCode::Unverified;
    QTest::newRow("cut off") << good.left(good.size() / 2) << ""
                             << suspicious + "the checksum over the whole ROM is wrong; the header "
                                             "speaks of 131072 bytes, these are 65536"
                             << ExitCode::DataMismatch;
    QTest::newRow("twice") << good + good << ""
                           << suspicious +
                                  "everything from byte 131072 repeats what is before; the "
                                  "header speaks of 131072 bytes, these are 262144"
                           << ExitCode::DataMismatch;
    QTest::newRow("no game") << noise(kRomSize, 1) << ""
                             << suspicious + "there is no boot logo in the header"
                             << ExitCode::DataMismatch;
    QTest::newRow("erased chip") << QByteArray(kRomSize, '\xFF') << ""
                                 << suspicious + "all bytes are equal: an empty slot or no contact"
                                 << ExitCode::DataMismatch;
    QTest::newRow("empty") << QByteArray() << "" << suspicious + "there are no bytes"
                           << ExitCode::DataMismatch;
}

void CliVerdictTest::fileIsJudged()
{
    QFETCH(QByteArray, image);
    QFETCH(QString, words);
    QVERIFY(writeFile(path("file"), image));
    words.replace("games.dat", path("games.dat"));
    check("verify " + path("file") + words, "", path("file"), 0);
    QVERIFY(fileBytes(path("file")) == image);
}

// Also not if the name was to be replaced: what stood there is better than what was read.
void CliVerdictTest::unstableReadTakesNoName()
{
    const QByteArray image = mbc5Image(kRomSize, kRamSize);
    QVERIFY(writeFile(path("cart"), image));
    QVERIFY(writeFile(path("dump"), "old"));
    const ProgramResult result = runProgram(CLI_PROGRAM, "dump --overwrite " + path("dump"),
                                            {"cart=" + path("cart") + ",flaky=0", {}});
    QCOMPARE(codeOf(result), ExitCode::DataMismatch);
    QCOMPARE(fileBytes(path("dump")), QByteArray("old"));
    QCOMPARE(fileBytes(path("dump.unstable")).size(), image.size());
    QCOMPARE(leftovers(), QStringList());
}

// Nobody knows which of them is the better one.
void CliVerdictTest::everyUnstableReadIsKept()
{
    QVERIFY(writeFile(path("cart"), mbc5Image(kRomSize, kRamSize)));
    const ReaderChoice reader{"cart=" + path("cart") + ",flaky=4", {}};
    QVERIFY(writeFile(path("dump.unstable"), "old"));
    const ProgramResult again = runProgram(CLI_PROGRAM, "dump " + path("dump"), reader);
    QCOMPARE(codeOf(again), ExitCode::DataMismatch);
    QVERIFY2(again.out.contains('\n' + path("dump (2).unstable") + ": 131072 bytes"),
             qPrintable(again.out));
    QCOMPARE(fileBytes(path("dump.unstable")), QByteArray("old"));

    const ProgramResult replaced =
        runProgram(CLI_PROGRAM, "dump --overwrite " + path("dump"), reader);
    QCOMPARE(codeOf(replaced), ExitCode::DataMismatch);
    QVERIFY(fileBytes(path("dump.unstable")) == fileBytes(path("dump (2).unstable")));
}

GBDRIVER_TEST(CliVerdictTest, core)
#include "cli_verdict_test.moc"
