// GBA bus access outside save memory, and the reader's information block.
#include "device/device_commands.h"

#include "composed_block.h"
#include "recording_drive.h"
#include "test_bytes.h"
#include "test_class.h"

#include <QtTest>

#include <memory>
#include <vector>

class GbaBusCommandsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void readAddressIsOneBlock_data();
    void readAddressIsOneBlock();
    void halfwordPairsSendOneBlockEach_data();
    void halfwordPairsSendOneBlockEach();
    void halfwordFieldsAreFullWidth();
    void deviceInfoAnswersWithTheIdentityFile();
    void deviceInfoResults();

private:
    std::unique_ptr<RecordingDrive> m_drive;
};

void GbaBusCommandsTest::init()
{
    m_drive = std::make_unique<RecordingDrive>();
    attachReader(m_drive.get());
}

void GbaBusCommandsTest::readAddressIsOneBlock_data()
{
    QTest::addColumn<std::uint32_t>("address");
    for (const std::uint32_t address : {0U, 1U, 0x10000U, 0x123456U, 0xFFFFFFU, 0xFF000001U})
        QTest::addRow("%08X", address) << address;
}

void GbaBusCommandsTest::readAddressIsOneBlock()
{
    QFETCH(std::uint32_t, address);
    QCOMPARE(gbaSetReadAddress(address), 512U);
    QCOMPARE(m_drive->runs.size(), 1);
    QCOMPARE(m_drive->runs[0].bytes, composeBlock(3, 6, {{4, address & 0xFFFFFF, 3}}));
    QVERIFY(m_drive->reads.isEmpty());
}

void GbaBusCommandsTest::halfwordPairsSendOneBlockEach_data()
{
    QTest::addColumn<int>("pairs");
    for (const int pairs : {0, 1, 2, 100})
        QTest::addRow("%d", pairs) << pairs;
}

void GbaBusCommandsTest::halfwordPairsSendOneBlockEach()
{
    QFETCH(int, pairs);
    std::vector<std::uint32_t> addresses;
    std::vector<std::uint32_t> values;
    QByteArray expected;
    for (int i = 0; i < pairs; ++i) {
        addresses.push_back(0x09FE5000U + static_cast<std::uint32_t>(i));
        values.push_back(static_cast<std::uint32_t>(i * 601) & 0xFFFF);
        expected += composeBlock(3, 19, {{4, addresses.back(), 4}, {8, values.back(), 2}});
    }
    QCOMPARE(gbaWriteHalfwords(addresses.data(), values.data(), static_cast<std::uint32_t>(pairs)),
             static_cast<std::uint32_t>(expected.size()));
    QCOMPARE(m_drive->runs.size(), 1);
    QCOMPARE(firstDifference(m_drive->runs[0].bytes, expected), QByteArray());
}

void GbaBusCommandsTest::halfwordFieldsAreFullWidth()
{
    const std::uint32_t address = 0xFEDCBA98;
    const std::uint32_t value = 0x7654A5C3;
    QCOMPARE(gbaWriteHalfwords(&address, &value, 1), 512U);
    QCOMPARE(m_drive->runs[0].bytes.mid(3, 9).toHex(), QByteArray("0098badcfec3a50000"));
}

void GbaBusCommandsTest::deviceInfoAnswersWithTheIdentityFile()
{
    const QByteArray reply = patternBytes(1024, 31);
    m_drive->setContent(kIdentityPath, reply);
    QByteArray info(16, '\0');
    QCOMPARE(queryDeviceInfo(info.data(), 16), 1U);
    QCOMPARE(info, reply.left(16));
    QCOMPARE(m_drive->runs.size(), 1);
    QCOMPARE(m_drive->runs[0].bytes, composeBlock(0xF0, 4));
    QCOMPARE(m_drive->calls, QStringList({"create E:\\CMD.CMD", "write 512 at 0", "close",
                                          "open E:\\K-DRIVER.DMP unbuffered", "seek 0",
                                          "read 1024 at 0", "close"}));
}

void GbaBusCommandsTest::deviceInfoResults()
{
    QByteArray info(16, '\x11');
    m_drive->failNext(DriveCall::OpenWrite);
    QCOMPARE(queryDeviceInfo(info.data(), 16), 0U);
    QVERIFY(m_drive->reads.isEmpty());
    QCOMPARE(info, QByteArray(16, '\x11'));

    m_drive->failNext(DriveCall::Write); // not 0: the query goes on
    QCOMPARE(queryDeviceInfo(info.data(), 16), 1U);
    m_drive->failNext(DriveCall::OpenRead); // a failed read is not 0 either
    QCOMPARE(queryDeviceInfo(info.data(), 16), 1U);
    m_drive->setContent(kIdentityPath, QByteArray());
    QCOMPARE(queryDeviceInfo(info.data(), 16), 0U);
}

GBDRIVER_TEST(GbaBusCommandsTest, none)
#include "gba_bus_commands_test.moc"
