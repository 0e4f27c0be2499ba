#include "cart/dump_differences.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <cstring>

namespace
{

struct Differences {
    Q_DECLARE_TR_FUNCTIONS(Differences)
};

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
    const QString list = named.join(QStringLiteral(", "));
    return unnamed == 0 ? list
                        : Differences::tr("%1 and %2 more").arg(list, QString::number(unnamed));
}

QString describeOffset(std::uint32_t offset)
{
    return QStringLiteral("0x%1").arg(QString::number(offset, 16).toUpper(), 4, QLatin1Char('0'));
}

} // namespace

const BankWords kBankWords = {QT_TRANSLATE_NOOP("Differences", "bank %1 of %2"),
                              QT_TRANSLATE_NOOP("Differences", "banks %1 of %2")};
const BankWords k4KibBlockWords = {QT_TRANSLATE_NOOP("Differences", "4 KiB block %1 of %2"),
                                   QT_TRANSLATE_NOOP("Differences", "4 KiB blocks %1 of %2")};
const BankWords k64KibBlockWords = {QT_TRANSLATE_NOOP("Differences", "64 KiB block %1 of %2"),
                                    QT_TRANSLATE_NOOP("Differences", "64 KiB blocks %1 of %2")};

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

QString describeBanks(const BankDifferences &differences, const BankWords &words)
{
    if (differences.ranges.isEmpty())
        return {};
    return Differences::tr(banksIn(differences.ranges) == 1 ? words.one : words.several)
        .arg(describeRanges(differences.ranges), QString::number(differences.bankCount));
}

QString describeBytes(const ByteDifferences &differences, std::uint32_t size)
{
    if (differences.count == 0)
        return {};
    const QString count = QString::number(differences.count);
    const QString all = QString::number(size);
    const QString first = describeOffset(differences.first);
    if (differences.count == 1)
        return Differences::tr("%1 of %2 bytes, at %3").arg(count, all, first);
    return Differences::tr("%1 of %2 bytes, from %3 to %4")
        .arg(count, all, first, describeOffset(differences.last));
}
