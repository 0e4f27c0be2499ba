// Whether a ROM is known: in the built-in table or in the user's own DAT files.
//
// Thread: pure functions; any thread.
#pragma once

#include "trust/dat_file.h"
#include "trust/verdict.h"

// The title of a ROM of `size` bytes with this SHA-1 (20 bytes), and the table that has it: the
// built-in one first, then `tables` in their order. Nothing if none has.
std::optional<KnownTitle> findKnown(std::uint32_t size, const QByteArray &sha1,
                                    const QVector<DatFile> &tables);

// What the content itself and the tables say of a ROM with this SHA-1 (20 bytes); reads and
// differences are the caller's.
RomEvidence evidenceOf(const QByteArray &rom, const QByteArray &sha1,
                       const QVector<DatFile> &tables);
