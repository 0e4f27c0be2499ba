// The DAT files that the user keeps for every program of this project to look up.
//
// Thread: reads files; any thread.
#pragma once

#include "trust/dat_file.h"

#include <QStringList>

struct DatFolder {
    QVector<DatFile> tables; // in the order of their files' names
    QStringList problems;    // of files that cannot be used; each begins with its path
};

// Where they lie: below the user's data directory. It need not exist.
QString datFolder();

// Reads every file there whose name ends in .dat or .xml, in capitals or not. A folder that does
// not exist or cannot be read has none.
DatFolder readDatFolder(const QString &folder);
