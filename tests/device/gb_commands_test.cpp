// Commands of the GB bus: every byte of every block, compared with blocks composed from the
// protocol's tables.
#include "device/device_commands.h"

#include "composed_block.h"
#include "recording_drive.h"
#include "reference_blowfish.h"
#include "test_bytes.h"

#include "device/payload_cipher.h"
#include "test_class.h"

#include <QtTest>

#include <algorithm>
#include <memory>
#include <vector>

namespace
{

using ChunkedWrite = std::uint32_t (*)(std::uint32_t, void *, std::uint32_t);

constexpr int kChunk = 480;
const QByteArray kKey = QByteArray::fromHex("0F1E2D3C4B5A6978");

// The first 8 bytes of a payload as they travel. Behind a shorter chunk the cipher takes the bytes
// that follow it in memory, here those of `guarded`.
QByteArray enciphered(const QByteArray &guarded, int start, int length)
{
    const QByteArray group = guarded.mid(start, 8);
    const QByteArray sealed = reverseHalves(referenceEncipher(kKey, reverseHalves(group)));
    return (sealed + guarded.mid(start + 8, std::max(length - 8, 0))).left(length);
}

// `guarded` holds the source and at least 8 bytes behind it.
QByteArray expectedRun(int opcode, bool isFlash, std::uint32_t address, const QByteArray &guarded,
                       int length)
{
    QByteArray run;
    for (int start = 0; start < length; start += kChunk) {
        const int chunk = std::min(kChunk, length - start);
        const QByteArray payload =
            isFlash ? enciphered(guarded, start, chunk) : guarded.mid(start, chunk);
        const std::uint32_t at = (address + static_cast<std::uint32_t>(start)) & 0xFFFF;
        run += composeBlock(2, opcode, {{3, at, 2}, {5, static_cast<std::uint32_t>(chunk), 2}}, 7,
                            payload);
    }
    return run;
}

void addLengths()
{
    QTest::addColumn<int>("opcode");
    QTest::addColumn<std::uint32_t>("address");
    QTest::addColumn<int>("length");
    for (const int opcode : {12, 14, 15}) {
        for (const int length :
             {0,   1,   7,   8,   9,    255,  256,  257,   479,   480,   481,   487,
              488, 959, 960, 961, 4095, 4096, 4097, 16384, 32768, 65535, 65536, 65537}) {
            QTest::addRow("opcode %d, %d bytes", opcode, length)
                << opcode << std::uint32_t{0x4000} << length;
        }
        QTest::addRow("opcode %d, address wraps in 16 bits", opcode)
            << opcode << std::uint32_t{0xFF00} << 1000;
        QTest::addRow("opcode %d, address above 16 bits is cut", opcode)
            << opcode << std::uint32_t{0x1234A000} << 481;
    }
}

ChunkedWrite writerFor(int opcode)
{
    return opcode == 12 ? gbRamWrite : opcode == 14 ? gbFlashWrite : gbFlashWriteAlt;
}

} // namespace

class GbCommandsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void emptyCommandIsOneEmptyBlock();
    void chunkedWriteSendsTheseBlocks_data();
    void chunkedWriteSendsTheseBlocks();
    void fullChunkAndOneByteMore();
    void flashPayloadIsEncipheredInItsFirstEightBytes();
    void flashWriteFollowsTheKey();
    void pairsSendOneBlockEach_data();
    void pairsSendOneBlockEach();
    void pairValuesAreCutToTheirFields();
    void failuresArePassedUp_data();
    void failuresArePassedUp();
    void failedFlashWriteLeavesTheSourceAlone();

private:
    std::unique_ptr<RecordingDrive> m_drive;
};

void GbCommandsTest::init()
{
    m_drive = std::make_unique<RecordingDrive>();
    attachReader(m_drive.get());
    cipherSetKey8(constBytesOf(kKey));
}

void GbCommandsTest::emptyCommandIsOneEmptyBlock()
{
    QCOMPARE(sendEmptyCommand(kClassGb, 1), 512U);
    QCOMPARE(sendEmptyCommand(kClassReader, 4), 512U);
    QCOMPARE(m_drive->runs.size(), 2);
    QCOMPARE(m_drive->runs[0].bytes, composeBlock(2, 1));
    QCOMPARE(m_drive->runs[1].bytes, composeBlock(0xF0, 4));
}

void GbCommandsTest::chunkedWriteSendsTheseBlocks_data()
{
    addLengths();
}

void GbCommandsTest::chunkedWriteSendsTheseBlocks()
{
    QFETCH(int, opcode);
    QFETCH(std::uint32_t, address);
    QFETCH(int, length);
    const QByteArray before = patternBytes(length + 16, static_cast<std::uint32_t>(length));
    QByteArray source = before;
    const QByteArray expected = expectedRun(opcode, opcode != 12, address, before, length);

    const std::uint32_t count =
        writerFor(opcode)(address, source.data(), static_cast<std::uint32_t>(length));

    QCOMPARE(count, static_cast<std::uint32_t>(expected.size()));
    QCOMPARE(m_drive->calls, QStringList({"create E:\\CMD.CMD",
                                          QString("write %1 at 0").arg(expected.size()), "close"}));
    QCOMPARE(firstDifference(m_drive->runs[0].bytes, expected), QByteArray());
    QCOMPARE(source, before);
}

void GbCommandsTest::fullChunkAndOneByteMore()
{
    QByteArray source = patternBytes(481, 1);
    QCOMPARE(gbRamWrite(0xA000, source.data(), 480), 512U);
    QCOMPARE(gbRamWrite(0xA000, source.data(), 481), 1024U);
    const QByteArray one = m_drive->runs[0].bytes;
    const QByteArray two = m_drive->runs[1].bytes;
    QCOMPARE(one.mid(3, 4).toHex(), QByteArray("00a0e001"));
    QCOMPARE(two.left(512), one);
    QCOMPARE(two.mid(512 + 3, 4).toHex(), QByteArray("e0a10100"));
    QCOMPARE(two[512 + 7], source[480]);
    QCOMPARE(two.mid(512 + 8, 502), QByteArray(502, '\0'));
}

void GbCommandsTest::flashPayloadIsEncipheredInItsFirstEightBytes()
{
    const QByteArray plain(960, 'p');
    QByteArray source = plain;
    QCOMPARE(gbFlashWrite(0, source.data(), 960), 1024U);
    for (const int start : {0, 512}) {
        const QByteArray payload = m_drive->runs[0].bytes.mid(start + 7, kChunk);
        QVERIFY(payload.left(8) != plain.left(8));
        const QByteArray opened =
            reverseHalves(referenceDecipher(kKey, reverseHalves(payload.left(8))));
        QCOMPARE(opened, plain.left(8));
        QCOMPARE(payload.mid(8), plain.left(kChunk - 8));
    }
}

void GbCommandsTest::flashWriteFollowsTheKey()
{
    QByteArray source = patternBytes(480, 2);
    QCOMPARE(gbFlashWrite(0, source.data(), 480), 512U);
    const QByteArray otherKey(8, '\0');
    cipherSetKey8(constBytesOf(otherKey));
    QCOMPARE(gbFlashWrite(0, source.data(), 480), 512U);
    const QByteArray head =
        reverseHalves(referenceEncipher(otherKey, reverseHalves(source.left(8))));
    QCOMPARE(m_drive->runs[1].bytes.mid(7, 8), head);
    QVERIFY(m_drive->runs[0].bytes.mid(7, 8) != head);
    QCOMPARE(m_drive->runs[0].bytes.mid(15, 472), m_drive->runs[1].bytes.mid(15, 472));
}

void GbCommandsTest::pairsSendOneBlockEach_data()
{
    QTest::addColumn<int>("pairs");
    for (const int pairs : {0, 1, 2, 3, 64, 300})
        QTest::addRow("%d", pairs) << pairs;
}

void GbCommandsTest::pairsSendOneBlockEach()
{
    QFETCH(int, pairs);
    std::vector<std::uint32_t> addresses;
    std::vector<std::uint32_t> values;
    QByteArray expected;
    for (int i = 0; i < pairs; ++i) {
        addresses.push_back(static_cast<std::uint32_t>(0xFFFF - i * 257) & 0xFFFF);
        values.push_back(static_cast<std::uint32_t>(i) & 0xFF);
        expected += composeBlock(2, 13, {{3, addresses.back(), 2}, {5, values.back(), 1}});
    }
    QCOMPARE(gbWriteBytes(addresses.data(), values.data(), static_cast<std::uint32_t>(pairs)),
             static_cast<std::uint32_t>(expected.size()));
    QCOMPARE(m_drive->runs.size(), 1);
    QCOMPARE(m_drive->runs[0].path, QString(kCommandPath));
    QCOMPARE(firstDifference(m_drive->runs[0].bytes, expected), QByteArray());
}

void GbCommandsTest::pairValuesAreCutToTheirFields()
{
    const std::uint32_t address = 0xABCD2345;
    const std::uint32_t value = 0xFFFFFF81;
    QCOMPARE(gbWriteBytes(&address, &value, 1), 512U);
    QCOMPARE(m_drive->runs[0].bytes, composeBlock(2, 13, {{3, 0x2345, 2}, {5, 0x81, 1}}));
}

void GbCommandsTest::failuresArePassedUp_data()
{
    QTest::addColumn<int>("opcode");
    for (const int opcode : {12, 13, 14, 15, 1})
        QTest::addRow("opcode %d", opcode) << opcode;
}

void GbCommandsTest::failuresArePassedUp()
{
    QFETCH(int, opcode);
    QByteArray source = patternBytes(1008, 3);
    const std::uint32_t pair[2] = {1, 2};
    const auto run = [&]() -> std::uint32_t {
        switch (opcode) {
        case 1:
            return sendEmptyCommand(kClassGb, 1);
        case 13:
            return gbWriteBytes(pair, pair, 2);
        default:
            return writerFor(opcode)(0, source.data(), 1000);
        }
    };
    m_drive->failNext(DriveCall::OpenWrite);
    QCOMPARE(run(), 0U);
    m_drive->failNext(DriveCall::Write);
    QCOMPARE(run(), 0xFFFFFFFFU);
    QVERIFY(run() >= 512 && run() != 0xFFFFFFFFU);
}

void GbCommandsTest::failedFlashWriteLeavesTheSourceAlone()
{
    const QByteArray before = patternBytes(1008, 4);
    QByteArray source = before;
    m_drive->failNext(DriveCall::Write);
    QCOMPARE(gbFlashWrite(0, source.data(), 1000), 0xFFFFFFFFU);
    QCOMPARE(source, before);
}

GBDRIVER_TEST(GbCommandsTest, none)
#include "gb_commands_test.moc"
