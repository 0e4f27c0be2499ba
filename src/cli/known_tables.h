// The user's own tables of known dumps.
//
// Thread: the one that runs the command.
#pragma once

#include "cli/reporter.h"
#include "trust/dat_file.h"

#include <QStringList>

// Reads the DAT files at `paths`, then those of the user's folder (datFolder()).
// Returns: false with the problem told. In the folder a file that cannot be read is told and left
// out.
bool readTables(const QStringList &paths, QVector<DatFile> *tables, Reporter &reporter);
