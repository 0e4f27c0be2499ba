// What a write to a cartridge is about to replace, read twice and kept in a file before anything is
// written.
//
// Thread: as job_runner.h.
#pragma once

#include "cli/job_runner.h"

struct KeptBackup {
    ExitCode code = ExitCode::Done;
    QByteArray bytes; // what the cartridge holds
    QString path;     // empty: nothing was worth keeping
};

// `readJob` reads the memory. If two reads differ nothing is kept and nothing may be written:
// DataMismatch. The file is on the disk under its final name when the call returns with Done.
// `folder` is made if it does not exist.
KeptBackup keepBackup(const CliJob &readJob, const QString &folder, const QString &title,
                      Reporter &reporter);
