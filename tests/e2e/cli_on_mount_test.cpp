// The real headless program against the virtual reader on a real mount that is as strict about
// sectors as a disk.
#include "cartridge_files.h"
#include "mounted_reader.h"
#include "process_run.h"

#include "cli/exit_code.h"
#include "test_class.h"

#include <QDir>
#include <QtTest>

namespace
{

constexpr int kNoReader = static_cast<int>(ExitCode::NoReader);
constexpr int kUnverified = static_cast<int>(ExitCode::Unverified);
constexpr std::uint32_t kKibi = 1024;
constexpr std::uint32_t kMebi = 1024 * 1024;

struct Outcome {
    int exitCode = -1;
    QString log;
};

Outcome runCli(const QString &declaration, const QStringList &arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("GBDRIVER_DRIVES", declaration);
    environment.remove("GBDRIVER_VIRTUAL_READER");
    const ProcessRun run = runProcess(CLI_PROGRAM, arguments, environment);
    return {run.exitCode, QString::fromLocal8Bit(run.errors)};
}

Outcome runCli(const MountedReader &reader, const QStringList &arguments)
{
    return runCli(reader.declaration(), arguments);
}

// Content of the one file in a folder; null if there is none or more than one.
QByteArray onlyFileIn(const QString &folder)
{
    const QFileInfoList files = QDir(folder).entryInfoList(QDir::Files);
    return files.size() == 1 ? contentOf(files[0].filePath()) : QByteArray();
}

// Anything that the reader refused: a block that is not valid, a read that no disk would serve.
QStringList refusals(const QVector<QJsonObject> &operations)
{
    QStringList found;
    for (const QJsonObject &operation : operations) {
        const QByteArray text = QJsonDocument(operation).toJson(QJsonDocument::Compact);
        if (text.contains("\"refused\""))
            found << text;
    }
    return found;
}

} // namespace

class CliOnMountTest : public QObject
{
    Q_OBJECT

private slots:
    void dumpIsTheImageByteForByte_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("mapper");
        QTest::addColumn<uint>("romSize");
        QTest::addColumn<int>("bankSwitches");
        QTest::addColumn<int>("reads");

        // One read serves banks 0 and 1; MBC1 has such a pair in each of its four groups.
        QTest::newRow("ROM only, 32 KiB") << 0x00 << "none" << 32 * kKibi << 0 << 1;
        QTest::newRow("MBC1, 2 MiB") << 0x01 << "mbc1" << 2 * kMebi << 124 << 124;
        QTest::newRow("MBC5, 8 MiB") << 0x19 << "mbc5" << 8 * kMebi << 511 << 511;
    }

    void dumpIsTheImageByteForByte()
    {
        QFETCH(int, type);
        QFETCH(QString, mapper);
        QFETCH(uint, romSize);
        QFETCH(int, bankSwitches);
        QFETCH(int, reads);

        CartridgeFiles files;
        const QString image = files.addImage(static_cast<std::uint8_t>(type), romSize, 0);
        MountedReader reader;
        const QString problem = reader.start(image);
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
        const QString dump = files.path("dump file ä.gb");

        // No look before and no second read, so that the job's own requests can be counted.
        const Outcome outcome =
            runCli(reader, {"dump", dump, "--no-auto", "--no-verify", "--system", "gb", "--mapper",
                            mapper, "--rom-size", QString::number(romSize)});

        QVERIFY2(outcome.exitCode == kUnverified, qPrintable(outcome.log));
        QVERIFY(contentOf(dump) == contentOf(image));
        const QVector<QJsonObject> operations = reader.operations();
        QCOMPARE(refusals(operations), QStringList());
        // Two writes select the mode, one leaves the mapper at rest; no mapper needs no writes.
        const int fixed = bankSwitches == 0 ? 2 : 3;
        QCOMPARE(countCommandRuns(operations), fixed + bankSwitches);
        // The kernel may split a large read, so 32 KiB can arrive as more than one.
        QVERIFY(countReads(operations, "DUMP.ROM") >= reads);
        QVERIFY(countReads(operations, "DUMP.ROM") <= 2 * reads);
    }

    void saveIsReadChangedWrittenAndReadBack()
    {
        constexpr std::uint32_t kSaveSize = 32 * kKibi;
        CartridgeFiles files;
        const QString image = files.addImage(0x1B, kMebi, kSaveSize);
        const QString chip = files.addNoise("chip.sav", kSaveSize, 5);
        const QByteArray original = contentOf(chip);
        const QStringList kind = {"--system", "gb", "--mapper", "mbc5", "--ram-size", "32K"};
        const QStringList keep = {"--backup", files.path("backups")};

        const QString backup = files.path("backup.sav");
        {
            MountedReader reader;
            QCOMPARE(reader.start(image, chip), QString());
            const Outcome outcome = runCli(reader, QStringList{"read-ram", backup} + kind);
            QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.log));
            QVERIFY(contentOf(backup) == original);

            const QString changed = files.addNoise("changed.sav", kSaveSize, 6);
            const Outcome written = runCli(reader, QStringList{"write-ram", changed} + kind + keep);
            QVERIFY2(written.exitCode == 0, qPrintable(written.log));
            QVERIFY(onlyFileIn(files.path("backups")) == original);
            QCOMPARE(refusals(reader.operations()), QStringList());
            QCOMPARE(reader.unmount(), QString());
        }
        MountedReader fresh;
        QCOMPARE(fresh.start(image, chip), QString());
        const QString readBack = files.path("back.sav");
        const Outcome outcome = runCli(fresh, QStringList{"read-ram", readBack} + kind);
        QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.log));
        QVERIFY(contentOf(readBack) == contentOf(files.path("changed.sav")));
        QVERIFY(contentOf(readBack) != original);
    }

    void flashedRomIsDumpedFromTheChip_data()
    {
        QTest::addColumn<QString>("width");
        QTest::newRow("8-bit chip") << "8";
        QTest::newRow("16-bit chip") << "16";
    }

    void flashedRomIsDumpedFromTheChip()
    {
        QFETCH(QString, width);
        CartridgeFiles files;
        const QString old = files.addImage(0x19, 256 * kKibi, 0, 1);
        const QString rom = files.addImage(0x19, 256 * kKibi, 0, 2);
        MountedReader reader;
        QCOMPARE(reader.start(old, QString(), {"--flash", width}), QString());
        const QStringList kind = {"--system", "gb", "--mapper", "mbc5"};
        const Outcome flashed =
            runCli(reader, QStringList{"flash", rom, "--backup", files.path("backups")} + kind);
        QVERIFY2(flashed.exitCode == 0, qPrintable(flashed.log));
        QVERIFY(flashed.log.contains("Flash chip is " + width + "bit width"));
        QVERIFY(onlyFileIn(files.path("backups")) == contentOf(old));

        const QString dump = files.path("dump.gb");
        const Outcome dumped =
            runCli(reader, QStringList{"dump", dump, "--rom-size", "256K"} + kind);
        QVERIFY2(dumped.exitCode == 0, qPrintable(dumped.log));
        QVERIFY(contentOf(dump) == contentOf(rom));
        QVERIFY(contentOf(dump) != contentOf(old));
        QCOMPARE(refusals(reader.operations()), QStringList());
    }

    void gbaRomAndSaveTravelBothWays()
    {
        constexpr std::uint32_t kSaveSize = 128 * kKibi;
        CartridgeFiles files;
        const QString image = files.addGbaImage(4 * kMebi);
        const QString chip = files.addNoise("chip.sav", kSaveSize, 5);
        const QByteArray original = contentOf(chip);
        MountedReader reader;
        QCOMPARE(reader.start(image, chip, {"--save-type", "flash", "--save-size", "128K"}),
                 QString());
        const QStringList save = {"--system", "gba", "--save-type", "flash", "--ram-size", "128K"};

        const QString dump = files.path("dump.gba");
        const Outcome dumped =
            runCli(reader, {"dump", dump, "--system", "gba", "--rom-size", "4M"});
        QVERIFY2(dumped.exitCode == kUnverified, qPrintable(dumped.log));
        QVERIFY(contentOf(dump) == contentOf(image));

        const QString backup = files.path("backup.sav");
        QCOMPARE(runCli(reader, QStringList{"read-ram", backup} + save).exitCode, 0);
        QVERIFY(contentOf(backup) == original);
        const QString changed = files.addNoise("changed.sav", kSaveSize, 6);
        const Outcome written = runCli(
            reader, QStringList{"write-ram", changed, "--backup", files.path("backups")} + save);
        QVERIFY2(written.exitCode == 0, qPrintable(written.log));
        QCOMPARE(reader.unmount(), QString());
        QVERIFY(contentOf(chip) == contentOf(changed));
        QVERIFY(onlyFileIn(files.path("backups")) == original);
    }

    void anUnmountedReaderIsNotFoundAndItsFolderStaysEmpty()
    {
        CartridgeFiles files;
        const QString image = files.addImage(0x00, 32 * kKibi, 0);
        QTemporaryDir mountPoint;
        const QString dump = files.path("dump.gb");
        const Outcome outcome = runCli(
            "E=" + mountPoint.filePath("not there"),
            {"dump", dump, "--no-auto", "--system", "gb", "--mapper", "none", "--rom-size", "32K"});
        QCOMPARE(outcome.exitCode, kNoReader);
        QVERIFY(outcome.log.contains("Can not found device."));
        QVERIFY(!QFile::exists(dump));
        QVERIFY(QDir(mountPoint.path()).isEmpty());
    }
};

GBDRIVER_TEST(CliOnMountTest, core)
#include "cli_on_mount_test.moc"
