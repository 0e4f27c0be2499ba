// The command line of the mounted reader.
#include "virtual/fuse/program_options.h"

#include "test_class.h"

#include <QDir>
#include <QtTest>

#include <initializer_list>
#include <string>
#include <vector>

using namespace virtual_reader;

namespace
{

struct Parsed {
    bool ok = false;
    ProgramOptions options;
    std::string error;
};

Parsed parse(std::vector<const char *> arguments)
{
    arguments.insert(arguments.begin(), "reader");
    Parsed result;
    result.ok = parseProgramOptions(static_cast<int>(arguments.size()), arguments.data(),
                                    &result.options, &result.error);
    return result;
}

} // namespace

class ProgramOptionsTest : public QObject
{
    Q_OBJECT

private slots:
    void mountOptions();
    void defaults();
    void imageOptions();
    void gbaImageOptions();
    void cartridgeOptions();
    void sizes_data();
    void sizes();
    void mistakes_data();
    void mistakes();
    void helpListsEveryOption();
};

void ProgramOptionsTest::mountOptions()
{
    const Parsed parsed =
        parse({"--mount",          "/mnt/r",         "--cart", "game.gb",    "--save",
               "/var/a.sav",       "--label",        "L X",    "--identity", "ID",
               "--strict-sectors", "--fail-command", "7",      "--pull-out", "0x10",
               "--timing",         "full-speed",     "--log",  "log",        "--background"});
    QVERIFY2(parsed.ok, parsed.error.c_str());
    const ProgramOptions &options = parsed.options;
    QCOMPARE(options.mount.mountPoint, std::string("/mnt/r"));
    QCOMPARE(QString::fromStdString(options.setup.cartPath), QDir::current().filePath("game.gb"));
    QCOMPARE(options.setup.savePath, std::string("/var/a.sav"));
    QCOMPARE(options.mount.label, std::string("L X"));
    QCOMPARE(options.setup.config.identity, std::string("ID"));
    QVERIFY(options.setup.config.strictSectors);
    QCOMPARE(options.setup.config.fault.failedCommand, 7U);
    QCOMPARE(options.setup.config.fault.pulledAt, 16U);
    QCOMPARE(options.setup.config.timing.bytesPerSecond, 900000U);
    QCOMPARE(QString::fromStdString(options.logPath), QDir::current().filePath("log"));
    QVERIFY(options.mount.background);
}

void ProgramOptionsTest::defaults()
{
    const Parsed parsed = parse({"--mount", "/mnt/r", "--background", "--foreground"});
    QVERIFY2(parsed.ok, parsed.error.c_str());
    QVERIFY(parsed.options.setup.cartPath.empty());
    QVERIFY(!parsed.options.setup.demo);
    QVERIFY(!parsed.options.setup.config.strictSectors);
    QCOMPARE(parsed.options.setup.config.fault.failedCommand, 0U);
    QCOMPARE(parsed.options.setup.config.fault.pulledAt, 0U);
    QVERIFY(!parsed.options.setup.config.timing.isOn());
    QVERIFY(!parsed.options.mount.background);
    QVERIFY(parsed.options.logPath.empty());
    QCOMPARE(parsed.options.mount.label, std::string("VIRTUAL"));
    QCOMPARE(parsed.options.setup.config.identity, std::string("QDX_PCB02_FW303"));
}

void ProgramOptionsTest::imageOptions()
{
    const Parsed parsed = parse({"--make-image", "/x.gb", "--type", "0x1B", "--rom-size", "8M",
                                 "--ram-size", "32K", "--title", "A TITLE", "--seed", "77"});
    QVERIFY2(parsed.ok, parsed.error.c_str());
    QCOMPARE(parsed.options.imagePath, std::string("/x.gb"));
    QCOMPARE(int(parsed.options.image.type), 0x1B);
    QCOMPARE(parsed.options.image.romSize, 8U * 1024 * 1024);
    QCOMPARE(parsed.options.image.ramSize, 32U * 1024);
    QCOMPARE(parsed.options.image.title, std::string("A TITLE"));
    QCOMPARE(quint64(parsed.options.image.seed), quint64(77));
}

void ProgramOptionsTest::gbaImageOptions()
{
    const Parsed parsed = parse({"--make-image", "/x.gba", "--system", "gba", "--code", "AWRP",
                                 "--rom-size", "8M", "--title", "A TITLE", "--seed", "77"});
    QVERIFY2(parsed.ok, parsed.error.c_str());
    QVERIFY(parsed.options.setup.cartridge.system == CartridgeSystem::Gba);
    QCOMPARE(parsed.options.gbaImage.code, std::string("AWRP"));
    QCOMPARE(parsed.options.gbaImage.romSize, 8U * 1024 * 1024);
    QCOMPARE(parsed.options.gbaImage.title, std::string("A TITLE"));
    QCOMPARE(quint64(parsed.options.gbaImage.seed), quint64(77));
}

void ProgramOptionsTest::cartridgeOptions()
{
    const Parsed parsed = parse({"--mount", "/mnt/r", "--cart", "c", "--save-type", "flash",
                                 "--save-size", "128K", "--flash", "8", "--flash-size", "2M"});
    QVERIFY2(parsed.ok, parsed.error.c_str());
    QVERIFY(parsed.options.setup.cartridge.saveType == GbaSaveType::Flash);
    QCOMPARE(parsed.options.setup.cartridge.saveSize, 128U * 1024);
    QVERIFY(parsed.options.setup.cartridge.flash == FlashWidth::Byte);
    QCOMPARE(parsed.options.setup.cartridge.flashSize, 2U * 1024 * 1024);
}

void ProgramOptionsTest::sizes_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<quint32>("size");
    QTest::newRow("bytes") << QByteArray("512") << true << 512U;
    QTest::newRow("hexadecimal") << QByteArray("0x8000") << true << 32768U;
    QTest::newRow("small k") << QByteArray("8k") << true << 8192U;
    QTest::newRow("mebibytes") << QByteArray("2M") << true << 2097152U;
    QTest::newRow("zero") << QByteArray("0") << true << 0U;
    QTest::newRow("empty") << QByteArray("") << false << 0U;
    QTest::newRow("negative") << QByteArray("-1") << false << 0U;
    QTest::newRow("unknown suffix") << QByteArray("1G") << false << 0U;
    QTest::newRow("suffix and more") << QByteArray("1KB") << false << 0U;
    QTest::newRow("too large") << QByteArray("4096M") << false << 0U;
    QTest::newRow("far too large") << QByteArray("99999999999999999999") << false << 0U;
}

void ProgramOptionsTest::sizes()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, ok);
    QFETCH(quint32, size);
    const Parsed parsed = parse({"--make-image", "/x", "--rom-size", text.constData()});
    QCOMPARE(parsed.ok, ok);
    if (ok)
        QCOMPARE(parsed.options.image.romSize, size);
    else
        QVERIFY(parsed.error.find("--rom-size") == 0);
}

void ProgramOptionsTest::mistakes_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("reason");
    QTest::newRow("nothing") << QStringList() << "either --mount or --make-image";
    QTest::newRow("both") << QStringList{"--mount", "/m", "--make-image", "/i"}
                          << "either --mount or --make-image";
    QTest::newRow("unknown") << QStringList{"--mont", "/m"} << "unknown option --mont";
    QTest::newRow("value missing") << QStringList{"--mount"} << "--mount needs a value";
    QTest::newRow("type too large")
        << QStringList{"--make-image", "/i", "--type", "256"} << "--type 256";
    QTest::newRow("two cartridges")
        << QStringList{"--mount", "/m", "--demo", "--cart", "c"} << "exclude each other";
    QTest::newRow("system") << QStringList{"--mount", "/m", "--system", "nes"}
                            << "--system nes: not a gb|gba";
    QTest::newRow("flash") << QStringList{"--mount", "/m", "--flash", "9"}
                           << "--flash 9: not a 8|16";
    QTest::newRow("flash size missing")
        << QStringList{"--mount", "/m", "--flash-size"} << "--flash-size needs a value";
    QTest::newRow("name without dashes")
        << QStringList{"--mount", "/m", "system", "gb"} << "unknown option system";
    QTest::newRow("command 0") << QStringList{"--mount", "/m", "--fail-command", "0"}
                               << "--fail-command 0: not a NUMBER";
    QTest::newRow("command beyond 32 bits")
        << QStringList{"--mount", "/m", "--pull-out", "4294967296"} << "--pull-out 4294967296";
    QTest::newRow("timing") << QStringList{"--mount", "/m", "--timing", "0:1"}
                            << "--timing 0:1: not a MODEL";
    QTest::newRow("seed") << QStringList{"--make-image", "/i", "--seed", "1x"} << "--seed 1x";
}

void ProgramOptionsTest::mistakes()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, reason);
    std::vector<QByteArray> bytes;
    for (const QString &argument : arguments)
        bytes.push_back(argument.toUtf8());
    std::vector<const char *> list;
    for (const QByteArray &argument : bytes)
        list.push_back(argument.constData());
    const Parsed parsed = parse(list);
    QVERIFY(!parsed.ok);
    QVERIFY2(QString::fromStdString(parsed.error).contains(reason), parsed.error.c_str());
}

void ProgramOptionsTest::helpListsEveryOption()
{
    QVERIFY(parse({"--help"}).ok);
    const QString usage = QString::fromStdString(programUsage());
    for (const char *name : {"--mount DIR", "--cart FILE", "--save FILE", "--strict-sectors",
                             "--log FILE", "--make-image FILE", "--seed NUMBER", "--background",
                             "--system gb|gba", "--flash 8|16", "--save-size SIZE", "--code TEXT",
                             "--fail-command NUMBER", "--pull-out NUMBER", "--timing MODEL"})
        QVERIFY2(usage.contains(QString("\n  %1 ").arg(name)), name);
}

GBDRIVER_TEST(ProgramOptionsTest, none)
#include "program_options_test.moc"
