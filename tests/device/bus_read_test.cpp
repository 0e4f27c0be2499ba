// Reading a cartridge's bus through the dump file.
#include "device/device_ops.h"

#include "composed_block.h"
#include "recording_drive.h"
#include "test_bytes.h"
#include "test_class.h"

#include <QtTest>

#include <algorithm>
#include <memory>

class BusReadTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void gbReadIsAPlainReadOfTheDumpFile_data();
    void gbReadIsAPlainReadOfTheDumpFile();
    void gbaReadSetsTheAddressAndReadsFromTheStart_data();
    void gbaReadSetsTheAddressAndReadsFromTheStart();
    void readFailures();

private:
    std::unique_ptr<RecordingDrive> m_drive;
};

void BusReadTest::init()
{
    m_drive = std::make_unique<RecordingDrive>();
    attachReader(m_drive.get());
}

void BusReadTest::gbReadIsAPlainReadOfTheDumpFile_data()
{
    QTest::addColumn<std::uint32_t>("address");
    QTest::addColumn<std::uint32_t>("length");
    QTest::newRow("header") << 0x100U << 0x50U;
    QTest::newRow("start") << 0U << 0x4000U;
    QTest::newRow("switchable bank") << 0x4000U << 0x4000U;
    QTest::newRow("save memory") << 0xA000U << 0x2000U;
    QTest::newRow("one byte") << 0xBFFFU << 1U;
}

void BusReadTest::gbReadIsAPlainReadOfTheDumpFile()
{
    QFETCH(std::uint32_t, address);
    QFETCH(std::uint32_t, length);
    QByteArray destination(static_cast<int>(length), '\0');
    QCOMPARE(gbReadRom(address, destination.data(), length), length);
    QCOMPARE(
        m_drive->calls,
        QStringList({"open E:\\DUMP.ROM unbuffered", QString("seek %1").arg(address),
                     QString("read %1 at %2").arg(std::max(length, 1024U)).arg(address), "close"}));
    QCOMPARE(destination,
             m_drive->content(kDumpPath).mid(static_cast<int>(address), static_cast<int>(length)));
}

void BusReadTest::gbaReadSetsTheAddressAndReadsFromTheStart_data()
{
    QTest::addColumn<std::uint32_t>("address");
    QTest::addColumn<std::uint32_t>("length");
    QTest::newRow("start") << 0U << 8192U;
    QTest::newRow("far") << 0xFF0000U << 0x10000U;
    QTest::newRow("short") << 0x1234U << 10U;
}

void BusReadTest::gbaReadSetsTheAddressAndReadsFromTheStart()
{
    QFETCH(std::uint32_t, address);
    QFETCH(std::uint32_t, length);
    QByteArray destination(static_cast<int>(length), '\0');
    QCOMPARE(gbaReadRom(address, destination.data(), length), length);
    QCOMPARE(m_drive->calls,
             QStringList({"create E:\\CMD.CMD", "write 512 at 0", "close",
                          "open E:\\DUMP.ROM unbuffered", "seek 0",
                          QString("read %1 at 0").arg(std::max(length, 1024U)), "close"}));
    QCOMPARE(m_drive->runs[0].bytes, composeBlock(3, 6, {{4, address & 0xFFFFFF, 3}}));
    QCOMPARE(destination, m_drive->content(kDumpPath).left(static_cast<int>(length)));
}

void BusReadTest::readFailures()
{
    QByteArray destination(2048, '\0');
    for (const auto read : {gbReadRom, gbaReadRom}) {
        m_drive->failNext(DriveCall::OpenRead);
        QCOMPARE(read(0, destination.data(), 2048), 0xFFFFFFFFU);
        m_drive->failNext(DriveCall::Read);
        QCOMPARE(read(0, destination.data(), 16), 0xFFFFFFFFU);
        m_drive->failNext(DriveCall::OpenWrite); // only the GBA read sends, and does not look
        QCOMPARE(read(0, destination.data(), 2048), 2048U);
        QCOMPARE(read(0, nullptr, 2048), 0U);
    }
}

GBDRIVER_TEST(BusReadTest, none)
#include "bus_read_test.moc"
