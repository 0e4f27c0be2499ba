#include "game_list.h"

#include <QFile>
#include <QRegularExpression>

QVector<ListedGame> readGameList()
{
    QFile file(QStringLiteral(GAME_LIST));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QVector<ListedGame> games;
    file.readLine(); // the names of the columns
    while (!file.atEnd()) {
        QByteArray line = file.readLine();
        line.chop(1);
        const QList<QByteArray> values = line.split('\t');
        if (values.size() != 6)
            return {};
        games.append({values[0], values[1], values[2], values[3], values[4], values[5]});
    }
    return games;
}

QVector<QByteArray> gameCodesIn(const QByteArray &codes)
{
    static const QRegularExpression word("\\b[A-Z0-9]{4}\\b");
    QVector<QByteArray> found;
    QRegularExpressionMatchIterator matches = word.globalMatch(QString::fromLatin1(codes));
    while (matches.hasNext())
        found.append(matches.next().captured().toLatin1());
    return found;
}

QByteArray firstGameCode(const QByteArray &codes)
{
    const QVector<QByteArray> found = gameCodesIn(codes);
    return found.isEmpty() ? codes.right(4) : found.first();
}

int firstRowWith(const QVector<ListedGame> &games, const QByteArray &code)
{
    for (int row = 0; row < games.size(); ++row) {
        if (games[row].codes.contains(code))
            return row;
    }
    return -1;
}
