// Words that a translation must not use, and words that it must: one thing has one word.
//
// Thread: pure function; any thread.
#pragma once

#include "ts_file.h"

#include <QStringList>

// What is wrong, one short clause a fault.
QStringList wordFaults(const QString &source, const QString &translation, Language language);
