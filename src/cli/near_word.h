// What somebody may have meant by a word that is not known.
// Pure; any thread.
#pragma once

#include <QString>
#include <QStringList>

// The word of `words` that is closest to `typed`, or that `typed` is the beginning of; small and
// capital letters count as equal. Returns: empty if none is close.
QString nearWord(const QString &typed, const QStringList &words);
