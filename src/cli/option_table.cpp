#include "cli/option_table.h"

#include "cart/setting_tables.h"

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
