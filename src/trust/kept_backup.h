// What a write to a cartridge is about to replace, read twice and kept in a file before anything is
// written.
//
// Thread: as worker/job_run.h.
#pragma once

#include "trust/checked_read.h"

struct BackupPlan {
    CartridgeJob readJob; // reads all that the write may destroy
    QString folder;       // empty: the default one; made if it does not exist
    QString title;
    // A save of equal bytes is kept like any other. It is what an empty save reads as, but also
    // what a wrong kind of save memory and a bad contact read as, so it takes the user's word.
    bool acceptsEqualBytes = false;
    // A ROM that was read beyond the end of its chip holds the chip several times; keep it once.
    bool cutsRepetitions = false;
};

struct KeptBackup {
    Outcome outcome;
    QByteArray bytes;      // what the cartridge holds
    QString path;          // empty: no file
    bool isErased = false; // a ROM that is nothing but FF: there is nothing to keep
};

// A folder or a disk that cannot take the file is told before anything is read.
// If two reads differ nothing is kept and nothing may be written: ReadsDiffer. The file is on the
// disk under its final name when the call returns with a path.
KeptBackup keepBackup(const BackupPlan &plan, TrustListener &listener);

// The same without a file: what a write will not replace has to be known as well.
KeptBackup readTwice(const CartridgeJob &readJob, TrustListener &listener);
