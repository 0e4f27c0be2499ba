// Whether a ROM is known: in the built-in table or in the user's own DAT files.
//
// Thread: the main thread.
#pragma once

#include "cli/dat_file.h"
#include "cli/reporter.h"
#include "cli/verdict.h"

#include <QVector>

// Reads the user's tables. Returns: false with the problem told.
bool readTables(const QStringList &paths, QVector<DatFile> *tables, Reporter &reporter);

// What the content itself and the tables say of a ROM with this SHA-1 (20 bytes); reads and
// differences are the caller's.
RomEvidence evidenceOf(const QByteArray &rom, const QByteArray &sha1,
                       const QVector<DatFile> &tables);
