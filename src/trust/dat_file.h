// A DAT file: the list of known dumps in XML that catalogue sites publish, for what the built-in
// table does not know, such as hacks and re-releases. Read are
//
//   <datafile>
//     <header><name>...</name></header>
//     <game name="..."> or <machine name="...">
//       <rom name="..." size="..." sha1="..." status="..."/>
//
// and everything else is passed over.
// Thread: pure functions and one read of a file; any thread.
#pragma once

#include "cart/known_dumps.h"

#include <QByteArray>
#include <QString>
#include <QVector>

constexpr qint64 kLargestDatBytes = 64 * 1024 * 1024;

struct DatEntry {
    QString title;    // the game's name, of a game of several ROMs "game: ROM"; cut at 255 letters
    quint64 size = 0; // bytes
    Sha1Digest sha1{};
};

struct DatFile {
    QString name;              // what the file calls itself; may be empty
    QVector<DatEntry> entries; // sorted by SHA-1; equal ones in the file's order
    int leftOut = 0;           // ROMs marked as bad or missing, or without size or SHA-1
};

// Reads what a DAT file holds, without the faults of dat_tags.h.
// Returns: false with the reason in `*problem`, with the line number; `*dat` is as before.
[[nodiscard]] bool parseDat(const QByteArray &bytes, DatFile *dat, QString *problem);

// The same for the file at `path`, which must be an ordinary one of kLargestDatBytes at most; the
// reason begins with the path. A file that calls itself nothing gets its own name.
[[nodiscard]] bool readDatFile(const QString &path, DatFile *dat, QString *problem);

// The first entry with this size and SHA-1. A binary search.
// Returns: nullptr if there is none. Owner: `dat`.
const DatEntry *findInDat(const DatFile &dat, quint64 size, const Sha1Digest &sha1);
