// The English that is left in what the window shows.
//
// Thread: pure functions; any thread.
#pragma once

#include <QStringList>

// The words of Latin letters in `text` but for names, units, hashes and `foreign`: texts that come
// from elsewhere, as paths do.
QStringList englishWords(QString text, const QStringList &foreign = {});
