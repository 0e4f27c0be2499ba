// Where two readings differ, and how it is said.
#include "cart/dump_differences.h"

#include "test_class.h"

#include <QtTest>

namespace
{

const std::uint8_t *bytesOf(const QByteArray &bytes)
{
    return reinterpret_cast<const std::uint8_t *>(bytes.constData());
}

// `size` zeros, with a one at each of `offsets`.
QByteArray withOnesAt(int size, const QVector<int> &offsets)
{
    QByteArray bytes(size, '\0');
    for (const int offset : offsets)
        bytes[offset] = 1;
    return bytes;
}

BankDifferences banksOf(int size, const QVector<int> &offsets, std::uint32_t bankBytes)
{
    const QByteArray a(size, '\0');
    const QByteArray b = withOnesAt(size, offsets);
    return differingBanks(bytesOf(a), bytesOf(b), static_cast<std::uint32_t>(size), bankBytes);
}

ByteDifferences differencesOf(int size, const QVector<int> &offsets)
{
    const QByteArray a(size, '\0');
    const QByteArray b = withOnesAt(size, offsets);
    return differingBytes(bytesOf(a), bytesOf(b), static_cast<std::uint32_t>(size));
}

BankDifferences everySecondBank(std::uint32_t banks)
{
    BankDifferences differences;
    differences.bankCount = 2 * banks;
    for (std::uint32_t bank = 0; bank < banks; ++bank)
        differences.ranges.append({2 * bank + 1, 2 * bank + 1});
    return differences;
}

} // namespace

class DumpDifferencesTest : public QObject
{
    Q_OBJECT

private slots:
    void banksAreNamed_data();
    void banksAreNamed();
    void manyRangesAreCutShort();
    void bytesAreCounted_data();
    void bytesAreCounted();
    void bytesAreNamed_data();
    void bytesAreNamed();
};

void DumpDifferencesTest::banksAreNamed_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QVector<int>>("offsets");
    QTest::addColumn<int>("bankBytes");
    QTest::addColumn<QString>("text");
    const auto add = [](const char *name, int size, const QVector<int> &offsets,
                        std::uint32_t bankBytes, const char *text) {
        QTest::newRow(name) << size << offsets << static_cast<int>(bankBytes) << QString(text);
    };
    add("equal", 0x100000, {}, kGbRomBankBytes, "");
    add("empty", 0, {}, kGbRomBankBytes, "");
    add("one bank", 0x100000, {0xC000, 0xC001, 0xFFFF}, kGbRomBankBytes, "bank 3 of 64");
    add("single and range", 0x100000, {0xC000, 0x1C000, 0x23FFF, 0x27FFF}, kGbRomBankBytes,
        "banks 3, 7-9 of 64");
    add("first and last", 0x100000, {0, 0xFFFFF}, kGbRomBankBytes, "banks 0, 63 of 64");
    add("all", 0x8000, {0, 0x4000}, kGbRomBankBytes, "banks 0-1 of 2");
    add("save", 0x8000, {0x2000, 0x5FFF}, kGbSaveBankBytes, "banks 1-2 of 4");
    add("save of one bank", 0x2000, {0x1FFF}, kGbSaveBankBytes, "bank 0 of 1");
    add("save of less than a bank", 512, {511}, kGbSaveBankBytes, "bank 0 of 1");
    add("rest behind the last bank", 0x8001, {0x8000}, kGbRomBankBytes, "bank 2 of 3");
    add("GBA", 0x400000, {0x10000, 0x20000}, kGbaBlockBytes, "banks 1-2 of 64");
}

void DumpDifferencesTest::banksAreNamed()
{
    QFETCH(int, size);
    QFETCH(QVector<int>, offsets);
    QFETCH(int, bankBytes);
    const BankDifferences banks = banksOf(size, offsets, static_cast<std::uint32_t>(bankBytes));
    QTEST(describeBanks(banks, kBankWords), "text");
}

void DumpDifferencesTest::manyRangesAreCutShort()
{
    QCOMPARE(describeBanks(everySecondBank(8), k4KibBlockWords),
             QString("4 KiB blocks 1, 3, 5, 7, 9, 11, 13, 15 of 16"));
    BankDifferences differences = everySecondBank(32);
    QCOMPARE(describeBanks(differences, kBankWords),
             QString("banks 1, 3, 5, 7, 9, 11, 13, 15 and 24 more of 64"));
    // Banks are counted, not ranges.
    differences.ranges.last().first = 62;
    QCOMPARE(describeBanks(differences, kBankWords),
             QString("banks 1, 3, 5, 7, 9, 11, 13, 15 and 25 more of 64"));
}

void DumpDifferencesTest::bytesAreCounted_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QVector<int>>("offsets"); // ascending
    const auto add = [](const char *name, int size, const QVector<int> &offsets) {
        QTest::newRow(name) << size << offsets;
    };
    add("empty", 0, {});
    add("equal", 0x8000, {});
    add("first byte", 0x8000, {0});
    add("last byte", 0x8000, {0x7FFF});
    add("both ends", 0x8000, {0, 0x7FFF});
    add("on both sides of a piece", 0x8000, {0xFFF, 0x1000, 0x2FFF, 0x4000});
    add("all of a few", 3, {0, 1, 2});
    add("behind the last full piece", 0x1003, {0x1000, 0x1002});
}

void DumpDifferencesTest::bytesAreCounted()
{
    QFETCH(int, size);
    QFETCH(QVector<int>, offsets);
    const ByteDifferences differences = differencesOf(size, offsets);
    QCOMPARE(static_cast<int>(differences.count), offsets.size());
    QCOMPARE(static_cast<int>(differences.first), offsets.isEmpty() ? 0 : offsets.first());
    QCOMPARE(static_cast<int>(differences.last), offsets.isEmpty() ? 0 : offsets.last());
}

void DumpDifferencesTest::bytesAreNamed_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QVector<int>>("offsets");
    QTest::addColumn<QString>("text");
    QTest::newRow("equal") << 0x8000 << QVector<int>() << QString();
    QTest::newRow("one") << 0x8000 << QVector<int>{0x12A} << QString("1 of 32768 bytes, at 0x012A");
    QTest::newRow("three") << 0x8000 << QVector<int>{0x123, 0x124, 0x7FFF}
                           << QString("3 of 32768 bytes, from 0x0123 to 0x7FFF");
    QTest::newRow("large offset") << 0x20000 << QVector<int>{0x1FFFF}
                                  << QString("1 of 131072 bytes, at 0x1FFFF");
}

void DumpDifferencesTest::bytesAreNamed()
{
    QFETCH(int, size);
    QFETCH(QVector<int>, offsets);
    QTEST(describeBytes(differencesOf(size, offsets), static_cast<std::uint32_t>(size)), "text");
}

GBDRIVER_TEST(DumpDifferencesTest, none)
#include "dump_differences_test.moc"
