// The rows of a settings table as a person types them.
#pragma once

#include <QString>
#include <QStringList>

// "none", "mbc1", "mbc2"
template <typename Table> QStringList choiceList(const Table &table)
{
    QStringList labels;
    for (const auto &row : table)
        labels << QString::fromLatin1(row.label).toLower();
    return labels;
}

// "none, mbc1, mbc2"
template <typename Table> QString choices(const Table &table)
{
    return choiceList(table).join(QStringLiteral(", "));
}
