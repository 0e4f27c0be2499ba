// The command "check-script" of the built program: the shipped scripts, and scripts with the faults
// that authors make.
#include "program_run.h"
#include "test_class.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

namespace
{

// A cartridge without a mapper: 32 KiB of ROM, 8 KiB of RAM.
const QByteArray kGoodDump = "function cpu_dump(dev, size, _) { cpu_read(dev, 0, 0x8000); }\n";

} // namespace

class CheckScriptTest : public QObject
{
    Q_OBJECT

private slots:
    void shippedScriptIsSound_data()
    {
        QTest::addColumn<QString>("script");
        const QStringList names = QDir(SHIPPED_SCRIPTS).entryList({"gb*.nut"}, QDir::Files);
        QVERIFY(!names.isEmpty());
        for (const QString &name : names)
            QTest::newRow(qPrintable(name)) << QDir(SHIPPED_SCRIPTS).filePath(name);
    }

    void shippedScriptIsSound()
    {
        QFETCH(QString, script);
        const ProgramResult result = runProgram(CLI_PROGRAM, QStringList{"check-script", script});
        QVERIFY2(result.exitCode == 0, qPrintable(result.out + result.err));
        QVERIFY(result.out.startsWith("cpu_dump: right\n"));
        QVERIFY(!result.out.contains("WRONG"));
        QVERIFY(!result.out.contains("too few"));
    }

    void operationsAreCountedBesideTheLeast()
    {
        const ProgramResult result = check("function cpu_dump(dev, size, _) {\n"
                                           "cpu_write(dev, 0x6000, 0); cpu_read(dev, 0, 0x4000);\n"
                                           "cpu_read(dev, 0x4000, 0x4000); }\n");
        QCOMPARE(result.exitCode, 0);
        QVERIFY(result.out.contains("32768 of 32768 bytes moved\n"));
        QVERIFY(result.out.contains("1 command files, 2 reads; the least are 0 and 1\n"));
        QVERIFY(result.out.contains("save_dump: not defined\n"));
    }

    void shortfallIsNamed()
    {
        const ProgramResult result =
            check("function cpu_dump(dev, size, _) { cpu_read(dev, 0, 0x4000); }\n");
        QCOMPARE(codeOf(result), ExitCode::DataMismatch);
        QVERIFY(result.out.startsWith("cpu_dump: WRONG"));
        QVERIFY(result.out.contains("16384 of 32768 bytes moved, 16384 bytes too few\n"));
    }

    void wrongOrderIsWrong()
    {
        const ProgramResult result = check("function cpu_dump(dev, size, _) {\n"
                                           "cpu_read(dev, 0x4000, 0x4000);\n"
                                           "cpu_read(dev, 0, 0x4000); }\n");
        QCOMPARE(codeOf(result), ExitCode::DataMismatch);
        QVERIFY(result.out.startsWith("cpu_dump: WRONG"));
        QVERIFY(result.out.contains("32768 of 32768 bytes moved\n"));
    }

    void overrunIsReported()
    {
        const ProgramResult result =
            check(kGoodDump + "function save_dump(dev, size, _) {\n"
                              "cpu_read(dev, 0xA000, 0x2000); cpu_read(dev, 0xA000, 0x2000); }\n");
        QCOMPARE(codeOf(result), ExitCode::TransferFailed);
        QVERIFY(result.out.contains("save_dump: FAILED on the way:\n"));
        QVERIFY(result.out.contains("cursor 8192, length 8192: outside the buffer of 8192 bytes"));
    }

    void scriptThatDoesNotCompileIsReported()
    {
        const ProgramResult result = check("function cpu_dump(dev {\n");
        QCOMPARE(codeOf(result), ExitCode::TransferFailed);
        QVERIFY(result.out.contains("cpu_dump: refused, nothing was sent:\n"));
        QVERIFY(result.out.contains("line = (1)"));
    }

    // What a script refuses is no fault as long as it sends nothing before.
    void refusalIsToldFromAFailureOnTheWay()
    {
        const QByteArray refusing =
            kGoodDump + "function save_dump(dev, size, _) { throw \"no such save\"; }\n";
        const ProgramResult refused = check(refusing);
        QCOMPARE(refused.exitCode, 0);
        QVERIFY(refused.out.contains("save_dump: refused, nothing was sent:\n"));

        const ProgramResult failed =
            check(refusing + "function save_write(dev, size, _) {\n"
                             "cpu_write(dev, 0x0000, 0x0A); no_such_function(dev); }\n");
        QCOMPARE(codeOf(failed), ExitCode::TransferFailed);
        QVERIFY(failed.out.contains("save_write: FAILED on the way:\n"));
    }

    void everyOperationIsReportedAfterAWrongOne()
    {
        const ProgramResult result =
            check("function cpu_dump(dev, size, _) { cpu_read(dev, 0, 0x4000); }\n"
                  "function save_dump(dev, size, _) { cpu_read(dev, 0xA000, 0x2000); }\n");
        QCOMPARE(codeOf(result), ExitCode::DataMismatch);
        QVERIFY(result.out.startsWith("cpu_dump: WRONG"));
        QVERIFY(result.out.contains("save_dump: right\n"));
        QVERIFY(result.out.contains("save_write: not defined\n"));
    }

    // Nobody erases the chip, and nobody is there to press Cancel.
    void eraseThatNeverHappensEndsTheTrial_data()
    {
        QTest::addColumn<QByteArray>("erase");
        QTest::addColumn<QString>("verdict");
        QTest::newRow("refused") << QByteArray("throw \"no chip\";")
                                 << "refused, nothing was sent:";
        QTest::newRow("not started")
            << QByteArray("cpu_write(dev, 0x0000, 0xF0);") << "FAILED on the way:";
    }
    void eraseThatNeverHappensEndsTheTrial()
    {
        QFETCH(QByteArray, erase);
        QFETCH(QString, verdict);
        const ProgramResult result =
            check("function cpu_erase(dev, size, width) { " + erase +
                  " }\nfunction cpu_flash(dev, size, _) { rom_write(dev, 0, size); }\n");
        QCOMPARE(codeOf(result), ExitCode::TransferFailed);
        QVERIFY2(result.out.contains("cpu_erase and cpu_flash: " + verdict.toUtf8() + "\n"),
                 qPrintable(result.out));
        QVERIFY(result.out.contains("The erase does not end."));
    }

    void topLevelThatReachesForTheCartridgeIsReported()
    {
        const ProgramResult result = check("cpu_write(0, 0x2000, 1);\n" + kGoodDump);
        QCOMPARE(codeOf(result), ExitCode::TransferFailed);
        QVERIFY(result.out.contains("cpu_dump: refused, nothing was sent:\n"));
        QVERIFY(result.out.contains("the top level of a script cannot use the cartridge"));
    }

    void kindIsAskedForWhenTheNameDoesNotTell()
    {
        const QString path = m_folder.filePath("mine.nut");
        QVERIFY(writeFile(path, kGoodDump));
        const ProgramResult unknown = runProgram(CLI_PROGRAM, "check-script " + path);
        QCOMPARE(codeOf(unknown), ExitCode::Usage);
        QVERIFY(unknown.err.contains("give --mapper"));
        const ProgramResult named =
            runProgram(CLI_PROGRAM, "check-script " + path + " --mapper none");
        QVERIFY2(named.exitCode == 0, qPrintable(named.out + named.err));
    }

    void missingFileIsReported()
    {
        const ProgramResult result =
            runProgram(CLI_PROGRAM, "check-script " + m_folder.filePath("gb_mbc5.nut"));
        QCOMPARE(codeOf(result), ExitCode::FileError);
        QVERIFY(result.err.contains("There is no such script file."));
    }

private:
    ProgramResult check(const QByteArray &script)
    {
        const QString path = m_folder.filePath("gb_mbc0.nut");
        if (!writeFile(path, script))
            qFatal("can not write the script");
        return runProgram(CLI_PROGRAM, "check-script " + path);
    }

    QTemporaryDir m_folder;
};

GBDRIVER_TEST(CheckScriptTest, core)
#include "check_script_test.moc"
