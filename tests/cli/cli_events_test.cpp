// What the built program prints with --json, held against the documented schema: every line of every
// command, also of those that fail, and the end with the program's own exit code.
#include "program_run.h"
#include "test_class.h"

#include <QCryptographicHash>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QtTest>

namespace
{

constexpr int kDeadlineMs = 60000;
constexpr std::uint32_t kKibi = 1024;
constexpr std::uint32_t kRomSize = 64 * kKibi;
constexpr std::uint32_t kRamSize = 32 * kKibi;

struct Validation {
    bool isValid = false;
    QStringList definitions; // that the lines matched
    QString problem;
};

Validation validate(const QByteArray &lines)
{
    QProcess validator;
    validator.start(PYTHON_PROGRAM, {VALIDATOR, SCHEMA});
    validator.write(lines);
    validator.closeWriteChannel();
    if (!validator.waitForFinished(kDeadlineMs) || validator.exitStatus() != QProcess::NormalExit)
        return {false, {}, QString(PYTHON_PROGRAM) + ": " + validator.errorString()};
    const QString names = QString::fromUtf8(validator.readAllStandardOutput()).trimmed();
    return {validator.exitCode() == 0, names.split('\n'),
            QString::fromUtf8(validator.readAllStandardError())};
}

const QByteArray kEnd =
    "{\"event\":\"end\",\"exitCode\":0,\"status\":\"done\",\"meaning\":\"x\"}\n";

// A table of known dumps with one row.
QByteArray datOf(const QByteArray &image)
{
    return "<datafile><header><name>Our games</name></header><game name=\"A Game\">"
           "<rom name=\"A Game.gb\" size=\"" +
           QByteArray::number(image.size()) + "\" sha1=\"" +
           QCryptographicHash::hash(image, QCryptographicHash::Sha1).toHex() +
           "\"/></game></datafile>\n";
}

} // namespace

class CliEventsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyLineIsDescribed_data();
    void everyLineIsDescribed();
    void everyDefinitionIsUsed();
    void spoiledLinesAreRefused_data();
    void spoiledLinesAreRefused();

private:
    QString filledIn(QString text) const { return text.replace("DIR", m_folder.path()); }
    QString path(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
    QSet<QString> m_used;
};

void CliEventsTest::initTestCase()
{
    QVERIFY(m_folder.isValid());
    const QByteArray image = mbc5Image(kRomSize, kRamSize);
    QVERIFY(writeFile(path("cart.gb"), image));
    QVERIFY(writeFile(path("games.dat"), datOf(image)));
    QVERIFY(writeFile(path("known.gba"), gbaImage("ALXP", 4096 * kKibi)));
    QVERIFY(writeFile(path("unknown.gba"), gbaImage("ZZZZ", 64 * kKibi)));
    QVERIFY(writeFile(path("kept.sav"), noise(kRamSize, 1)));
    QVERIFY(writeFile(path("new.sav"), noise(kRamSize, 2)));
    QVERIFY(writeFile(path("gb_mbc1.nut"), "function cpu_dump(\n"));
    for (const char *name : {"reader", "mute"}) {
        QVERIFY(QDir(m_folder.path()).mkdir(name));
        QVERIFY(writeFile(path(name + QString("/K-DRIVER.DMP")), QByteArray(65536, '\0')));
        QVERIFY(writeFile(path(name + QString("/DUMP.ROM")), noise(0x6000, 3)));
    }
    QVERIFY(QDir(path("mute")).mkdir("CMD.CMD"));
    QVERIFY(QDir(m_folder.path()).mkdir("stick"));
    QVERIFY(writeFile(path("stick/K-DRIVER.DMP"), "short"));
}

void CliEventsTest::everyLineIsDescribed_data()
{
    QTest::addColumn<QString>("reader"); // parts of the virtual one, or drives
    QTest::addColumn<QString>("words");
    const auto add = [](const char *name, const char *reader, const char *words) {
        QTest::newRow(name) << reader << words;
    };
    const char kCart[] = "cart=DIR/cart.gb,save=DIR/kept.sav";
    const char kKnownGba[] = "cart=DIR/known.gba,save-type=eep";
    const char kUnknownGba[] = "cart=DIR/unknown.gba";
    const char kDrives[] = "E=DIR/stick:STICK;F=DIR/reader;G=DIR/mute";

    add("info, GB", kCart, "info");
    add("info, quick", kCart, "info --quick");
    add("info, GBA", kKnownGba, "info");
    add("info, unknown GBA game", kUnknownGba, "info");
    add("info, no cartridge", "cart=none", "info");
    add("info, no reader", ";", "info");
    add("info, reader that does not answer", "E=DIR/mute", "info");
    add("info, virtual reader that there is not", "cart=DIR/none", "info");

    add("dump", kCart, "dump DIR/dump.gb");
    add("dump, known", kCart, "dump DIR/known.gb --dat DIR/games.dat");
    add("dump, the user knows better", kCart, "dump DIR/mbc1.gb --mapper mbc1 --system gb");
    add("dump, unseen", kCart,
        "dump DIR/unseen.gb --no-auto --system gb --mapper mbc5 --rom-size 64K");
    add("dump, GBA", kKnownGba, "dump DIR/dump.gba");
    add("dump, read once", kCart, "dump DIR/once.gb --no-verify");
    add("dump, unstable", "cart=DIR/cart.gb,flaky=3", "dump DIR/unstable.gb");
    add("dump, suspicious", kCart, "dump DIR/large.gb --rom-size 128K");
    add("dump, existing file", kCart, "dump DIR/cart.gb");
    add("dump, no folder", kCart, "dump DIR/none/dump.gb");
    add("dump, nothing there", "cart=none", "dump DIR/none.gb");
    add("dump, transfer that fails", "F=DIR/reader",
        "dump DIR/short.gb --no-auto --system gb --mapper mbc5 --rom-size 64K");
    add("dump, no reader", ";", "dump DIR/none.gb");
    add("dump, size that the script refuses", kCart, "dump DIR/none.gb --rom-size 48K");

    add("read-ram", kCart, "read-ram DIR/read.sav");
    add("read-ram, GBA", kKnownGba, "read-ram DIR/gba.sav");
    add("read-ram, unknown GBA game", kUnknownGba, "read-ram DIR/none.sav");
    add("write-ram", kCart, "write-ram DIR/new.sav --backup DIR/backups");
    add("write-ram, no backup", kCart, "write-ram DIR/new.sav --no-backup");
    add("write-ram, wrong size", kCart, "write-ram DIR/cart.gb --backup DIR/backups");
    add("flash", "cart=DIR/cart.gb,flash=8", "flash DIR/cart.gb --backup DIR/backups");
    add("flash, GBA", kKnownGba, "flash DIR/known.gba --backup DIR/backups");

    add("verify", "", "verify DIR/cart.gb");
    add("verify, known", "", "verify DIR/cart.gb --dat DIR/games.dat");
    add("verify, no file", "", "verify DIR/none.gb");
    add("backup", kCart, "backup DIR/stack --count 1");
    add("backup, GBA", kKnownGba, "backup DIR/stack --count 1");
    add("backup, in a file", kCart, "backup DIR/cart.gb --count 1");

    add("drives", kDrives, "drives");
    add("drives, virtual reader", kCart, "drives");
    add("drives, none", ";", "drives");
    add("scripts", "", "scripts");
    add("selftest", "", "selftest");
    add("check-script", "", "check-script " SHIPPED_SCRIPTS "/gb_mbc5.nut");
    add("check-script, broken", "", "check-script DIR/gb_mbc1.nut");
    add("check-script, kind not told", "", "check-script DIR/cart.gb");
}

void CliEventsTest::everyLineIsDescribed()
{
    QFETCH(QString, reader);
    QFETCH(QString, words);
    const bool isVirtual = reader.contains("cart=");
    const ReaderChoice choice{isVirtual ? filledIn(reader) : QString(),
                              isVirtual ? QString() : filledIn(reader)};
    const ProgramResult result = runProgram(CLI_PROGRAM, filledIn(words) + " --json", choice);
    QCOMPARE(result.err, QString());
    const QByteArray lines = result.out.toUtf8();
    const Validation validation = validate(lines);
    QVERIFY2(validation.isValid, qPrintable(validation.problem));
    for (const QString &name : validation.definitions)
        m_used << name;
    const QByteArray last = lines.trimmed().split('\n').last();
    QCOMPARE(QJsonDocument::fromJson(last).object()["exitCode"].toInt(-1), result.exitCode);
}

// What nobody has ever seen may be wrong.
void CliEventsTest::everyDefinitionIsUsed()
{
    const QJsonObject schema = QJsonDocument::fromJson(fileBytes(SCHEMA)).object();
    const QJsonArray events = schema["oneOf"].toArray();
    QVERIFY(!events.isEmpty());
    for (const QJsonValue &row : events) {
        const QString name = row.toObject()["$ref"].toString().section('/', -1);
        QVERIFY2(m_used.contains(name), qPrintable(name));
    }
}

void CliEventsTest::spoiledLinesAreRefused_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<bool>("isValid");
    const QByteArray log = "{\"event\":\"log\",\"level\":\"info\",\"line\":\"x\"}\n";
    QTest::newRow("right") << log + kEnd << true;
    QTest::newRow("end alone") << kEnd << true;
    QTest::newRow("nothing") << QByteArray() << false;
    QTest::newRow("no end") << log << false;
    QTest::newRow("end before the end") << kEnd + log << false;
    QTest::newRow("two ends") << kEnd + kEnd << false;
    QTest::newRow("line break missing") << kEnd.trimmed() << false;
    QTest::newRow("no JSON") << "Start dump rom...\n" + kEnd << false;
    QTest::newRow("no object") << "[]\n" + kEnd << false;
    QTest::newRow("empty line") << "\n" + kEnd << false;
    QTest::newRow("unknown event") << QByteArray(log).replace("\"log\"", "\"lag\"") + kEnd << false;
    QTest::newRow("unknown word") << QByteArray(log).replace("\"info\"", "\"loud\"") + kEnd
                                  << false;
    QTest::newRow("unknown key") << QByteArray(log).replace("\"line\"", "\"more\":1,\"line\"") +
                                        kEnd
                                 << false;
    QTest::newRow("key missing") << QByteArray(log).replace("\"level\":\"info\",", "") + kEnd
                                 << false;
    QTest::newRow("wrong type") << QByteArray(log).replace("\"x\"", "7") + kEnd << false;
    QTest::newRow("word of another exit code")
        << QByteArray(kEnd).replace("\"done\"", "\"usage\"") << false;
    QTest::newRow("unknown exit code") << QByteArray(kEnd).replace(":0,", ":11,") << false;
    QTest::newRow("unknown what") << QByteArray("{\"event\":\"detected\",\"what\":\"cat\"}\n") +
                                         kEnd
                                  << false;
}

void CliEventsTest::spoiledLinesAreRefused()
{
    QFETCH(QByteArray, lines);
    const Validation validation = validate(lines);
    QTEST(validation.isValid, "isValid");
    QCOMPARE(validation.problem.isEmpty(), validation.isValid);
}

GBDRIVER_TEST(CliEventsTest, core)
#include "cli_events_test.moc"
