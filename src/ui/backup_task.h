// "Back up this cartridge...": ROM, save and a report into one folder, told in the log.
#pragma once

#include "trust/cartridge_backup.h"

#include <QStringList>

// What came of it.
struct CartridgeBackupResult {
    CartridgeReport report; // of the cartridge in the slot
    BackedUpMemory rom;
    BackedUpMemory save;
    Outcome written;           // the report beside the files
    QStringList tableProblems; // of the user's DAT files, see DatFolder
};

// Looks at the cartridge and backs it up into `folder`, which exists.
// Thread: as worker/job_run.h.
CartridgeBackupResult backUpCartridge(const QString &folder, TrustListener &listener);

// Entries of the log, the rule last.
// Thread: GUI thread.
QStringList backupEntries(const CartridgeBackupResult &result);
