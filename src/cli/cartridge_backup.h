// One cartridge of a stack: its ROM and its save into the folder, and a report beside them.
//
// Files that are there already are never replaced: a ROM with the same bytes is left alone, a save
// with the same bytes too; anything else gets a name of its own.
// Thread: as job_runner.h.
#pragma once

#include "cli/cli_options.h"
#include "cli/dat_file.h"
#include "cli/exit_code.h"
#include "cli/reporter.h"
#include "worker/cartridge_report.h"

#include <QVector>

struct CartridgeBackup {
    ExitCode code = ExitCode::Done; // the worst of ROM and save
    QString title;
    QString rom;       // one line: the verdict, or why there is none
    QString save;      // likewise
    bool isNew = true; // false: every byte was in the folder already
};

// `report`: of the cartridge in the slot, which was recognised. `options`: path (the folder), reads,
// verifies.
CartridgeBackup backUpCartridge(const CartridgeReport &report, const CliOptions &options,
                                const QVector<DatFile> &tables, Reporter &reporter);
