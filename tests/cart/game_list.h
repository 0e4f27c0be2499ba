// The game table as its file has it, for comparing with what was compiled in.
#pragma once

#include <QByteArray>
#include <QVector>

struct ListedGame {
    QByteArray title;
    QByteArray year;
    QByteArray publisher;
    QByteArray codes;
    QByteArray romSize;
    QByteArray saveKey;
};

// The rows of data/gba_games.tsv in its order; empty if the file cannot be read or a row has not
// six values.
QVector<ListedGame> readGameList();

// The words of four capital letters and digits in product codes: the game codes, and now and then a
// maker's own prefix of that length.
QVector<QByteArray> gameCodesIn(const QByteArray &codes);

// What a cartridge with the first of these product codes has as its game code. The one product code
// without any stands for itself with its last four characters.
QByteArray firstGameCode(const QByteArray &codes);

// Position of the first row whose product codes contain `code`, or -1.
int firstRowWith(const QVector<ListedGame> &games, const QByteArray &code);
