// The command "flash" of the built program: chips of both widths, one that never finishes, and the
// user's Ctrl-C. What the chip holds afterwards is looked at on a real mount, see tests/e2e.
#include "program_run.h"
#include "test_class.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

namespace
{

constexpr int kStepMs = 60000;
constexpr std::uint32_t kRomSize = 64 * 1024;
// All is said; what the chip itself says is looked at here, and no backup of it.
const QString kOptions = " --no-auto --no-backup --system gb --mapper mbc5";

} // namespace

class CliFlashTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QVERIFY(writeFile(path("rom.gb"), gbImage(0x19, kRomSize, 0))); }

    void widthIsAskedOfTheChip_data()
    {
        QTest::addColumn<QString>("reader");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("8 bit") << "demo,flash=8" << QStringList{"Flash chip is 8bit width"};
        QTest::newRow("16 bit, 4 MiB")
            << "demo,flash=16,flash-size=4M"
            << QStringList{"Flash chip is 16bit width", "Flash chip size is :4096KB"};
    }

    void widthIsAskedOfTheChip()
    {
        QFETCH(QString, reader);
        QFETCH(QStringList, lines);
        const ProgramResult result =
            runProgram(CLI_PROGRAM, "flash " + path("rom.gb") + kOptions, ReaderChoice{reader, {}});
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        const QStringList said = result.errLines();
        QCOMPARE(said.mid(said.indexOf(lines[0]), lines.size()), lines);
        QVERIFY(result.err.contains("Erase flash chip finish."));
        QCOMPARE(result.out, QString("written: 65536 bytes, read back and equal\n"));
    }

    void whatTheChipHeldIsInTheBackup()
    {
        const QByteArray old = gbImage(0x1B, 2 * kRomSize, 8192);
        QVERIFY(writeFile(path("cart.gb"), old));
        const ProgramResult result =
            runProgram(CLI_PROGRAM, "flash " + path("rom.gb") + " --backup " + path("backups"),
                       ReaderChoice{"flash=8,cart=" + path("cart.gb"), {}});
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        const QStringList backups = QDir(path("backups")).entryList(QDir::Files);
        QCOMPARE(backups.size(), 1);
        QVERIFY(fileBytes(path("backups/") + backups[0]) == old);
        QVERIFY2(result.out.endsWith("backup: " + path("backups/") + backups[0] + '\n'),
                 qPrintable(result.out));
    }

    void gbaIsRefused()
    {
        const ProgramResult result =
            runProgram(CLI_PROGRAM, "flash " + path("rom.gb") + " --no-auto --system gba",
                       ReaderChoice{"demo", {}});
        QCOMPARE(codeOf(result), ExitCode::Refused);
        QVERIFY(result.err.contains("The reader has no command that writes a GBA ROM."));
        QVERIFY(!result.err.contains("Flash chip is"));
    }

    void fileLargerThanTheChipIsRefused()
    {
        constexpr std::uint32_t kTooLarge = 2 * 1024 * 1024;
        QVERIFY(writeFile(path("large.gb"), gbImage(0x19, kTooLarge, 0)));
        const ReaderChoice reader{"demo,flash=16,flash-code=20", {}}; // says that it has 1 MiB
        const ProgramResult refused =
            runProgram(CLI_PROGRAM, "flash " + path("large.gb") + kOptions, reader);
        QCOMPARE(codeOf(refused), ExitCode::Refused);
        QVERIFY2(refused.err.contains("The file has 2097152 bytes, the flash chip 1048576."),
                 qPrintable(refused.err));
        QVERIFY(!refused.err.contains("Start erase"));

        QVERIFY(writeFile(path("full.gb"), gbImage(0x19, kTooLarge / 2, 0)));
        const ProgramResult written =
            runProgram(CLI_PROGRAM, "flash " + path("full.gb") + kOptions, reader);
        QVERIFY2(written.exitCode == 0, qPrintable(written.err));
    }

    void missingFileTouchesNothing()
    {
        const ProgramResult result = runProgram(CLI_PROGRAM, "flash " + path("no.gb") + kOptions,
                                                ReaderChoice{"demo,flash=8", {}});
        QCOMPARE(codeOf(result), ExitCode::FileError);
        QVERIFY2(result.err.contains("Can not read " + path("no.gb") + ": "),
                 qPrintable(result.err));
        QVERIFY(result.err.contains("The cartridge was not touched."));
        QVERIFY(!result.err.contains("Start erase"));
    }

#ifndef Q_OS_WIN // there is no signal to send to a program there
    void interruptEndsTheWaitForAnErase()
    {
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("GBDRIVER_VIRTUAL_READER", "demo,flash=8,chip-fault=endless");
        program.setProcessEnvironment(environment);
        program.start(CLI_PROGRAM, ("flash " + path("rom.gb") + kOptions).split(' '));
        QByteArray log;
        QTRY_VERIFY_WITH_TIMEOUT(
            (log += program.readAllStandardError()).contains("Start erase flash chip..."), kStepMs);
        QCOMPARE(::kill(static_cast<pid_t>(program.processId()), SIGINT), 0);
        QVERIFY(program.waitForFinished(kStepMs));
        log += program.readAllStandardError();
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(static_cast<ExitCode>(program.exitCode()), ExitCode::Cancelled);
        QCOMPARE(log.count("Asked to stop."), 1);
        QVERIFY(!log.contains("Start flash ROM..."));
        QVERIFY(log.contains("Stopped while the chip was being erased. Its content may be lost."));
    }
#endif

private:
    QString path(const QString &name) const
    {
        return m_folder.filePath(name);
    }

    QTemporaryDir m_folder;
};

GBDRIVER_TEST(CliFlashTest, core)
#include "cli_flash_test.moc"
