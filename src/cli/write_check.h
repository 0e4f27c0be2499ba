// The write itself, between its backup and the proof that it worked.
//
// Thread: as job_runner.h.
#pragma once

#include "cli/kept_backup.h"

// Writes `content` with `writeJob`, reads it back with `readJob` (which may read more) and compares.
// Whatever goes wrong is told with the state of the cartridge and the backup's name.
ExitCode writeAndCheck(const CliJob &writeJob, const CliJob &readJob, const QByteArray &content,
                       const KeptBackup &backup, Reporter &reporter);
