#include "cli/option_table.h"

#include "cart/setting_tables.h"

#include <algorithm>
#include <cstdlib>

namespace
{

// One slip for every three letters, one at least: "dmp", "vreify", "ovrewrit".
int allowedSlips(const QString &typed)
{
    return std::max(1, static_cast<int>(typed.size()) / 3);
}

// The number of letters added, left out, exchanged or swapped with their neighbour.
int slipsBetween(const QString &left, const QString &right)
{
    const int width = static_cast<int>(right.size()) + 1;
    const int height = static_cast<int>(left.size()) + 1;
    std::vector<int> slips(static_cast<std::size_t>(width * height));
    const auto at = [&slips, width](int row, int column) -> int & {
        return slips[static_cast<std::size_t>(row * width + column)];
    };
    for (int row = 0; row < height; ++row) {
        for (int column = 0; column < width; ++column) {
            if (row == 0 || column == 0) {
                at(row, column) = row + column;
                continue;
            }
            const int changed = left[row - 1] == right[column - 1] ? 0 : 1;
            int least = std::min(at(row - 1, column), at(row, column - 1)) + 1;
            least = std::min(least, at(row - 1, column - 1) + changed);
            if (row > 1 && column > 1 && left[row - 1] == right[column - 2] &&
                left[row - 2] == right[column - 1])
                least = std::min(least, at(row - 2, column - 2) + 1);
            at(row, column) = least;
        }
    }
    return at(height - 1, width - 1);
}

} // namespace

QString valueName(ValueKind kind)
{
    switch (kind) {
    case ValueKind::None:
        return {};
    case ValueKind::System:
        return QStringLiteral("SYSTEM");
    case ValueKind::Mapper:
        return QStringLiteral("MAPPER");
    case ValueKind::SaveType:
        return QStringLiteral("TYPE");
    case ValueKind::Size:
        return QStringLiteral("SIZE");
    case ValueKind::Number:
        return QStringLiteral("N");
    case ValueKind::Letter:
        return QStringLiteral("LETTER");
    case ValueKind::File:
        return QStringLiteral("FILE");
    case ValueKind::Folder:
        return QStringLiteral("DIR");
    }
    return {};
}

QStringList valueChoices(ValueKind kind)
{
    switch (kind) {
    case ValueKind::System:
        return {QStringLiteral("gb"), QStringLiteral("gba")};
    case ValueKind::Mapper:
        return choiceList(kMappers);
    case ValueKind::SaveType:
        return choiceList(kGbaSaveTypes);
    default:
        return {};
    }
}

QString missingText(MissingValue missing, const CartridgeValues &values)
{
    const auto oneOf = [](const OptionRow &option) {
        return QStringLiteral("Missing --%1: one of %2.")
            .arg(QLatin1String(option.name), valueChoices(option.kind).join(QStringLiteral(", ")));
    };
    const auto size = [](const OptionRow &option) {
        return QStringLiteral("Missing --%1: the size cannot be guessed.")
            .arg(QLatin1String(option.name));
    };
    switch (missing) {
    case MissingValue::None:
        break;
    case MissingValue::System:
        return oneOf(kSystemOption);
    case MissingValue::Mapper:
        return oneOf(kMapperOption);
    case MissingValue::SaveType:
        return oneOf(kSaveTypeOption);
    case MissingValue::RomSize:
        return size(kRomSizeOption);
    case MissingValue::SaveSize:
        return size(kRamSizeOption);
    case MissingValue::SavePair: {
        const auto first = static_cast<std::size_t>(offeredSaveSizes(*values.saveType));
        return QStringLiteral("--ram-size %1: a save of type %2 has %3 or %4 bytes.")
            .arg(*values.ramSize)
            .arg(labelOf(kGbaSaveTypes, *values.saveType))
            .arg(kGbaSaveSizes[first].value)
            .arg(kGbaSaveSizes[first + 1].value);
    }
    }
    return QString();
}

QString optionUsage(const OptionRow &option)
{
    QString usage = QStringLiteral("--") + QLatin1String(option.name);
    if (option.letter != 0)
        usage.prepend(QStringLiteral("-%1, ").arg(QLatin1Char(option.letter)));
    if (option.kind != ValueKind::None)
        usage += QLatin1Char(' ') + valueName(option.kind);
    return usage;
}

QString optionText(const OptionRow &option)
{
    QString text = QLatin1String(option.description);
    const QStringList choices = valueChoices(option.kind);
    if (!choices.isEmpty())
        text += QStringLiteral(" One of %1.").arg(choices.join(QStringLiteral(", ")));
    if (option.kind == ValueKind::Size)
        text += QStringLiteral(" In bytes, or with suffix K or M.");
    if (option.otherwise != nullptr)
        text += QStringLiteral(" Default: %1.").arg(QLatin1String(option.otherwise));
    return text;
}

QString nearWord(const QString &typed, const QStringList &words)
{
    constexpr int kShortestBeginning = 3;
    const QString sought = typed.toLower();
    QString nearest;
    int least = allowedSlips(sought) + 1;
    for (const QString &word : words) {
        // A word so much longer or shorter has as many slips at least.
        int slips = std::abs(static_cast<int>(sought.size()) - static_cast<int>(word.size()));
        if (slips < least)
            slips = slipsBetween(sought, word);
        if (sought.size() >= kShortestBeginning && word.startsWith(sought))
            slips = std::min(slips, 1);
        if (slips < least) {
            least = slips;
            nearest = word;
        }
    }
    return nearest;
}

QString nearOption(const QString &typed, const std::vector<const OptionRow *> &options)
{
    QStringList names;
    for (const OptionRow *option : options)
        names << QLatin1String(option->name);
    const QString near = nearWord(typed, names);
    return near.isEmpty() ? QString() : QStringLiteral(" Did you mean --%1?").arg(near);
}
