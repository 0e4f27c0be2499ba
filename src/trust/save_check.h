// What has to be right before a save is written into a cartridge.
//
// Thread: pure functions, but for findLargerSave(), which is as worker/job_run.h.
#pragma once

#include "trust/cartridge_task.h"
#include "trust/kept_backup.h"

// A FLASH chip is erased as a whole and may be larger than the job believes: everything in it has
// to be in the backup. A 64 KiB chip that is read as 128 KiB repeats itself or answers nothing.
// Returns: Done, SaveIsLarger, or how the read failed. Other saves are not looked at.
Outcome findLargerSave(const CartridgeJob &writeJob, TrustListener &listener);

// A backup of the save that `writeJob` replaces, refused where the chip holds more than that. Only
// behind the backup is the chip asked for more: the command for it writes to the bus, and where the
// save memory is none of a FLASH chip that changes a few bytes of it.
KeptBackup keepSaveBackup(const BackupPlan &plan, const CartridgeJob &writeJob,
                          TrustListener &listener);

// Whether all bytes of it are equal, as in an empty save and in a read that failed. Not of nothing.
bool isBlankSave(const QByteArray &save);

// What the cartridge is to hold: a shorter `file` leaves the rest of the `old` save as it is, of a
// longer one the first `saveSize` bytes are taken.
QByteArray newSaveContent(const QByteArray &file, const QByteArray &old, int saveSize);
