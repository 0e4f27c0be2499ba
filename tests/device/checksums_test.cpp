// The two checksums, against published check values, a bit by bit CRC-16 and zlib's CRC-32.
#include "device/checksums.h"

#include "composed_block.h"
#include "reference_crc32.h"
#include "test_bytes.h"
#include "test_class.h"

#include <QtTest>

namespace
{

// What every catalogue of CRCs gives its check values for.
const QByteArray kCheckText("123456789");

std::uint16_t crc16Of(const QByteArray &bytes)
{
    return crc16Update(0, constBytesOf(bytes), static_cast<std::uint32_t>(bytes.size()));
}

std::uint32_t crc32Of(const QByteArray &bytes)
{
    return crc32(constBytesOf(bytes), static_cast<std::uint32_t>(bytes.size()));
}

} // namespace

class ChecksumsTest : public QObject
{
    Q_OBJECT

private slots:
    void crc16HasThePublishedCheckValue();
    void crc16OfOneByteIsTheTableEntry();
    void crc16MatchesTheBitwiseOne();
    void crc16Chains();
    void syncByteLeavesTheKnownState();
    void frameCoversAllButItsLastTwoBytes_data();
    void frameCoversAllButItsLastTwoBytes();
    void shortFrameIsNotRead_data();
    void shortFrameIsNotRead();

    void crc32HasThePublishedCheckValue();
    void crc32OfOneByteMatchesZlib();
    void crc32MatchesZlib_data();
    void crc32MatchesZlib();
    void crc32ChainsAtEveryCut();
    void crc32OfNothingChangesNothing_data();
    void crc32OfNothingChangesNothing();
};

void ChecksumsTest::crc16HasThePublishedCheckValue()
{
    QCOMPARE(crc16Of(kCheckText), std::uint16_t{0x31C3});
}

void ChecksumsTest::crc16OfOneByteIsTheTableEntry()
{
    QCOMPARE(crc16Of(QByteArray(1, '\x00')), std::uint16_t{0});
    QCOMPARE(crc16Of(QByteArray(1, '\x01')), std::uint16_t{0x1021});
    for (int value = 0; value < 256; ++value) {
        const QByteArray byte(1, static_cast<char>(value));
        QCOMPARE(crc16Of(byte), bitwiseCrc16(byte));
    }
}

void ChecksumsTest::crc16MatchesTheBitwiseOne()
{
    for (int length = 0; length <= 520; length += 13) {
        const QByteArray bytes = patternBytes(length, static_cast<std::uint32_t>(length));
        QCOMPARE(crc16Of(bytes), bitwiseCrc16(bytes));
    }
}

void ChecksumsTest::crc16Chains()
{
    const QByteArray bytes = patternBytes(64, 7);
    for (int cut = 0; cut <= bytes.size(); ++cut) {
        const std::uint16_t head = crc16Of(bytes.left(cut));
        const QByteArray tail = bytes.mid(cut);
        QCOMPARE(crc16Update(head, constBytesOf(tail), static_cast<std::uint32_t>(tail.size())),
                 bitwiseCrc16(bytes));
    }
}

void ChecksumsTest::syncByteLeavesTheKnownState()
{
    QCOMPARE(crc16Of("Z"), std::uint16_t{0xFBBF});
}

void ChecksumsTest::frameCoversAllButItsLastTwoBytes_data()
{
    QTest::addColumn<int>("length");
    for (const int length : {3, 4, 11, 510, 511, 512, 1024})
        QTest::addRow("%d", length) << length;
}

void ChecksumsTest::frameCoversAllButItsLastTwoBytes()
{
    QFETCH(int, length);
    QByteArray frame = patternBytes(length, 3);
    const std::uint16_t expected = bitwiseCrc16(frame.left(length - 2));
    QCOMPARE(crc16Frame(constBytesOf(frame), static_cast<std::uint32_t>(length)), expected);

    frame[length - 1] = static_cast<char>(~frame[length - 1]);
    frame[length - 2] = static_cast<char>(~frame[length - 2]);
    QCOMPARE(crc16Frame(constBytesOf(frame), static_cast<std::uint32_t>(length)), expected);

    frame[length - 3] = static_cast<char>(~frame[length - 3]);
    QVERIFY(crc16Frame(constBytesOf(frame), static_cast<std::uint32_t>(length)) != expected);
}

void ChecksumsTest::shortFrameIsNotRead_data()
{
    QTest::addColumn<std::uint32_t>("length");
    for (const std::uint32_t length : {0U, 1U, 2U})
        QTest::addRow("%u", length) << length;
}

void ChecksumsTest::shortFrameIsNotRead()
{
    QFETCH(std::uint32_t, length);
    QCOMPARE(crc16Frame(nullptr, length), std::uint16_t{0});
}

void ChecksumsTest::crc32HasThePublishedCheckValue()
{
    QCOMPARE(crc32Of(kCheckText), 0xCBF43926U);
}

void ChecksumsTest::crc32OfOneByteMatchesZlib()
{
    for (int value = 0; value < 256; ++value) {
        const QByteArray byte(1, static_cast<char>(value));
        QCOMPARE(crc32Of(byte), referenceCrc32(0, byte));
    }
}

void ChecksumsTest::crc32MatchesZlib_data()
{
    QTest::addColumn<int>("length");
    for (const int length : {1, 2, 3, 4, 7, 8, 9, 255, 256, 511, 512, 4096, 65537})
        QTest::addRow("%d", length) << length;
}

void ChecksumsTest::crc32MatchesZlib()
{
    QFETCH(int, length);
    const QByteArray bytes = patternBytes(length, static_cast<std::uint32_t>(length) + 99);
    QCOMPARE(crc32Of(bytes), referenceCrc32(0, bytes));
    for (const std::uint32_t start : {1U, 0x12345678U, 0xFFFFFFFFU}) {
        QCOMPARE(crc32Update(start, constBytesOf(bytes), static_cast<std::uint32_t>(length)),
                 referenceCrc32(start, bytes));
    }
}

void ChecksumsTest::crc32ChainsAtEveryCut()
{
    const QByteArray bytes = patternBytes(100, 5);
    for (int cut = 0; cut <= bytes.size(); ++cut) {
        const QByteArray tail = bytes.mid(cut);
        QCOMPARE(crc32Update(crc32Of(bytes.left(cut)), constBytesOf(tail),
                             static_cast<std::uint32_t>(tail.size())),
                 referenceCrc32(0, bytes));
    }
}

void ChecksumsTest::crc32OfNothingChangesNothing_data()
{
    QTest::addColumn<std::uint32_t>("crc");
    for (const std::uint32_t crc : {0U, 1U, 0xCBF43926U, 0x80000000U, 0xFFFFFFFFU})
        QTest::addRow("%08X", crc) << crc;
}

void ChecksumsTest::crc32OfNothingChangesNothing()
{
    QFETCH(std::uint32_t, crc);
    const std::uint8_t unused = 0xA5;
    QCOMPARE(crc32Update(crc, &unused, 0), crc);
    QCOMPARE(crc32Update(crc, nullptr, 0), crc);
    QCOMPARE(crc32(&unused, 0), 0U);
    QCOMPARE(crc32(nullptr, 0), 0U);
}

GBDRIVER_TEST(ChecksumsTest, none)
#include "checksums_test.moc"
