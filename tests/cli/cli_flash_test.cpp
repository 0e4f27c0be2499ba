// The command "flash" of the built program: chips of both widths, one that never finishes, and the
// user's Ctrl-C. What the chip holds afterwards is looked at on a real mount, see tests/e2e.
#include "program_run.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

namespace
{

constexpr int kStepMs = 60000;
constexpr std::uint32_t kRomSize = 64 * 1024;

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
            runProgram(CLI_PROGRAM, "flash " + path("rom.gb") + " --system gb --mapper mbc5",
                       ReaderChoice{reader, {}});
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        QCOMPARE(result.errLines().mid(0, lines.size()), lines);
        QVERIFY(result.err.contains("Erase flash chip finish."));
        QVERIFY(result.err.contains(">Success!"));
    }

    void gbaIsRefused()
    {
        const ProgramResult result = runProgram(
            CLI_PROGRAM, "flash " + path("rom.gb") + " --system gba", ReaderChoice{"demo", {}});
        QCOMPARE(result.exitCode, 1);
        QVERIFY(result.err.contains("Unknow operate!"));
        QVERIFY(!result.err.contains("Flash chip is"));
    }

    void fileLargerThanTheChipIsRefused()
    {
        constexpr std::uint32_t kTooLarge = 2 * 1024 * 1024;
        QVERIFY(writeFile(path("large.gb"), gbImage(0x19, kTooLarge, 0)));
        const ReaderChoice reader{"demo,flash=16,flash-code=20", {}}; // says that it has 1 MiB
        const QString words = " --system gb --mapper mbc5";
        const ProgramResult refused =
            runProgram(CLI_PROGRAM, "flash " + path("large.gb") + words, reader);
        QCOMPARE(refused.exitCode, 1);
        QVERIFY2(refused.err.contains("The file has 2097152 bytes, more than the chip."),
                 qPrintable(refused.err));
        QVERIFY(!refused.err.contains("Start erase"));

        QVERIFY(writeFile(path("full.gb"), gbImage(0x19, kTooLarge / 2, 0)));
        const ProgramResult written =
            runProgram(CLI_PROGRAM, "flash " + path("full.gb") + words, reader);
        QVERIFY2(written.exitCode == 0, qPrintable(written.err));
    }

    void missingFileTouchesNothing()
    {
        const ProgramResult result =
            runProgram(CLI_PROGRAM, "flash " + path("no.gb") + " --system gb --mapper mbc5",
                       ReaderChoice{"demo,flash=8", {}});
        QCOMPARE(result.exitCode, 1);
        QVERIFY(result.err.contains("Open File error."));
        QVERIFY(!result.err.contains("Start erase"));
    }

#ifndef Q_OS_WIN // there is no signal to send to a program there
    void interruptEndsTheWaitForAnErase()
    {
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("GBDRIVER_VIRTUAL_READER", "demo,flash=8,chip-fault=endless");
        program.setProcessEnvironment(environment);
        program.start(CLI_PROGRAM, {"flash", path("rom.gb"), "--system", "gb", "--mapper", "mbc5"});
        QByteArray log;
        QTRY_VERIFY_WITH_TIMEOUT(
            (log += program.readAllStandardError()).contains("Start erase flash chip..."), kStepMs);
        QCOMPARE(::kill(static_cast<pid_t>(program.processId()), SIGINT), 0);
        QVERIFY(program.waitForFinished(kStepMs));
        log += program.readAllStandardError();
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 1);
        QCOMPARE(log.count("Asked to stop."), 1);
        QVERIFY(!log.contains("Start flash ROM..."));
        QVERIFY(log.contains(">Operation failure."));
    }
#endif

private:
    QString path(const QString &name) const
    {
        return m_folder.filePath(name);
    }

    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(CliFlashTest)
#include "cli_flash_test.moc"
