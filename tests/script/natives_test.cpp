// What natives do with good arguments: masks and clamps, the cursor, progress, bounds, batches.
#include "native_bench.h"

#include "composed_block.h"

#include "device/device_commands.h"
#include "device/device_ops.h"
#include "script/erase_poll.h"
#include "script/natives.h"
#include "test_class.h"

#include <QRegularExpression>
#include <QtTest>

#include <algorithm>

namespace
{

constexpr int kMebibyte = 0x100000;

int waits = 0;

void countWait(unsigned long /*timeMs*/)
{
    ++waits;
}

// "cpu_write(dev, 0, 1, 2, 3, ...)" with `count` integers behind dev.
QByteArray batch(int count)
{
    QByteArray statement = "cpu_write(dev";
    for (int i = 0; i < count; ++i)
        statement += ", " + QByteArray::number(i);
    return statement + ");";
}

} // namespace

class NativesTest : public QObject
{
    Q_OBJECT

private slots:
    void operationsGetTheirNatives_data();
    void operationsGetTheirNatives();

    void transfersGoToTheirOperation_data();
    void transfersGoToTheirOperation();
    void transfersAdvanceByTheirLength_data();
    void transfersAdvanceByTheirLength();
    void failedOperationEndsTheScript_data();
    void failedOperationEndsTheScript();
    void shortReadEndsTheScript_data();
    void shortReadEndsTheScript();
    void emptyTransferMayAnswerZero_data();
    void emptyTransferMayAnswerZero();
    void caughtFailureIsRemembered();
    void oneReportACall();

    void transferStaysInsideTheBuffer_data();
    void transferStaysInsideTheBuffer();
    void transferToTheLastByteIsAllowed_data();
    void transferToTheLastByteIsAllowed();

    void batchesAreSentAsOne_data();
    void batchesAreSentAsOne();
    void batchKeepsLow32Bits();
    void ninthPairIsNotLookedAt();
    void batchDoesNotLookAtDev();

    void flashOpcodeFollowsTheLowestBit_data();
    void flashOpcodeFollowsTheLowestBit();
    void flashOpcodeLastsUntilTheNextModeSelection();

    void ramEraseSendsItsCommand_data();
    void ramEraseSendsItsCommand();
    void writesToTheBusAreNoticed_data();
    void writesToTheBusAreNoticed();
    void unwrittenRamEraseEndsTheScript();
};

void NativesTest::operationsGetTheirNatives_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("GB ROM dump") << 0 << QStringList{"cpu_write", "cpu_read"};
    QTest::newRow("GB flash write") << 1 << QStringList{"cpu_write", "rom_write", "rom_flash_cfg"};
    QTest::newRow("GB save dump") << 2 << QStringList{"cpu_write", "cpu_read"};
    QTest::newRow("GB save write") << 3 << QStringList{"cpu_write", "ram_write"};
    QTest::newRow("GBA ROM dump") << 4 << QStringList{"cpu_read"};
    QTest::newRow("GBA flash write") << 5 << QStringList();
    QTest::newRow("GBA save dump") << 6 << QStringList{"ram_read"};
    QTest::newRow("GBA save write") << 7 << QStringList{"ram_write", "ram_erase"};
    QTest::newRow("8") << 8 << QStringList();
    QTest::newRow("-1") << -1 << QStringList();
}

void NativesTest::operationsGetTheirNatives()
{
    QFETCH(int, operate);
    QFETCH(QStringList, names);
    const NativeSet natives = nativesOf(operate);
    QStringList registered;
    for (int i = 0; i < natives.count; ++i)
        registered.append(natives.natives[i].name);
    QCOMPARE(registered, names);
}

void NativesTest::transfersGoToTheirOperation_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<QByteArray>("statement");
    QTest::addColumn<QString>("operation");
    const auto add = [](int operate, const char *statement, const char *operation) {
        QTest::addRow("operation %d %s", operate, statement)
            << operate << QByteArray(statement) << QString(operation);
    };
    add(0, "cpu_read(dev, 0x14000, 0x4000);", "gbRead 4000 +16384 @0");
    add(2, "cpu_read(dev, 0xA000, 0x2000);", "gbRead A000 +8192 @0");
    add(0, "cpu_read(dev, 0x4000, 0x10000);", "gbRead 4000 +0 @0");
    add(0, "cpu_read(dev, -1, 0xFFFF);", "gbRead FFFF +65535 @0");
    add(0, "cpu_read(dev, 0, -1);", "gbRead 0 +65535 @0");
    add(0, "cpu_read(dev, 0x100000000, 0x100000010);", "gbRead 0 +16 @0");
    add(4, "cpu_read(dev, 0x123456, 0x200);", "gbaRead 123456 +512 @0");
    add(4, "cpu_read(dev, 0, 0xFFFFF);", "gbaRead 0 +1048575 @0");
    add(4, "cpu_read(dev, 0, 0x100000);", "gbaRead 0 +1048576 @0");
    add(4, "cpu_read(dev, 0, 0x100001);", "gbaRead 0 +1048576 @0");
    add(4, "cpu_read(dev, 0, 0x200000);", "gbaRead 0 +1048576 @0");
    add(4, "cpu_read(dev, 0, -1);", "gbaRead 0 +1048576 @0");
    add(4, "cpu_read(dev, -1, 0);", "gbaRead FFFFFFFF +0 @0");
    add(4, "cpu_read(dev, 0x1FFFFFFFE, 0x100000010);", "gbaRead FFFFFFFE +16 @0");
    add(6, "ram_read(dev, 0x10000, 0x10000);", "saveRead 10000 +65536 @0");
    add(6, "ram_read(dev, -2, 0x100000001);", "saveRead FFFFFFFE +1 @0");
    add(3, "ram_write(dev, 0x0100, 0x100);", "gbSaveWrite A100 +256 @0");
    add(3, "ram_write(dev, 0xA100, 0x100);", "gbSaveWrite A100 +256 @0");
    add(3, "ram_write(dev, 0, 0x12000);", "gbSaveWrite A000 +8192 @0");
    add(3, "ram_write(dev, 0x5FFF, 1);", "gbSaveWrite FFFF +1 @0");
    add(3, "ram_write(dev, 0x12000, 1);", "gbSaveWrite A000 +1 @0");
    add(3, "ram_write(dev, -1, -1);", "gbSaveWrite FFFF +65535 @0");
    add(7, "ram_write(dev, 0x100, 0x100);", "saveWrite 100 +256 @0");
    add(7, "ram_write(dev, 0x12345678, 0x20000);", "saveWrite 12345678 +131072 @0");
    add(7, "ram_write(dev, -1, 0x100000008);", "saveWrite FFFFFFFF +8 @0");
    add(1, "rom_write(dev, 0x14000, 0x4000);", "gbRomWrite 4000 +16384 @0");
    add(1, "rom_write(dev, 0x0100, 0x10000);", "gbRomWrite 100 +0 @0");
    add(1, "rom_write(dev, -1, -1);", "gbRomWrite FFFF +65535 @0");
}

void NativesTest::transfersGoToTheirOperation()
{
    QFETCH(int, operate);
    QFETCH(QByteArray, statement);
    QFETCH(QString, operation);
    NativeBench bench(operate, kMebibyte);
    QVERIFY(bench.run(statement));
    QCOMPARE(bench.operations, QStringList{operation});
    QCOMPARE(bench.drive.calls, QStringList());
}

void NativesTest::transfersAdvanceByTheirLength_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<QByteArray>("native");
    QTest::addColumn<QString>("maximum");
    // The GB read reports against the ROM size also when it serves a save dump.
    QTest::newRow("GB ROM dump") << 0 << QByteArray("cpu_read") << "32768";
    QTest::newRow("GB flash write") << 1 << QByteArray("rom_write") << "32768";
    QTest::newRow("GB save dump") << 2 << QByteArray("cpu_read") << "1911";
    QTest::newRow("GB save write") << 3 << QByteArray("ram_write") << "32768";
    QTest::newRow("GBA ROM dump") << 4 << QByteArray("cpu_read") << "32768";
    QTest::newRow("GBA save dump") << 6 << QByteArray("ram_read") << "32768";
    QTest::newRow("GBA save write") << 7 << QByteArray("ram_write") << "32768";
}

// Of a write the answer counts what went over the drive, not what it carried.
void NativesTest::transfersAdvanceByTheirLength()
{
    QFETCH(int, operate);
    QFETCH(QByteArray, native);
    QFETCH(QString, maximum);
    NativeBench bench(operate);
    bench.job.cursor = 4;
    if (isWriteJob(operate))
        bench.setResults({512, 1, 0xFFFFFFFE});
    QVERIFY(bench.run("for (local i = 0; i < 3; i++) " + native + "(dev, i, 100);"));
    QCOMPARE(bench.progress(), (QStringList{"104/" + maximum, "204/" + maximum, "304/" + maximum}));
    const QStringList places = bench.operations.replaceInStrings(QRegularExpression(".*@"), "");
    QCOMPARE(places, (QStringList{"4", "104", "204"}));
    QCOMPARE(bench.job.cursor, 304);
    QCOMPARE(bench.job.failedOperation, QString());
}

void NativesTest::failedOperationEndsTheScript_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<QByteArray>("statement");
    QTest::addColumn<QString>("message");
    QTest::addColumn<quint32>("answer");
    const auto add = [](int operate, const char *statement, const char *message) {
        for (const quint32 answer : {0U, 0xFFFFFFFFU})
            QTest::addRow("operation %d answers %u: %s", operate, answer, statement)
                << operate << QByteArray(statement) << QString(message) << answer;
    };
    add(0, "cpu_read(dev, 0, 100);", "cpu_read: the reader did not answer");
    add(2, "cpu_read(dev, 0xA000, 100);", "cpu_read: the reader did not answer");
    add(4, "cpu_read(dev, 0, 100);", "cpu_read: the reader did not answer");
    add(6, "ram_read(dev, 0, 100);", "ram_read: the reader did not answer");
    add(0, "cpu_write(dev, 0x2000, 1);", "cpu_write: the reader did not take the command");
    add(1, "cpu_write(dev, 0x2000, 1, 0, 2);", "cpu_write: the reader did not take the command");
    add(1, "rom_write(dev, 0, 100);", "rom_write: the reader did not take the command");
    add(3, "ram_write(dev, 0, 100);", "ram_write: the reader did not take the command");
    add(7, "ram_write(dev, 0, 100);", "ram_write: the reader did not take the command");
}

void NativesTest::failedOperationEndsTheScript()
{
    QFETCH(int, operate);
    QFETCH(QByteArray, statement);
    QFETCH(QString, message);
    QFETCH(quint32, answer);
    NativeBench bench(operate);
    bench.job.cursor = 4;
    bench.setResults({answer});
    QVERIFY(!bench.run(statement + " print(\"went on\");"));
    QCOMPARE(bench.errors(), QStringList{message});
    QCOMPARE(bench.job.failedOperation, message);
    QCOMPARE(bench.operations.size(), 1);
    QVERIFY(!bench.logs().contains("went on"));
    QCOMPARE(bench.progress(), QStringList());
    QCOMPARE(bench.job.cursor, 4);
    QVERIFY(bench.job.hasTouchedCartridge);
}

void NativesTest::shortReadEndsTheScript_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<QByteArray>("native");
    QTest::newRow("GB ROM dump") << 0 << QByteArray("cpu_read");
    QTest::newRow("GB save dump") << 2 << QByteArray("cpu_read");
    QTest::newRow("GBA ROM dump") << 4 << QByteArray("cpu_read");
    QTest::newRow("GBA save dump") << 6 << QByteArray("ram_read");
}

// The bytes of the next read would land behind a hole.
void NativesTest::shortReadEndsTheScript()
{
    QFETCH(int, operate);
    QFETCH(QByteArray, native);
    NativeBench bench(operate);
    bench.setResults({512, 511});
    QVERIFY(!bench.run("for (local i = 0; i < 3; i++) " + native + "(dev, i, 512);"));
    QCOMPARE(bench.errors(), QStringList{native + ": only 511 of 512 bytes arrived"});
    QCOMPARE(bench.operations.size(), 2);
    QCOMPARE(bench.progress().size(), 1);
    QCOMPARE(bench.job.cursor, 512);
}

void NativesTest::emptyTransferMayAnswerZero_data()
{
    transfersAdvanceByTheirLength_data();
}

// Nothing was to be moved. That the reader cannot be reached is an error all the same.
void NativesTest::emptyTransferMayAnswerZero()
{
    QFETCH(int, operate);
    QFETCH(QByteArray, native);
    QFETCH(QString, maximum);
    NativeBench bench(operate);
    bench.setResults({0});
    QVERIFY(bench.run(native + "(dev, 0, 0);"));
    QCOMPARE(bench.progress(), QStringList{"0/" + maximum});
    QCOMPARE(bench.job.failedOperation, QString());
    bench.setResults({0xFFFFFFFF});
    QVERIFY(!bench.run(native + "(dev, 0, 0);"));
    QVERIFY(bench.job.failedOperation.startsWith(native + ": the reader did not "));
}

// The first one, which the others may only follow from.
void NativesTest::caughtFailureIsRemembered()
{
    NativeBench bench(0);
    bench.setResults({0, 0xFFFFFFFF});
    QVERIFY(bench.run("try { cpu_write(dev, 0x2000, 1); } catch (error) { print(error); }\n"
                      "try { cpu_read(dev, 0, 16); } catch (error) { print(error); }\n"
                      "cpu_read(dev, 0, 16);"));
    QCOMPARE(bench.logs(), (QStringList{"cpu_write: the reader did not take the command",
                                        "cpu_read: the reader did not answer"}));
    QCOMPARE(bench.job.failedOperation, bench.logs().first());
    QCOMPARE(bench.job.cursor, 16);
}

void NativesTest::oneReportACall()
{
    NativeBench bench(0);
    QVERIFY(bench.run("cpu_write(dev, 0x2000, 1);"));
    QCOMPARE(bench.progress(), QStringList());
    QVERIFY(bench.run("cpu_read(dev, 0, 0x4000); cpu_read(dev, 0, 0); cpu_read(dev, 0, 0x4000);"));
    QCOMPARE(bench.progress(), (QStringList{"16384/32768", "16384/32768", "32768/32768"}));
}

void NativesTest::transferStaysInsideTheBuffer_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<int>("bufferSize");
    QTest::addColumn<int>("cursor");
    QTest::addColumn<QByteArray>("statement");
    QTest::addColumn<QString>("message");
    const auto add = [](int operate, int bufferSize, int cursor, const char *statement,
                        const char *message) {
        QTest::addRow("operation %d at %d %s", operate, cursor, statement)
            << operate << bufferSize << cursor << QByteArray(statement)
            << QString(message) + QString(": outside the buffer of %1 bytes").arg(bufferSize);
    };
    add(0, 0x8000, 0x8000, "cpu_read(dev, 0, 1);", "cpu_read: cursor 32768, length 1");
    add(0, 0x8000, 1, "cpu_read(dev, 0, 0x8000);", "cpu_read: cursor 1, length 32768");
    add(0, 0x8000, 0, "cpu_read(dev, 0, -1);", "cpu_read: cursor 0, length 65535");
    add(0, 0, 0, "cpu_read(dev, 0, 1);", "cpu_read: cursor 0, length 1");
    add(2, 0x2000, 0x1FFF, "cpu_read(dev, 0xA000, 2);", "cpu_read: cursor 8191, length 2");
    add(4, 0x8000, 0, "cpu_read(dev, 0, -1);", "cpu_read: cursor 0, length 1048576");
    add(4, 0x8000, 0x8000, "cpu_read(dev, 0, 2);", "cpu_read: cursor 32768, length 2");
    add(6, 0x8000, 0, "ram_read(dev, 0, 0x8001);", "ram_read: cursor 0, length 32769");
    add(6, 0x8000, 0, "ram_read(dev, 0, -1);", "ram_read: cursor 0, length 4294967295");
    add(6, 0x8000, 0x7FFF, "ram_read(dev, 0, -1);", "ram_read: cursor 32767, length 4294967295");
    add(3, 0x2000, 0, "ram_write(dev, 0, 0x4000);", "ram_write: cursor 0, length 16384");
    add(7, 0x200, 0x200, "ram_write(dev, 0, 1);", "ram_write: cursor 512, length 1");
    add(7, 0x200, 0, "ram_write(dev, 0, -512);", "ram_write: cursor 0, length 4294966784");
    add(1, 0x8000, 0x7F00, "rom_write(dev, 0x4000, 0x101);", "rom_write: cursor 32512, length 257");
    add(1, 0, 0, "rom_write(dev, 0x4000, 480);", "rom_write: cursor 0, length 480");
}

void NativesTest::transferStaysInsideTheBuffer()
{
    QFETCH(int, operate);
    QFETCH(int, bufferSize);
    QFETCH(int, cursor);
    QFETCH(QByteArray, statement);
    QFETCH(QString, message);
    NativeBench bench(operate, bufferSize);
    bench.job.cursor = cursor;
    QVERIFY(!bench.run(statement));
    QCOMPARE(bench.errors(), QStringList{message});
    QCOMPARE(bench.operations, QStringList());
    QCOMPARE(bench.progress(), QStringList());
    QCOMPARE(bench.job.cursor, cursor);
}

void NativesTest::transferToTheLastByteIsAllowed_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<QByteArray>("native");
    QTest::newRow("GB ROM dump") << 0 << QByteArray("cpu_read");
    QTest::newRow("GB flash write") << 1 << QByteArray("rom_write");
    QTest::newRow("GB save dump") << 2 << QByteArray("cpu_read");
    QTest::newRow("GB save write") << 3 << QByteArray("ram_write");
    QTest::newRow("GBA ROM dump") << 4 << QByteArray("cpu_read");
    QTest::newRow("GBA save dump") << 6 << QByteArray("ram_read");
    QTest::newRow("GBA save write") << 7 << QByteArray("ram_write");
}

void NativesTest::transferToTheLastByteIsAllowed()
{
    QFETCH(int, operate);
    QFETCH(QByteArray, native);
    NativeBench bench(operate, 0x8000);
    QVERIFY(bench.run(native + "(dev, 0, 0x8000);" + native + "(dev, 0, 0);"));
    QCOMPARE(bench.operations.size(), 2);
    QVERIFY(bench.operations.last().endsWith("+0 @32768"));
    QCOMPARE(bench.job.cursor, 0x8000);
    QVERIFY(!bench.run(native + "(dev, 0, 1);"));
}

void NativesTest::batchesAreSentAsOne_data()
{
    QTest::addColumn<int>("integers");
    QTest::addColumn<QString>("operation");
    const QString pairs = " 0<-1 2<-3 4<-5 6<-7 8<-9 A<-B C<-D E<-F";
    for (int integers = 2; integers <= 19; ++integers) {
        const int count = std::min(integers / 2, 8);
        QTest::addRow("%d integers", integers) << integers << "gbWrite" + pairs.left(5 * count);
    }
}

void NativesTest::batchesAreSentAsOne()
{
    QFETCH(int, integers);
    QFETCH(QString, operation);
    for (int operate = 0; operate <= 3; ++operate) {
        NativeBench bench(operate);
        QVERIFY(bench.run(batch(integers)));
        QCOMPARE(bench.operations, QStringList{operation});
        QCOMPARE(bench.job.cursor, 0);
    }
}

void NativesTest::batchKeepsLow32Bits()
{
    NativeBench bench(0);
    QVERIFY(bench.run("cpu_write(dev, 0x123452000, 0x1234567FF, -1, -2);"));
    QCOMPARE(bench.operations, QStringList{"gbWrite 23452000<-234567FF FFFFFFFF<-FFFFFFFE"});
}

void NativesTest::ninthPairIsNotLookedAt()
{
    NativeBench bench(0);
    const QByteArray eightPairs = batch(16).chopped(2);
    QVERIFY(bench.run(eightPairs + ", \"no\", 1.5, null);"));
    QCOMPARE(bench.operations, QStringList{"gbWrite 0<-1 2<-3 4<-5 6<-7 8<-9 A<-B C<-D E<-F"});
}

void NativesTest::batchDoesNotLookAtDev()
{
    NativeBench bench(0);
    QVERIFY(bench.run("cpu_write(null, 0x2000, 1); cpu_write(\"\", 1, 2);"));
    QCOMPARE(bench.operations, (QStringList{"gbWrite 2000<-1", "gbWrite 1<-2"}));
}

void NativesTest::flashOpcodeFollowsTheLowestBit_data()
{
    QTest::addColumn<QByteArray>("config");
    QTest::addColumn<int>("opcode");
    QTest::newRow("0") << QByteArray("0") << 14;
    QTest::newRow("1") << QByteArray("1") << 15;
    QTest::newRow("2") << QByteArray("2") << 14;
    QTest::newRow("3") << QByteArray("3") << 15;
    QTest::newRow("-1") << QByteArray("-1") << 15;
    QTest::newRow("-2") << QByteArray("-2") << 14;
    QTest::newRow("1 << 32") << QByteArray("0x100000000") << 14;
    QTest::newRow("more arguments") << QByteArray("1, 0, null") << 15;
}

void NativesTest::flashOpcodeFollowsTheLowestBit()
{
    QFETCH(QByteArray, config);
    QFETCH(int, opcode);
    NativeBench bench(1);
    // The other opcode first, so that the call has something to change.
    selectGbFlashOpcode(opcode == 14 ? 1 : 0);
    QVERIFY(bench.run("rom_flash_cfg(dev, " + config + ");"));
    QVERIFY(deviceOps.gbRomWrite == (opcode == 14 ? gbFlashWrite : gbFlashWriteAlt));
    QCOMPARE(bench.progress(), QStringList());
    QCOMPARE(bench.drive.calls, QStringList());
    QVERIFY(bench.run("rom_write(dev, 0x4000, 480);"));
    QCOMPARE(bench.drive.runs.size(), 1);
    QCOMPARE(int{bench.drive.runs[0].bytes[2]}, opcode);
}

void NativesTest::flashOpcodeLastsUntilTheNextModeSelection()
{
    NativeBench bench(1);
    QVERIFY(bench.run("rom_flash_cfg(dev, 1);"));
    QVERIFY(bench.run("rom_write(dev, 0x4000, 480);"));
    QVERIFY(deviceOps.gbRomWrite == gbFlashWriteAlt);
    selectGbMode();
    QVERIFY(deviceOps.gbRomWrite == gbFlashWrite);
}

void NativesTest::ramEraseSendsItsCommand_data()
{
    QTest::addColumn<QByteArray>("statement");
    for (const char *statement :
         {"ram_erase();", "ram_erase(dev);", "ram_erase(null, 1.5, \"x\");"})
        QTest::newRow(statement) << QByteArray(statement);
}

void NativesTest::ramEraseSendsItsCommand()
{
    QFETCH(QByteArray, statement);
    NativeBench bench(7);
    waits = 0;
    setPollWaiter(countWait);
    const bool succeeded = bench.run(statement);
    setPollWaiter(nullptr);
    QVERIFY(succeeded);
    QCOMPARE(bench.drive.runs.size(), 1);
    QCOMPARE(bench.drive.runs[0].path, QString(kCommandPath));
    QCOMPARE(bench.drive.runs[0].bytes, composeBlock(3, 7));
    QCOMPARE(bench.drive.reads.size(), 0);
    QCOMPARE(waits, 0);
    QCOMPARE(bench.operations, QStringList());
    QCOMPARE(bench.progress(), QStringList());
}

// What may have changed the cartridge is no mere read.
void NativesTest::writesToTheBusAreNoticed_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<int>("saveType");
    QTest::addColumn<QByteArray>("statement");
    QTest::addColumn<bool>("writes");
    const auto add = [](const char *name, int operate, int saveType, const char *statement,
                        bool writes) {
        QTest::newRow(name) << operate << saveType << QByteArray(statement) << writes;
    };
    add("GB read", 0, 0, "cpu_read(dev, 0, 4);", false);
    add("GB bank switch", 0, 0, "cpu_write(dev, 0x2000, 1);", true);
    add("GB bank switch of a save read", 2, 0, "cpu_write(dev, 0x4000, 1);", true);
    add("GBA read", 4, 0, "cpu_read(dev, 0, 4);", false);
    add("SRAM", 6, 0, "ram_read(dev, 0, 4);", false);
    add("FLASH", 6, 1, "ram_read(dev, 0, 4);", true);
    add("EEPROM", 6, 2, "ram_read(dev, 0, 4);", true);
    add("GB save", 3, 0, "ram_write(dev, 0, 4);", true);
    add("GBA save", 7, 0, "ram_write(dev, 0, 4);", true);
    add("erase", 7, 1, "ram_erase();", true);
    add("flash", 1, 0, "rom_write(dev, 0, 4);", true);
    add("flash configuration", 1, 0, "rom_flash_cfg(dev, 1);", false);
    add("refused", 0, 0, "cpu_write(dev, 0x2000, 1.5);", false);
}

void NativesTest::writesToTheBusAreNoticed()
{
    QFETCH(int, operate);
    QFETCH(int, saveType);
    QFETCH(QByteArray, statement);
    QFETCH(bool, writes);
    NativeBench bench(operate);
    bench.job.job.saveType = saveType;
    bench.setResults({4});
    bench.run(statement);
    QCOMPARE(bench.job.hasWrittenToBus, writes);
}

void NativesTest::unwrittenRamEraseEndsTheScript()
{
    for (const DriveCall call : {DriveCall::OpenWrite, DriveCall::Write}) {
        NativeBench bench(7);
        bench.drive.failNext(call);
        QVERIFY(!bench.run("ram_erase();"));
        QCOMPARE(bench.errors(), QStringList{"ram_erase: the reader did not take the command"});
        QCOMPARE(bench.job.failedOperation, bench.errors().first());
        QVERIFY(bench.job.hasTouchedCartridge);
    }
}

GBDRIVER_TEST(NativesTest, core)
#include "natives_test.moc"
