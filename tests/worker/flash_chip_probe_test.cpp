// What a flash chip's answer to a query tells.
#include "worker/flash_chip_probe.h"

#include "test_class.h"

#include <QtTest>

#include <array>

class FlashChipProbeTest : public QObject
{
    Q_OBJECT

private slots:
    void sizeCodeIsAPowerOfTwo_data();
    void sizeCodeIsAPowerOfTwo();
    void wrongSignatureIsAnEightBitChip_data();
    void wrongSignatureIsAnEightBitChip();
    void silentBusIsAnEightBitChip();

private:
    using Answer = std::array<std::uint8_t, kFlashQuerySize>;
    static Answer wideAnswer(std::uint8_t sizeCode)
    {
        Answer answer{};
        answer[0x20] = 'Q';
        answer[0x22] = 'R';
        answer[0x24] = 'Y';
        answer[0x4E] = sizeCode;
        return answer;
    }
};

void FlashChipProbeTest::sizeCodeIsAPowerOfTwo_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<quint32>("size");
    QTest::newRow("0") << 0 << 0U;
    QTest::newRow("19") << 19 << 0U;
    QTest::newRow("20") << 20 << 1048576U;
    QTest::newRow("21") << 21 << 2097152U;
    QTest::newRow("22") << 22 << 4194304U;
    QTest::newRow("23") << 23 << 8388608U;
    QTest::newRow("24") << 24 << 16777216U;
    QTest::newRow("25") << 25 << 33554432U;
    QTest::newRow("26") << 26 << 67108864U;
    QTest::newRow("27") << 27 << 134217728U;
    QTest::newRow("28") << 28 << 0U;
    QTest::newRow("255") << 255 << 0U;
}

void FlashChipProbeTest::sizeCodeIsAPowerOfTwo()
{
    QFETCH(int, code);
    QFETCH(quint32, size);
    const FlashChipAnswer chip =
        decodeFlashQuery(wideAnswer(static_cast<std::uint8_t>(code)).data());
    QVERIFY(chip.isWide);
    QCOMPARE(chip.sizeBytes, size);
}

void FlashChipProbeTest::wrongSignatureIsAnEightBitChip_data()
{
    QTest::addColumn<int>("offset");
    QTest::newRow("no Q") << 0x20;
    QTest::newRow("no R") << 0x22;
    QTest::newRow("no Y") << 0x24;
}

void FlashChipProbeTest::wrongSignatureIsAnEightBitChip()
{
    QFETCH(int, offset);
    Answer answer = wideAnswer(22);
    answer[static_cast<std::size_t>(offset)] = 'q';
    const FlashChipAnswer chip = decodeFlashQuery(answer.data());
    QVERIFY(!chip.isWide);
    QCOMPARE(chip.sizeBytes, 0U);
}

void FlashChipProbeTest::silentBusIsAnEightBitChip()
{
    Answer answer;
    answer.fill(0xFF);
    QVERIFY(!decodeFlashQuery(answer.data()).isWide);
}

GBDRIVER_TEST(FlashChipProbeTest, none)
#include "flash_chip_probe_test.moc"
