// What every translation has to keep of its English text, and what the two languages do to
// punctuation and blanks. Words are in word_rules.h.
//
// Each function names what is wrong, one short clause a fault; no fault: an empty list.
// Thread: pure functions; any thread.
#pragma once

#include "ts_file.h"

#include <QStringList>

// Of one finished or unfinished entry.
QStringList faultsOf(const TsEntry &entry, Language language);

// Of texts beside each other: the same English translated differently, different English of one
// context translated alike, a button that a text names otherwise.
QStringList faultsAmong(const QVector<TsEntry> &entries, Language language);
