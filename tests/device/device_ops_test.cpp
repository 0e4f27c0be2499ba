// The cartridge access table: what each selection binds and sends.
#include "device/device_ops.h"

#include "composed_block.h"
#include "recording_drive.h"
#include "test_bytes.h"

#include "device/device_commands.h"
#include "device/device_link.h"
#include "test_class.h"

#include <QtTest>

#include <memory>

namespace
{

struct SaveBinding {
    std::uint32_t type;
    DeviceOperation read;
    DeviceOperation write;
};

const SaveBinding kSaveBindings[] = {
    {0, gbaSramRead, gbaSramWrite},           {1, gbaFlash64kRead, gbaFlash64kWrite},
    {2, gbaFlash128kRead, gbaFlash128kWrite}, {3, gbaEeprom512Read, gbaEeprom512Write},
    {4, gbaEeprom8kRead, gbaEeprom8kWrite},
};

std::uint32_t markedOperation(std::uint32_t /*first*/, void * /*buffer*/, std::uint32_t /*length*/)
{
    return 12345;
}

std::uint32_t markedPairs(const std::uint32_t * /*addresses*/, const std::uint32_t * /*values*/,
                          std::uint32_t /*count*/)
{
    return 54321;
}

} // namespace

class DeviceOpsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void slotsAreNullAtStart(); // must run first: bindings last for the process
    void gbModeBindsItsSlotsOnly();
    void gbaModeBindsItsSlotsOnly();
    void modesSendTheirTwoBlocks_data();
    void modesSendTheirTwoBlocks();
    void modeResultIsTheSecondBlocks_data();
    void modeResultIsTheSecondBlocks();
    void failedModeSelectionStillBinds();
    void flashFlagChoosesTheOpcode_data();
    void flashFlagChoosesTheOpcode();
    void gbModeGoesBackToTheFirstFlashOpcode();
    void saveTypeBindsItsPair();
    void otherSaveTypesChangeNothing_data();
    void otherSaveTypesChangeNothing();
    void gbaModeGoesBackToSram();
    void spareIsBoundOnlyByANonZeroFlag();

private:
    std::unique_ptr<RecordingDrive> m_drive;
};

void DeviceOpsTest::init()
{
    m_drive = std::make_unique<RecordingDrive>();
    attachReader(m_drive.get());
}

void DeviceOpsTest::slotsAreNullAtStart()
{
    QVERIFY(deviceOps.gbRead == nullptr);
    QVERIFY(deviceOps.gbWrite == nullptr);
    QVERIFY(deviceOps.gbRomWrite == nullptr);
    QVERIFY(deviceOps.gbSaveWrite == nullptr);
    QVERIFY(deviceOps.gbaRead == nullptr);
    QVERIFY(deviceOps.gbaWrite == nullptr);
    QVERIFY(deviceOps.saveRead == nullptr);
    QVERIFY(deviceOps.saveWrite == nullptr);
    QVERIFY(deviceOps.spare == nullptr);
    QVERIFY(m_drive->calls.isEmpty());
}

void DeviceOpsTest::gbModeBindsItsSlotsOnly()
{
    deviceOps = DeviceOps();
    deviceOps.gbaRead = markedOperation;
    deviceOps.gbaWrite = markedPairs;
    deviceOps.saveRead = markedOperation;
    deviceOps.saveWrite = markedOperation;
    deviceOps.spare = markedOperation;
    QCOMPARE(selectGbMode(), 512U);
    QVERIFY(deviceOps.gbRead == gbReadRom);
    QVERIFY(deviceOps.gbWrite == gbWriteBytes);
    QVERIFY(deviceOps.gbRomWrite == gbFlashWrite);
    QVERIFY(deviceOps.gbSaveWrite == gbRamWrite);
    QVERIFY(deviceOps.gbaRead == markedOperation);
    QVERIFY(deviceOps.gbaWrite == markedPairs);
    QVERIFY(deviceOps.saveRead == markedOperation);
    QVERIFY(deviceOps.saveWrite == markedOperation);
    QVERIFY(deviceOps.spare == markedOperation);
}

void DeviceOpsTest::gbaModeBindsItsSlotsOnly()
{
    deviceOps = DeviceOps();
    deviceOps.gbRead = markedOperation;
    deviceOps.gbWrite = markedPairs;
    deviceOps.gbRomWrite = markedOperation;
    deviceOps.gbSaveWrite = markedOperation;
    QCOMPARE(selectGbaMode(), 512U);
    QVERIFY(deviceOps.gbaRead == gbaReadRom);
    QVERIFY(deviceOps.gbaWrite == gbaWriteHalfwords);
    QVERIFY(deviceOps.saveRead == gbaSramRead);
    QVERIFY(deviceOps.saveWrite == gbaSramWrite);
    QVERIFY(deviceOps.spare != nullptr);
    QVERIFY(deviceOps.gbRead == markedOperation);
    QVERIFY(deviceOps.gbWrite == markedPairs);
    QVERIFY(deviceOps.gbRomWrite == markedOperation);
    QVERIFY(deviceOps.gbSaveWrite == markedOperation);
}

void DeviceOpsTest::modesSendTheirTwoBlocks_data()
{
    QTest::addColumn<bool>("gba");
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("second");
    QTest::newRow("GB") << false << composeBlock(0xF0, 2) << composeBlock(2, 1);
    QTest::newRow("GBA") << true << composeBlock(0xF0, 3) << composeBlock(3, 1);
}

void DeviceOpsTest::modesSendTheirTwoBlocks()
{
    QFETCH(bool, gba);
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    QCOMPARE(gba ? selectGbaMode() : selectGbMode(), 512U);
    QCOMPARE(m_drive->runs.size(), 2);
    QCOMPARE(m_drive->runs[0].bytes, first);
    QCOMPARE(m_drive->runs[1].bytes, second);
    const QStringList command = {"create E:\\CMD.CMD", "write 512 at 0", "close"};
    QCOMPARE(m_drive->calls, command + command);
}

void DeviceOpsTest::modeResultIsTheSecondBlocks_data()
{
    QTest::addColumn<bool>("gba");
    for (const bool gba : {false, true})
        QTest::newRow(gba ? "GBA" : "GB") << gba;
}

void DeviceOpsTest::modeResultIsTheSecondBlocks()
{
    QFETCH(bool, gba);
    const auto select = gba ? selectGbaMode : selectGbMode;
    m_drive->failNext(DriveCall::OpenWrite);
    QCOMPARE(select(), 512U);
    m_drive->failNext(DriveCall::OpenWrite, 1);
    QCOMPARE(select(), 0U);
    m_drive->failNext(DriveCall::OpenWrite, 0, 2);
    QCOMPARE(select(), 0U);
    m_drive->failNext(DriveCall::Write, 1);
    QCOMPARE(select(), 0xFFFFFFFFU);
    QCOMPARE(select(), 512U);
}

void DeviceOpsTest::failedModeSelectionStillBinds()
{
    deviceOps = DeviceOps();
    m_drive->removeDrive('E');
    QCOMPARE(selectGbMode(), 0U);
    QCOMPARE(selectGbaMode(), 0U);
    QVERIFY(deviceOps.gbRead == gbReadRom);
    QVERIFY(deviceOps.gbaRead == gbaReadRom);
    QVERIFY(deviceOps.saveRead == gbaSramRead);
}

void DeviceOpsTest::flashFlagChoosesTheOpcode_data()
{
    QTest::addColumn<std::uint32_t>("flag");
    QTest::addColumn<int>("opcode");
    QTest::newRow("0") << 0U << 14;
    QTest::newRow("1") << 1U << 15;
    QTest::newRow("2") << 2U << 15;
    QTest::newRow("0x80000000") << 0x80000000U << 15;
}

void DeviceOpsTest::flashFlagChoosesTheOpcode()
{
    QFETCH(std::uint32_t, flag);
    QFETCH(int, opcode);
    selectGbMode();
    m_drive->forgetCalls();
    QCOMPARE(selectGbFlashOpcode(flag), 0U);
    QVERIFY(m_drive->calls.isEmpty());
    QVERIFY(deviceOps.gbRomWrite == (opcode == 14 ? gbFlashWrite : gbFlashWriteAlt));
    QByteArray source(16, 'f');
    QCOMPARE(deviceOps.gbRomWrite(0, source.data(), 8), 512U);
    QCOMPARE(static_cast<int>(m_drive->runs[0].bytes[2]), opcode);
}

void DeviceOpsTest::gbModeGoesBackToTheFirstFlashOpcode()
{
    selectGbFlashOpcode(1);
    QVERIFY(deviceOps.gbRomWrite == gbFlashWriteAlt);
    selectGbaMode();
    QVERIFY(deviceOps.gbRomWrite == gbFlashWriteAlt);
    selectGbMode();
    QVERIFY(deviceOps.gbRomWrite == gbFlashWrite);
}

void DeviceOpsTest::saveTypeBindsItsPair()
{
    for (const SaveBinding &binding : kSaveBindings) {
        QCOMPARE(selectGbaSaveType(binding.type), 0U);
        QVERIFY2(deviceOps.saveRead == binding.read, qPrintable(QString::number(binding.type)));
        QVERIFY2(deviceOps.saveWrite == binding.write, qPrintable(QString::number(binding.type)));
    }
    QVERIFY(m_drive->calls.isEmpty());
}

void DeviceOpsTest::otherSaveTypesChangeNothing_data()
{
    QTest::addColumn<std::uint32_t>("type");
    for (const std::uint32_t type : {5U, 6U, 255U, 256U, 0x80000000U, 0xFFFFFFFFU})
        QTest::addRow("%u", type) << type;
}

void DeviceOpsTest::otherSaveTypesChangeNothing()
{
    QFETCH(std::uint32_t, type);
    for (const SaveBinding &binding : kSaveBindings) {
        selectGbaSaveType(binding.type);
        QCOMPARE(selectGbaSaveType(type), 0U);
        QVERIFY(deviceOps.saveRead == binding.read);
        QVERIFY(deviceOps.saveWrite == binding.write);
    }
}

void DeviceOpsTest::gbaModeGoesBackToSram()
{
    selectGbaSaveType(4);
    QCOMPARE(selectGbMode(), 512U);
    QVERIFY(deviceOps.saveRead == gbaEeprom8kRead);
    QCOMPARE(selectGbaMode(), 512U);
    QVERIFY(deviceOps.saveRead == gbaSramRead);
    QVERIFY(deviceOps.saveWrite == gbaSramWrite);
}

void DeviceOpsTest::spareIsBoundOnlyByANonZeroFlag()
{
    deviceOps.spare = nullptr;
    QCOMPARE(bindSpareNoop(0), 0U);
    QVERIFY(deviceOps.spare == nullptr);
    for (const std::uint32_t flag : {1U, 2U, 0xFFFFFFFFU}) {
        deviceOps.spare = markedOperation;
        QCOMPARE(bindSpareNoop(flag), 0U);
        QVERIFY(deviceOps.spare != markedOperation);
        QByteArray untouched(8, 'u');
        QCOMPARE(deviceOps.spare(7, untouched.data(), 8), 0U);
        QCOMPARE(untouched, QByteArray(8, 'u'));
    }
    deviceOps.spare = markedOperation;
    bindSpareNoop(0);
    QVERIFY(deviceOps.spare == markedOperation);
    QVERIFY(m_drive->calls.isEmpty());
}

GBDRIVER_TEST(DeviceOpsTest, none)
#include "device_ops_test.moc"
