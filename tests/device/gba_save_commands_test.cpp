// Save memory on the GBA bus, EEPROM apart: every block, and how reads alternate with commands.
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

using SaveTransfer = std::uint32_t (*)(std::uint32_t, void *, std::uint32_t);

struct SaveCommand {
    const char *name;
    SaveTransfer transfer;
    int opcode;
    int addressBytes;
};

const SaveCommand kWrites[] = {
    {"SRAM write", gbaSramWrite, 16, 2},
    {"FLASH 64 KiB write", gbaFlash64kWrite, 10, 2},
    {"FLASH 128 KiB write", gbaFlash128kWrite, 11, 3},
};
const SaveCommand kReads[] = {
    {"SRAM read", gbaSramRead, 17, 3},
    {"FLASH 64 KiB read", gbaFlash64kRead, 8, 3},
    {"FLASH 128 KiB read", gbaFlash128kRead, 9, 3},
};

constexpr int kWriteChunk = 256;
constexpr int kReadPiece = 4096;

void addColumns()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<std::uint32_t>("address");
    QTest::addColumn<int>("length");
}

QByteArray commandBlock(const SaveCommand &command, std::uint32_t address, int length,
                        const QByteArray &payload = QByteArray())
{
    const std::uint32_t field = address & ((1U << (8 * command.addressBytes)) - 1);
    return composeBlock(
        3, command.opcode,
        {{4, field, command.addressBytes}, {8, static_cast<std::uint32_t>(length), 2}}, 12,
        payload);
}

} // namespace

class GbaSaveCommandsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void writeSendsTheseBlocks_data();
    void writeSendsTheseBlocks();
    void writeLengthFieldAroundOneBlock();
    void readAlternatesCommandAndReply_data();
    void readAlternatesCommandAndReply();
    void readOfTenBytesTransfersAThousandAndTwentyFour();
    void readReturnsItsLengthWhateverFails();
    void writeFailuresArePassedUp();
    void saveEraseIsOneEmptyBlock();

private:
    std::unique_ptr<RecordingDrive> m_drive;
};

void GbaSaveCommandsTest::init()
{
    m_drive = std::make_unique<RecordingDrive>();
    attachReader(m_drive.get());
}

void GbaSaveCommandsTest::writeSendsTheseBlocks_data()
{
    addColumns();
    for (int command = 0; command < 3; ++command) {
        const char *name = kWrites[command].name;
        for (const int length : {0, 1, 255, 256, 257, 479, 480, 481, 511, 512, 513, 960, 4095, 4096,
                                 4097, 32768, 65535, 65536, 131072}) {
            QTest::addRow("%s, %d bytes", name, length) << command << std::uint32_t{0} << length;
        }
        QTest::addRow("%s, across 64 KiB", name) << command << std::uint32_t{0xFF80} << 1000;
        QTest::addRow("%s, across 16 MiB", name) << command << std::uint32_t{0xFFFF80} << 1000;
        QTest::addRow("%s, high bits", name) << command << std::uint32_t{0x9A123456} << 257;
    }
}

void GbaSaveCommandsTest::writeSendsTheseBlocks()
{
    QFETCH(int, command);
    QFETCH(std::uint32_t, address);
    QFETCH(int, length);
    const QByteArray before = patternBytes(length, static_cast<std::uint32_t>(length) + 1);
    QByteArray source = before;
    QByteArray expected;
    for (int start = 0; start < length; start += kWriteChunk) {
        const int chunk = std::min(kWriteChunk, length - start);
        expected += commandBlock(kWrites[command], address + static_cast<std::uint32_t>(start),
                                 chunk, before.mid(start, chunk));
    }

    const std::uint32_t count =
        kWrites[command].transfer(address, source.data(), static_cast<std::uint32_t>(length));

    QCOMPARE(count, static_cast<std::uint32_t>(expected.size()));
    QCOMPARE(m_drive->calls, QStringList({"create E:\\CMD.CMD",
                                          QString("write %1 at 0").arg(expected.size()), "close"}));
    QCOMPARE(firstDifference(m_drive->runs[0].bytes, expected), QByteArray());
    QCOMPARE(source, before);
}

void GbaSaveCommandsTest::writeLengthFieldAroundOneBlock()
{
    QByteArray source = patternBytes(257, 1);
    QCOMPARE(gbaSramWrite(0, source.data(), 256), 512U);
    QCOMPARE(m_drive->runs[0].bytes.mid(3, 9).toHex(), QByteArray("000000000000010000"));
    QCOMPARE(gbaSramWrite(0, source.data(), 257), 1024U);
    QCOMPARE(m_drive->runs[1].bytes.mid(512 + 3, 9).toHex(), QByteArray("000001000001000000"));
}

void GbaSaveCommandsTest::readAlternatesCommandAndReply_data()
{
    addColumns();
    for (int command = 0; command < 3; ++command) {
        const char *name = kReads[command].name;
        for (const int length : {0, 1, 10, 1023, 1024, 1025, 4095, 4096, 4097, 5119, 8192, 10000,
                                 32768, 65536, 131072}) {
            QTest::addRow("%s, %d bytes", name, length) << command << std::uint32_t{0} << length;
        }
        QTest::addRow("%s, across 64 KiB", name) << command << std::uint32_t{0xF800} << 8192;
        QTest::addRow("%s, across 16 MiB", name) << command << std::uint32_t{0xFFF800} << 8192;
    }
}

void GbaSaveCommandsTest::readAlternatesCommandAndReply()
{
    QFETCH(int, command);
    QFETCH(std::uint32_t, address);
    QFETCH(int, length);
    constexpr int kGuard = 64;
    const int pieces = (length + kReadPiece - 1) / kReadPiece;
    QList<QByteArray> replies;
    QByteArray expected;
    QStringList expectedCalls;
    for (int piece = 0; piece < pieces; ++piece) {
        const int size = std::min(kReadPiece, length - piece * kReadPiece);
        replies.append(patternBytes(kReadPiece, static_cast<std::uint32_t>(piece) + 20));
        expected += replies.last().left(size);
        expectedCalls += {"create E:\\CMD.CMD",
                          "write 512 at 0",
                          "close",
                          "open E:\\K-DRIVER.DMP unbuffered",
                          "seek 0",
                          QString("read %1 at 0").arg(std::max(size, 1024)),
                          "close"};
    }
    m_drive->queueContents(kIdentityPath, replies);
    QByteArray destination(length + kGuard, '\x5C');

    QCOMPARE(
        kReads[command].transfer(address, destination.data(), static_cast<std::uint32_t>(length)),
        static_cast<std::uint32_t>(length));

    QCOMPARE(m_drive->calls, expectedCalls);
    QCOMPARE(firstDifference(destination.left(length), expected), QByteArray());
    QCOMPARE(destination.mid(length), QByteArray(kGuard, '\x5C'));
    QCOMPARE(m_drive->runs.size(), pieces);
    for (int piece = 0; piece < pieces; ++piece) {
        const int done = piece * kReadPiece;
        QCOMPARE(firstDifference(m_drive->runs[piece].bytes,
                                 commandBlock(kReads[command],
                                              address + static_cast<std::uint32_t>(done),
                                              std::min(kReadPiece, length - done))),
                 QByteArray());
    }
}

void GbaSaveCommandsTest::readOfTenBytesTransfersAThousandAndTwentyFour()
{
    QByteArray destination(10, '\0');
    QCOMPARE(gbaSramRead(0, destination.data(), 10), 10U);
    QCOMPARE(m_drive->runs[0].bytes.mid(3, 9).toHex(), QByteArray("00000000000a000000"));
    QCOMPARE(m_drive->reads.size(), 1);
    QCOMPARE(m_drive->reads[0].length, 1024U);
    QCOMPARE(m_drive->reads[0].offset, 0U);
    QVERIFY(m_drive->reads[0].destination != destination.data());
    QCOMPARE(destination, m_drive->content(kIdentityPath).left(10));
}

void GbaSaveCommandsTest::readReturnsItsLengthWhateverFails()
{
    QByteArray destination(8192, '\x77');
    for (const DriveCall call :
         {DriveCall::OpenWrite, DriveCall::Write, DriveCall::OpenRead, DriveCall::Read}) {
        m_drive->forgetCalls();
        m_drive->failNext(call, 0, 2);
        for (const SaveCommand &read : kReads)
            QCOMPARE(read.transfer(0, destination.data(), 8192), 8192U);
        QCOMPARE(m_drive->calls.filter("create").size(), 6);
        QCOMPARE(m_drive->calls.filter("open").size(), 6);
    }
}

void GbaSaveCommandsTest::writeFailuresArePassedUp()
{
    QByteArray source = patternBytes(600, 9);
    for (const SaveCommand &write : kWrites) {
        m_drive->failNext(DriveCall::OpenWrite);
        QCOMPARE(write.transfer(0, source.data(), 600), 0U);
        m_drive->failNext(DriveCall::Write);
        QCOMPARE(write.transfer(0, source.data(), 600), 0xFFFFFFFFU);
        QCOMPARE(write.transfer(0, source.data(), 600), 1536U);
    }
}

void GbaSaveCommandsTest::saveEraseIsOneEmptyBlock()
{
    QCOMPARE(gbaSaveErase(), 512U);
    QCOMPARE(m_drive->runs.size(), 1);
    QCOMPARE(m_drive->runs[0].bytes, composeBlock(3, 7));
    m_drive->failNext(DriveCall::OpenWrite);
    QCOMPARE(gbaSaveErase(), 0U);
}

GBDRIVER_TEST(GbaSaveCommandsTest, none)
#include "gba_save_commands_test.moc"
