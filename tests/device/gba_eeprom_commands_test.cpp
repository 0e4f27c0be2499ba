// EEPROM commands: one command for a whole read, two halves of 256 bytes for a write.
#include "device/device_commands.h"

#include "composed_block.h"
#include "recording_drive.h"
#include "test_bytes.h"
#include "test_class.h"

#include <QtTest>

#include <algorithm>
#include <memory>

namespace
{

constexpr int kPiece = 512;
constexpr int kHalf = 256;

// One half of an EEPROM write; its length field stays zero.
QByteArray halfBlock(int opcode, std::uint32_t address, int addressBytes, const QByteArray &half)
{
    return composeBlock(3, opcode, {{4, address, addressBytes}}, 12, half);
}

QByteArray padded(const QByteArray &bytes, int size)
{
    return bytes + QByteArray(size - bytes.size(), '\xEE');
}

} // namespace

class GbaEepromCommandsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void readIsOneCommandForTheWholeLength_data();
    void readIsOneCommandForTheWholeLength();
    void readPassesItsCountUp();
    void smallEepromWritesItsFirst512Bytes_data();
    void smallEepromWritesItsFirst512Bytes();
    void blockWriteIsTwoHalves_data();
    void blockWriteIsTwoHalves();
    void largeEepromWritesPiecesOf512_data();
    void largeEepromWritesPiecesOf512();
    void tooShortWritesSendNothing_data();
    void tooShortWritesSendNothing();
    void halfWriteResults();
    void largeWriteReturnsItsLengthWhateverFails();

private:
    std::unique_ptr<RecordingDrive> m_drive;
};

void GbaEepromCommandsTest::init()
{
    m_drive = std::make_unique<RecordingDrive>();
    attachReader(m_drive.get());
}

void GbaEepromCommandsTest::readIsOneCommandForTheWholeLength_data()
{
    QTest::addColumn<int>("opcode");
    QTest::addColumn<std::uint32_t>("address");
    QTest::addColumn<int>("length");
    for (const int opcode : {12, 13}) {
        for (const int length : {0, 1, 512, 1023, 1024, 4096, 8192, 65535})
            QTest::addRow("opcode %d, %d bytes", opcode, length)
                << opcode << std::uint32_t{0} << length;
        QTest::addRow("opcode %d, address", opcode) << opcode << std::uint32_t{0x1E00} << 512;
        QTest::addRow("opcode %d, high bits", opcode) << opcode << std::uint32_t{0xAB1234} << 512;
    }
}

void GbaEepromCommandsTest::readIsOneCommandForTheWholeLength()
{
    QFETCH(int, opcode);
    QFETCH(std::uint32_t, address);
    QFETCH(int, length);
    const auto read = opcode == 12 ? gbaEeprom512Read : gbaEeprom8kRead;
    const auto size = static_cast<std::uint32_t>(length);
    QByteArray destination(length + 8, '\x5C');
    QCOMPARE(read(address, destination.data(), size), size);
    QCOMPARE(m_drive->calls,
             QStringList({"create E:\\CMD.CMD", "write 512 at 0", "close",
                          "open E:\\K-DRIVER.DMP unbuffered", "seek 0",
                          QString("read %1 at 0").arg(std::max(length, 1024)), "close"}));
    QCOMPARE(m_drive->runs[0].bytes,
             composeBlock(3, opcode, {{4, address & 0xFFFF, 2}, {8, size, 2}}));
    QCOMPARE(destination.left(length), m_drive->content(kIdentityPath).left(length));
    QCOMPARE(destination.mid(length), QByteArray(8, '\x5C'));
}

void GbaEepromCommandsTest::readPassesItsCountUp()
{
    QByteArray destination(8192, '\0');
    for (const auto read : {gbaEeprom512Read, gbaEeprom8kRead}) {
        m_drive->failNext(DriveCall::OpenRead);
        QCOMPARE(read(0, destination.data(), 512), 0xFFFFFFFFU);
        m_drive->failNext(DriveCall::Read);
        QCOMPARE(read(0, destination.data(), 8192), 0xFFFFFFFFU);
        m_drive->failNext(DriveCall::OpenWrite); // the command's own result is not looked at
        QCOMPARE(read(0, destination.data(), 512), 512U);
    }
    m_drive->setContent(kIdentityPath, patternBytes(5000, 1));
    QCOMPARE(gbaEeprom8kRead(0, destination.data(), 8192), 5000U);
}

void GbaEepromCommandsTest::smallEepromWritesItsFirst512Bytes_data()
{
    QTest::addColumn<std::uint32_t>("address");
    QTest::addColumn<int>("length");
    QTest::newRow("512 bytes") << std::uint32_t{0} << 512;
    QTest::newRow("513 bytes") << std::uint32_t{0} << 513;
    QTest::newRow("8192 bytes") << std::uint32_t{0} << 8192;
    QTest::newRow("address is not used") << std::uint32_t{0x12345678} << 512;
}

void GbaEepromCommandsTest::smallEepromWritesItsFirst512Bytes()
{
    QFETCH(std::uint32_t, address);
    QFETCH(int, length);
    const QByteArray before = patternBytes(length, 3);
    QByteArray source = before;
    QCOMPARE(gbaEeprom512Write(address, source.data(), static_cast<std::uint32_t>(length)), 512U);
    QCOMPARE(m_drive->runs.size(), 2);
    QCOMPARE(m_drive->runs[0].bytes, halfBlock(14, 0, 4, before.left(kHalf)));
    QCOMPARE(m_drive->runs[1].bytes, halfBlock(14, 256, 4, before.mid(kHalf, kHalf)));
    QCOMPARE(source, before);
}

void GbaEepromCommandsTest::blockWriteIsTwoHalves_data()
{
    QTest::addColumn<std::uint32_t>("address");
    for (const std::uint32_t address : {0U, 512U, 0x1E00U, 0xFFU, 0xFF00U, 0xFFFFU, 0xABCD0200U})
        QTest::addRow("%08X", address) << address;
}

void GbaEepromCommandsTest::blockWriteIsTwoHalves()
{
    QFETCH(std::uint32_t, address);
    const QByteArray source = patternBytes(kPiece, 5);
    QCOMPARE(gbaEepromWriteBlock(address, source.constData()), 512U);
    QCOMPARE(m_drive->runs.size(), 2);
    QCOMPARE(m_drive->runs[0].bytes, halfBlock(15, address & 0xFFFF, 2, source.left(kHalf)));
    QCOMPARE(m_drive->runs[1].bytes, halfBlock(15, (address + 256) & 0xFFFF, 2, source.mid(kHalf)));
}

void GbaEepromCommandsTest::largeEepromWritesPiecesOf512_data()
{
    QTest::addColumn<std::uint32_t>("address");
    QTest::addColumn<int>("length");
    for (const int length : {512, 513, 1023, 1024, 1025, 8191, 8192})
        QTest::addRow("%d bytes", length) << std::uint32_t{0} << length;
    QTest::newRow("from the middle") << std::uint32_t{0x1000} << 4096;
    QTest::newRow("across 64 KiB") << std::uint32_t{0xFE00} << 2048;
}

void GbaEepromCommandsTest::largeEepromWritesPiecesOf512()
{
    QFETCH(std::uint32_t, address);
    QFETCH(int, length);
    const int pieces = (length + kPiece - 1) / kPiece;
    const QByteArray before = padded(patternBytes(length, 6), pieces * kPiece);
    QByteArray source = before;
    QCOMPARE(gbaEeprom8kWrite(address, source.data(), static_cast<std::uint32_t>(length)),
             static_cast<std::uint32_t>(length));
    QCOMPARE(m_drive->runs.size(), 2 * pieces);
    for (int half = 0; half < 2 * pieces; ++half) {
        const std::uint32_t at = (address + static_cast<std::uint32_t>(half) * 256) & 0xFFFF;
        QCOMPARE(firstDifference(m_drive->runs[half].bytes,
                                 halfBlock(15, at, 2, before.mid(half * kHalf, kHalf))),
                 QByteArray());
    }
    QCOMPARE(source, before);
}

void GbaEepromCommandsTest::tooShortWritesSendNothing_data()
{
    QTest::addColumn<std::uint32_t>("length");
    for (const std::uint32_t length : {0U, 1U, 256U, 511U})
        QTest::addRow("%u", length) << length;
}

void GbaEepromCommandsTest::tooShortWritesSendNothing()
{
    QFETCH(std::uint32_t, length);
    QByteArray source(kPiece, 's');
    QCOMPARE(gbaEeprom512Write(0, source.data(), length), 0U);
    QCOMPARE(gbaEeprom8kWrite(0, source.data(), length), 0U);
    QVERIFY2(m_drive->calls.isEmpty(), qPrintable(m_drive->calls.join(", ")));
}

void GbaEepromCommandsTest::halfWriteResults()
{
    QByteArray source(kPiece, 's');
    const auto smallWrite = [&] { return gbaEeprom512Write(0, source.data(), kPiece); };
    const auto blockWrite = [&] { return gbaEepromWriteBlock(0, source.constData()); };

    m_drive->failNext(DriveCall::OpenWrite); // the first half's failure goes unnoticed
    QCOMPARE(smallWrite(), 512U);
    m_drive->failNext(DriveCall::OpenWrite);
    QCOMPARE(blockWrite(), 512U);
    m_drive->failNext(DriveCall::OpenWrite, 1);
    QCOMPARE(smallWrite(), 0U);
    m_drive->failNext(DriveCall::OpenWrite, 1);
    QCOMPARE(blockWrite(), 0U);
    m_drive->failNext(DriveCall::Write, 1);
    QCOMPARE(smallWrite(), 0xFFFFFFFFU);
    m_drive->failNext(DriveCall::Write, 1);
    QCOMPARE(blockWrite(), 0xFFFFFFFFU);
}

void GbaEepromCommandsTest::largeWriteReturnsItsLengthWhateverFails()
{
    QByteArray source(8192, 's');
    m_drive->failNext(DriveCall::OpenWrite, 0, 32);
    QCOMPARE(gbaEeprom8kWrite(0, source.data(), 8192), 8192U);
    QCOMPARE(m_drive->calls.filter("create").size(), 32);
}

GBDRIVER_TEST(GbaEepromCommandsTest, none)
#include "gba_eeprom_commands_test.moc"
