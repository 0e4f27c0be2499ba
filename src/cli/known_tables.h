// The user's own tables of known dumps.
//
// Thread: the one that runs the command.
#pragma once

#include "cli/reporter.h"
#include "trust/dat_file.h"

#include <QStringList>

// Reads the DAT files at `paths`. Returns: false with the problem told.
bool readTables(const QStringList &paths, QVector<DatFile> *tables, Reporter &reporter);
