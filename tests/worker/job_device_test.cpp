// What a job does with the reader: finding it, selecting the bus, binding the save type, keying the
// cipher, and the failures of each.
#include "drive_faults.h"
#include "job_bench.h"
#include "test_class.h"

#include <QtTest>

#include <algorithm>

using namespace virtual_reader;

namespace
{

constexpr int kOperations[] = {0, 1, 2, 3, 4, 5, 6, 7};

} // namespace

class JobDeviceTest : public QObject
{
    Q_OBJECT

private slots:
    void missingReaderFailsTheJob_data();
    void missingReaderFailsTheJob();
    void readerMayLeaveAndComeBack();
    void unwrittenModeCommandFailsTheJob_data();
    void unwrittenModeCommandFailsTheJob();
    void failuresThatTheModeSelectionDoesNotSee_data();
    void failuresThatTheModeSelectionDoesNotSee();
    void vanishingReaderFailsAWritingScript();
    void hiddenFailureEndsTheJob_data();
    void hiddenFailureEndsTheJob();

    void saveTypeChoosesTheCommands_data();
    void saveTypeChoosesTheCommands();
    void flashSaveIsErasedFirst();
    void shortLastEepromPieceStaysInsideTheBuffer();
    void shortLastFlashChunkStaysInsideTheBuffer();

    void flashedBytesDecipherToTheFile_data();
    void flashedBytesDecipherToTheFile();
    void failedKeyQueryMeansAKeyOfZeros_data();
    void failedKeyQueryMeansAKeyOfZeros();
};

void JobDeviceTest::missingReaderFailsTheJob_data()
{
    QTest::addColumn<int>("operate");
    for (int operate : kOperations)
        QTest::addRow("operation %d", operate) << operate;
}

void JobDeviceTest::missingReaderFailsTheJob()
{
    QFETCH(int, operate);
    JobBench bench;
    bench.setScript(kMovingScript);
    bench.job.rom_size = 0x4000;
    bench.job.ram_size = 0x2000;
    bench.job.file_name = bench.addFile("file.bin", "user's bytes");
    bench.drive().setGone(true);
    QVERIFY(!bench.run(operate));
    QCOMPARE(bench.events, QStringList{"log Can not found device."} + jobEnd(false));
    QCOMPARE(bench.traffic(), QStringList());
    QCOMPARE(bench.fileBytes("file.bin"), QByteArray("user's bytes"));
}

void JobDeviceTest::readerMayLeaveAndComeBack()
{
    JobBench bench;
    bench.setScript(kMovingScript);
    bench.job.rom_size = 0x4000;
    bench.job.file_name = bench.path("dump.gb");
    QVERIFY(bench.run(0));
    bench.drive().setGone(true);
    QVERIFY(!bench.run(0));
    bench.drive().setGone(false);
    QVERIFY(bench.run(0));
}

void JobDeviceTest::unwrittenModeCommandFailsTheJob_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<int>("after");
    for (int operate : kOperations) {
        QTest::addRow("operation %d, both blocks", operate) << operate << 0;
        QTest::addRow("operation %d, second block", operate) << operate << 1;
    }
}

void JobDeviceTest::unwrittenModeCommandFailsTheJob()
{
    QFETCH(int, operate);
    QFETCH(int, after);
    JobBench bench;
    bench.setScript(kMovingScript);
    bench.job.rom_size = 0x4000;
    bench.job.ram_size = 0x2000;
    bench.job.file_name = bench.addFile("file.bin", "user's bytes");
    bench.drive().addFault(commandFault(static_cast<unsigned>(after), DriveFault::kForever));
    QVERIFY(!bench.run(operate));
    QCOMPARE(bench.events, QStringList{"log Initialize device error."} + jobEnd(false));
    QCOMPARE(bench.fileBytes("file.bin"), QByteArray("user's bytes"));
}

void JobDeviceTest::failuresThatTheModeSelectionDoesNotSee_data()
{
    QTest::addColumn<int>("call");
    QTest::addColumn<int>("after");
    // The first block's result is not looked at; of the second only whether the file was created.
    QTest::newRow("first block not created") << int(DriveCall::OpenForWrite) << 0;
    QTest::newRow("first block not written") << int(DriveCall::Write) << 0;
    QTest::newRow("second block not written") << int(DriveCall::Write) << 1;
}

void JobDeviceTest::failuresThatTheModeSelectionDoesNotSee()
{
    QFETCH(int, call);
    QFETCH(int, after);
    for (int operate : {0, 4}) {
        JobBench bench;
        bench.setScript(kIdleScript);
        bench.job.rom_size = 0x200;
        bench.job.file_name = bench.path("dump.bin");
        bench.drive().addFault(
            commandFault(static_cast<unsigned>(after), 1, static_cast<DriveCall>(call)));
        QVERIFY(bench.run(operate));
        QCOMPARE(bench.logs(), (QStringList{"Start dump rom...", "Dump rom finish."}));
    }
}

void JobDeviceTest::vanishingReaderFailsAWritingScript()
{
    JobBench bench;
    bench.setScript("function cpu_dump(dev, a, b) { cpu_read(dev, 0, 0x2000);\n"
                    "cpu_write(dev, 0x2000, 1); print(\"went on\"); }");
    bench.job.rom_size = 0x4000;
    bench.job.file_name = bench.addFile("dump.gb", "old dump");
    DriveFault pulledOut = commandFault(2);
    pulledOut.driveVanishes = true;
    bench.drive().addFault(pulledOut);
    QVERIFY(!bench.run(0));
    QCOMPARE(scriptErrors(bench.logs()).size(), 1);
    QVERIFY(!bench.logs().contains("went on"));
    QCOMPARE(bench.fileBytes("dump.gb"), QByteArray("old dump"));
}

void JobDeviceTest::hiddenFailureEndsTheJob_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<int>("saveType");
    QTest::addColumn<int>("ramSize");
    QTest::addColumn<int>("call");
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("after");
    const auto add = [](const char *name, int operate, int saveType, int ramSize, DriveCall call,
                        const char *file, int after) {
        QTest::newRow(name) << operate << saveType << ramSize << int(call) << QString(file)
                            << after;
    };
    // Two command files select the bus; one read looks for the reader.
    add("SRAM read, a command", 6, 0, 0x8000, DriveCall::OpenForWrite, "CMD.CMD", 2);
    add("SRAM read, the last command", 6, 0, 0x8000, DriveCall::Write, "CMD.CMD", 2 + 7);
    add("SRAM read, a reply", 6, 0, 0x8000, DriveCall::Read, "K-DRIVER.DMP", 1);
    add("SRAM read, the last reply", 6, 0, 0x8000, DriveCall::Read, "K-DRIVER.DMP", 1 + 7);
    add("FLASH read, a reply", 6, 1, 0x20000, DriveCall::OpenForRead, "K-DRIVER.DMP", 1 + 3);
    add("EEPROM read, the command", 6, 2, 0x2000, DriveCall::Write, "CMD.CMD", 2);
    add("small EEPROM write, the first half", 7, 2, 512, DriveCall::Write, "CMD.CMD", 2);
    add("EEPROM write, a half", 7, 2, 0x2000, DriveCall::OpenForWrite, "CMD.CMD", 2 + 9);
    add("ROM read, the address", 4, 0, 0, DriveCall::Write, "CMD.CMD", 2);
}

// The commands answer as if nothing had happened. What the user has must not be replaced.
void JobDeviceTest::hiddenFailureEndsTheJob()
{
    QFETCH(int, operate);
    QFETCH(int, saveType);
    QFETCH(int, ramSize);
    QFETCH(int, call);
    QFETCH(QString, file);
    QFETCH(int, after);
    JobBench bench;
    bench.setScript(kMovingScript);
    bench.job.rom_size = 0x4000;
    bench.job.ram_size = ramSize;
    bench.job.save_type = saveType;
    const QByteArray old(0x20000, 'o');
    bench.job.file_name = bench.addFile("file.bin", old);
    bench.drive().addFault(
        {static_cast<DriveCall>(call), file.toStdString(), static_cast<unsigned>(after)});
    QVERIFY(!bench.run(operate));
    QCOMPARE(scriptErrors(bench.logs()).size(), 1);
    QVERIFY(scriptErrors(bench.logs()).first().contains(": the reader did not "));
    QCOMPARE(bench.fileBytes("file.bin"), old);
    QVERIFY(bench.run(operate)); // the fault was all that was wrong
}

void JobDeviceTest::saveTypeChoosesTheCommands_data()
{
    QTest::addColumn<int>("saveType");
    QTest::addColumn<int>("ramSize");
    QTest::addColumn<QString>("readCommand");
    QTest::addColumn<QString>("writeCommand");
    const auto add = [](const char *name, int saveType, int ramSize, const char *readCommand,
                        const char *writeCommand) {
        QTest::addRow("%s, %d bytes", name, ramSize)
            << saveType << ramSize << readCommand << writeCommand;
    };
    for (int ramSize : {512, 8192, 32768, 65536, 131072})
        add("SRAM", 0, ramSize, "03/11", "03/10");
    add("FLASH", 1, 65536, "03/08", "03/0A");
    add("FLASH", 1, 131072, "03/09", "03/0B");
    add("EEPROM", 2, 512, "03/0C", "03/0E");
    add("EEPROM", 2, 8192, "03/0D", "03/0F");
    // Pairs that no cartridge has keep the SRAM commands of the mode selection.
    for (int ramSize : {512, 8192, 32768, 65535, 131073})
        add("FLASH", 1, ramSize, "03/11", "03/10");
    for (int ramSize : {1024, 32768, 65536, 131072})
        add("EEPROM", 2, ramSize, "03/11", "03/10");
    add("type 3", 3, 512, "03/11", "03/10");
    add("type 4", 4, 8192, "03/11", "03/10");
    add("type -1", -1, 8192, "03/11", "03/10");
}

void JobDeviceTest::saveTypeChoosesTheCommands()
{
    QFETCH(int, saveType);
    QFETCH(int, ramSize);
    QFETCH(QString, readCommand);
    QFETCH(QString, writeCommand);
    JobBench bench;
    bench.setScript("function save_dump(dev, size, max) { ram_read(dev, 0, 512); }\n"
                    "function save_write(dev, size, max) { ram_write(dev, 0, 512); }");
    bench.job.file_name = bench.addFile("file.sav", QByteArray(ramSize, 's'));
    bench.job.ram_size = ramSize;
    // A job before this one had bound something else.
    bench.job.save_type = 2;
    bench.job.ram_size = readCommand == "03/0D" ? 512 : 8192;
    QVERIFY(bench.run(6));
    bench.job.save_type = saveType;
    bench.job.ram_size = ramSize;
    QVERIFY(bench.run(6));
    const QStringList reads = bench.traffic().filter("03/").mid(1);
    QCOMPARE(reads, QStringList{readCommand});
    QVERIFY(bench.run(7));
    QCOMPARE(bench.traffic().last().split(' ').first(), writeCommand);
}

void JobDeviceTest::flashSaveIsErasedFirst()
{
    JobBench bench;
    bench.setScript(kMovingScript);
    bench.job.save_type = 1;
    bench.job.ram_size = 65536;
    bench.job.file_name = bench.addFile("file.sav", QByteArray(65536, 's'));
    QVERIFY(bench.run(7));
    QCOMPARE(bench.traffic().mid(0, 5),
             (QStringList{"F0/03", "03/01", "03/07", "03/11", "DRIVER 0+1024"}));
    QCOMPARE(bench.cartridge().save.left(65536), QByteArray(65536, 's'));
    QCOMPARE(bench.cartridge().save.mid(65536), QByteArray(65536, '\xFF'));
}

// An EEPROM is written in pieces of 512 bytes whatever is left; the rest comes from behind the save
// and must still be the job's memory, filled with zeros.
void JobDeviceTest::shortLastEepromPieceStaysInsideTheBuffer()
{
    JobBench bench;
    bench.setScript("function save_write(dev, size, max) {\n"
                    "ram_write(dev, 0, size - 513); ram_write(dev, 0x2000, 513); }");
    bench.cartridge().save.fill('\xEE');
    bench.job.save_type = 2;
    bench.job.ram_size = 8192;
    bench.job.file_name = bench.addFile("file.sav", QByteArray(8192, 's'));
    QVERIFY(bench.run(7));
    QCOMPARE(bench.cartridge().save.mid(0x2000, 1024),
             QByteArray(513, 's') + QByteArray(511, '\0'));
    QCOMPARE(bench.cartridge().save.mid(0x2400, 1), QByteArray("\xEE"));
}

// The cipher works on 8 bytes also where a chunk is shorter.
void JobDeviceTest::shortLastFlashChunkStaysInsideTheBuffer()
{
    for (int rest = 1; rest <= 8; ++rest) {
        JobBench bench;
        bench.cartridge().looksUntilErased = 0;
        bench.setScript(kMovingScript);
        bench.job.file_name = bench.addFile("rom.gb", QByteArray(480 + rest, 'r'));
        QVERIFY(bench.run(1));
        QCOMPARE(bench.traffic().last(), QString("02/0E 02/0E"));
        // The reader cannot decipher fewer than 8 bytes.
        const int readable = rest == 8 ? 488 : 480;
        QCOMPARE(bench.cartridge().programmed, QByteArray(readable, 'r'));
    }
}

void JobDeviceTest::flashedBytesDecipherToTheFile_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::newRow("usual key") << QByteArray::fromHex("3BA710E45C92F86D");
    QTest::newRow("zeros") << QByteArray(8, '\0');
    QTest::newRow("ones") << QByteArray(8, '\xFF');
    QTest::newRow("rising") << QByteArray("\x01\x02\x03\x04\x05\x06\x07\x08");
}

// The key is the first 8 bytes of the reader's answer; the reader deciphers with its own.
void JobDeviceTest::flashedBytesDecipherToTheFile()
{
    QFETCH(QByteArray, key);
    VirtualReaderConfig config;
    std::copy(key.begin(), key.end(), config.key.begin());
    JobBench bench(config);
    bench.cartridge().looksUntilErased = 0;
    bench.setScript(kMovingScript);
    const QByteArray rom = TestCartridge::gbBytes(5, 3 * 480 + 100);
    bench.job.file_name = bench.addFile("rom.gb", rom);
    QVERIFY(bench.run(1));
    QCOMPARE(bench.traffic().count("F0/04"), 1);
    QCOMPARE(bench.cartridge().programmed, rom);
}

void JobDeviceTest::failedKeyQueryMeansAKeyOfZeros_data()
{
    QTest::addColumn<bool>("commandFails");
    QTest::addColumn<bool>("readerHasZeros");
    QTest::newRow("command not written, reader has zeros") << true << true;
    QTest::newRow("command not written, reader has a key") << true << false;
    QTest::newRow("answer not read, reader has zeros") << false << true;
    QTest::newRow("answer not read, reader has a key") << false << false;
}

void JobDeviceTest::failedKeyQueryMeansAKeyOfZeros()
{
    QFETCH(bool, commandFails);
    QFETCH(bool, readerHasZeros);
    const QByteArray rom = TestCartridge::gbBytes(5, 960);
    {
        // A job before this one has left its key.
        JobBench earlier;
        earlier.cartridge().looksUntilErased = 0;
        earlier.setScript(kMovingScript);
        earlier.job.file_name = earlier.addFile("rom.gb", rom);
        QVERIFY(earlier.run(1));
    }
    VirtualReaderConfig config;
    if (readerHasZeros)
        config.key = {};
    JobBench bench(config);
    bench.cartridge().looksUntilErased = 0;
    bench.setScript(kMovingScript);
    bench.job.file_name = bench.addFile("rom.gb", rom);
    if (commandFails)
        bench.drive().addFault(commandFault(2));
    else
        bench.drive().addFault({DriveCall::OpenForRead, "K-DRIVER.DMP", 1, 1});
    QVERIFY(bench.run(1)); // nobody looks at the query's result
    QCOMPARE(bench.traffic().contains("F0/04"), !commandFails);
    const QByteArray programmed = bench.cartridge().programmed;
    QCOMPARE(programmed.size(), rom.size());
    QCOMPARE(programmed.mid(8, 472), rom.mid(8, 472));
    QCOMPARE(programmed == rom, readerHasZeros);
}

GBDRIVER_TEST(JobDeviceTest, core)
#include "job_device_test.moc"
