#include "cart/dump_differences.h"

#include <QStringList>

#include <algorithm>
#include <cstring>

namespace
{

constexpr int kMostNamedRanges = 8;

// Equal stretches are passed over in pieces of this size.
constexpr std::uint32_t kPieceBytes = 0x1000;

void addBank(std::uint32_t bank, QVector<BankRange> *ranges)
{
    if (!ranges->isEmpty() && ranges->last().last + 1 == bank)
        ranges->last().last = bank;
    else
        ranges->append({bank, bank});
}

void addByte(std::uint32_t offset, ByteDifferences *differences)
{
    if (differences->count == 0)
        differences->first = offset;
    differences->last = offset;
    ++differences->count;
}

std::uint32_t banksIn(const QVector<BankRange> &ranges)
{
    std::uint32_t banks = 0;
    for (const BankRange &range : ranges)
        banks += range.last - range.first + 1;
    return banks;
}

QString describeRange(const BankRange &range)
{
    return range.first == range.last ? QString::number(range.first)
                                     : QStringLiteral("%1-%2").arg(range.first).arg(range.last);
}

QString describeRanges(const QVector<BankRange> &ranges)
{
    QStringList named;
    for (const BankRange &range : ranges.mid(0, kMostNamedRanges))
        named << describeRange(range);
    const std::uint32_t unnamed = banksIn(ranges.mid(named.size()));
    return named.join(QStringLiteral(", ")) +
           (unnamed == 0 ? QString() : QStringLiteral(" and %1 more").arg(unnamed));
}

QString describeOffset(std::uint32_t offset)
{
    return QStringLiteral("0x%1").arg(QString::number(offset, 16).toUpper(), 4, QLatin1Char('0'));
}

} // namespace

BankDifferences differingBanks(const std::uint8_t *a, const std::uint8_t *b, std::uint32_t size,
                               std::uint32_t bankBytes)
{
    BankDifferences differences;
    differences.bankCount = size / bankBytes + (size % bankBytes == 0 ? 0 : 1);
    for (std::uint32_t bank = 0; bank < differences.bankCount; ++bank) {
        const std::uint32_t offset = bank * bankBytes;
        if (std::memcmp(a + offset, b + offset, std::min(bankBytes, size - offset)) != 0)
            addBank(bank, &differences.ranges);
    }
    return differences;
}

ByteDifferences differingBytes(const std::uint8_t *a, const std::uint8_t *b, std::uint32_t size)
{
    ByteDifferences differences;
    const BankDifferences pieces = differingBanks(a, b, size, kPieceBytes);
    for (const BankRange &range : pieces.ranges) {
        const bool isAtEnd = range.last + 1 == pieces.bankCount;
        const std::uint32_t end = isAtEnd ? size : (range.last + 1) * kPieceBytes;
        for (std::uint32_t offset = range.first * kPieceBytes; offset < end; ++offset) {
            if (a[offset] != b[offset])
                addByte(offset, &differences);
        }
    }
    return differences;
}

QString describeBanks(const BankDifferences &differences, const QString &unit)
{
    if (differences.ranges.isEmpty())
        return {};
    const QString plural = banksIn(differences.ranges) == 1 ? QString() : QStringLiteral("s");
    return QStringLiteral("%1%2 %3 of %4")
        .arg(unit, plural, describeRanges(differences.ranges))
        .arg(differences.bankCount);
}

QString describeBytes(const ByteDifferences &differences, std::uint32_t size)
{
    if (differences.count == 0)
        return {};
    const QString place =
        differences.count == 1
            ? QStringLiteral("at %1").arg(describeOffset(differences.first))
            : QStringLiteral("from %1 to %2")
                  .arg(describeOffset(differences.first), describeOffset(differences.last));
    return QStringLiteral("%1 of %2 bytes, %3").arg(differences.count).arg(size).arg(place);
}
