// Stamping and sending runs of command blocks.
#include "device/command_block.h"

#include "composed_block.h"
#include "recording_drive.h"
#include "test_bytes.h"

#include "device/device_link.h"
#include "test_class.h"

#include <QtTest>

#include <memory>

namespace
{

std::uint32_t send(QByteArray *blocks)
{
    return sendCommands(bytesOf(*blocks), static_cast<std::uint32_t>(blocks->size()));
}

// A block as a builder leaves it: neither sync byte nor checksum.
QByteArray unstampedBlock(int commandClass, int opcode, const QByteArray &body = QByteArray())
{
    QByteArray block(512, '\0');
    block[1] = static_cast<char>(commandClass);
    block[2] = static_cast<char>(opcode);
    return block.replace(3, body.size(), body);
}

} // namespace

class CommandBlockTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void emptyBlocksCarryTheKnownChecksums_data();
    void emptyBlocksCarryTheKnownChecksums();
    void stampsTheCallersBuffer();
    void stampingTwiceChangesNothing();
    void blocksOfARunAreIndependent();
    void longRunIsOneWrite();
    void emptyRunCreatesAnEmptyCommandFile();
    void runReplacesALongerOne();
    void pathFollowsTheDriveLetter();
    void failureIsPassedUp();

private:
    std::unique_ptr<RecordingDrive> m_drive;
};

void CommandBlockTest::init()
{
    m_drive = std::make_unique<RecordingDrive>();
    attachReader(m_drive.get());
}

void CommandBlockTest::emptyBlocksCarryTheKnownChecksums_data()
{
    QTest::addColumn<int>("commandClass");
    QTest::addColumn<int>("opcode");
    QTest::addColumn<QByteArray>("checksum");
    QTest::newRow("GBA bus start") << 3 << 1 << QByteArray::fromHex("0E00");
    QTest::newRow("GB bus start") << 2 << 1 << QByteArray::fromHex("6947");
    QTest::newRow("reader to GB") << 0xF0 << 2 << QByteArray::fromHex("8A5F");
    QTest::newRow("reader to GBA") << 0xF0 << 3 << QByteArray::fromHex("275C");
    QTest::newRow("reader information") << 0xF0 << 4 << QByteArray::fromHex("5436");
    QTest::newRow("GBA save erase") << 3 << 7 << QByteArray::fromHex("D069");
}

void CommandBlockTest::emptyBlocksCarryTheKnownChecksums()
{
    QFETCH(int, commandClass);
    QFETCH(int, opcode);
    QFETCH(QByteArray, checksum);
    QByteArray block = unstampedBlock(commandClass, opcode);
    QCOMPARE(send(&block), 512U);
    QCOMPARE(m_drive->runs.size(), 1);
    const QByteArray sent = m_drive->runs[0].bytes;
    QCOMPARE(sent.size(), 512);
    QCOMPARE(sent[0], 'Z');
    QCOMPARE(sent.mid(510), checksum);
    QCOMPARE(sent, composeBlock(commandClass, opcode));
}

void CommandBlockTest::stampsTheCallersBuffer()
{
    QByteArray block = unstampedBlock(2, 12, patternBytes(507, 4));
    block[0] = '\x11';
    block[510] = '\x22';
    block[511] = '\x33';
    const QByteArray before = block;
    QCOMPARE(send(&block), 512U);
    QCOMPARE(block[0], 'Z');
    QCOMPARE(block.mid(1, 509), before.mid(1, 509));
    const std::uint16_t crc = bitwiseCrc16(block.left(510));
    QCOMPARE(static_cast<std::uint8_t>(block[510]), static_cast<std::uint8_t>(crc >> 8));
    QCOMPARE(static_cast<std::uint8_t>(block[511]), static_cast<std::uint8_t>(crc & 0xFF));
    QCOMPARE(m_drive->runs[0].bytes, block);
}

void CommandBlockTest::stampingTwiceChangesNothing()
{
    QByteArray block = unstampedBlock(3, 16, patternBytes(507, 6));
    QCOMPARE(send(&block), 512U);
    QCOMPARE(send(&block), 512U);
    QCOMPARE(m_drive->runs[1].bytes, m_drive->runs[0].bytes);
}

void CommandBlockTest::blocksOfARunAreIndependent()
{
    QByteArray run = unstampedBlock(2, 13, "first") + unstampedBlock(2, 13, "second");
    QByteArray changed = unstampedBlock(2, 13, "first") + unstampedBlock(3, 19, "other");
    QCOMPARE(send(&run), 1024U);
    QCOMPARE(send(&changed), 1024U);
    QCOMPARE(m_drive->runs.size(), 2);
    for (const WrittenRun &sent : m_drive->runs) {
        for (const int start : {0, 512}) {
            const QByteArray block = sent.bytes.mid(start, 512);
            QCOMPARE(block[0], 'Z');
            const std::uint16_t crc = bitwiseCrc16(block.left(510));
            QCOMPARE(static_cast<std::uint8_t>(block[510]), static_cast<std::uint8_t>(crc >> 8));
            QCOMPARE(static_cast<std::uint8_t>(block[511]), static_cast<std::uint8_t>(crc));
        }
    }
    QCOMPARE(m_drive->runs[0].bytes.left(512), m_drive->runs[1].bytes.left(512));
    QVERIFY(m_drive->runs[0].bytes.mid(1022) != m_drive->runs[1].bytes.mid(1022));
}

void CommandBlockTest::longRunIsOneWrite()
{
    constexpr int kBlocks = 140;
    QByteArray run;
    QByteArray expected;
    for (int i = 0; i < kBlocks; ++i) {
        run += unstampedBlock(2, i);
        expected += composeBlock(2, i);
    }
    QCOMPARE(send(&run), std::uint32_t{kBlocks} * 512);
    QCOMPARE(m_drive->calls, QStringList({"create E:\\CMD.CMD", "write 71680 at 0", "close"}));
    QCOMPARE(firstDifference(m_drive->runs[0].bytes, expected), QByteArray());
}

void CommandBlockTest::emptyRunCreatesAnEmptyCommandFile()
{
    QVERIFY(!m_drive->hasFile(kCommandPath));
    QByteArray untouched = unstampedBlock(2, 1);
    QCOMPARE(sendCommands(bytesOf(untouched), 0), 0U);
    QCOMPARE(untouched, unstampedBlock(2, 1));
    QVERIFY(m_drive->hasFile(kCommandPath));
    QCOMPARE(m_drive->content(kCommandPath).size(), 0);
    QCOMPARE(m_drive->calls, QStringList({"create E:\\CMD.CMD", "write 0 at 0", "close"}));
}

void CommandBlockTest::runReplacesALongerOne()
{
    QByteArray run = unstampedBlock(2, 1) + unstampedBlock(2, 13);
    QByteArray block = unstampedBlock(3, 7);
    QCOMPARE(send(&run), 1024U);
    QCOMPARE(send(&block), 512U);
    QCOMPARE(m_drive->content(kCommandPath), composeBlock(3, 7));
}

void CommandBlockTest::pathFollowsTheDriveLetter()
{
    QByteArray block = unstampedBlock(2, 1);
    for (const char letter : {'A', 'Z'}) {
        m_drive->addDrive(letter, DriveType::Removable);
        deviceLink.driveLetter = static_cast<signed char>(letter);
        QCOMPARE(send(&block), 512U);
        QCOMPARE(m_drive->runs.last().path, QString(letter) + ":\\CMD.CMD");
    }
}

void CommandBlockTest::failureIsPassedUp()
{
    QByteArray block = unstampedBlock(2, 1);
    m_drive->failNext(DriveCall::OpenWrite);
    QCOMPARE(send(&block), 0U);
    m_drive->failNext(DriveCall::Write);
    QCOMPARE(send(&block), 0xFFFFFFFFU);
    m_drive->failNext(DriveCall::Close);
    QCOMPARE(send(&block), 0xFFFFFFFFU);
    QCOMPARE(send(&block), 512U);
    QCOMPARE(m_drive->openFiles, 0);
}

GBDRIVER_TEST(CommandBlockTest, none)
#include "command_block_test.moc"
