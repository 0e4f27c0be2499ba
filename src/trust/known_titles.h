// Whether a ROM is known: in the built-in table or in the user's own DAT files.
//
// Thread: pure functions; any thread.
#pragma once

#include "trust/dat_file.h"
#include "trust/verdict.h"

// What the content itself and the tables say of a ROM with this SHA-1 (20 bytes); reads and
// differences are the caller's.
RomEvidence evidenceOf(const QByteArray &rom, const QByteArray &sha1,
                       const QVector<DatFile> &tables);
