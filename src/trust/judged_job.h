// What a job of the window's is worth, found out when it has ended: from its end, its file, and, if
// the user wants that, from another look at the cartridge.
//
// Thread: as worker/job_run.h; without a second look and a comparison nothing is sent to the
// reader.
#pragma once

#include "trust/checked_write.h"
#include "trust/judgement.h"

struct FinishedJob {
    CartridgeJob job;
    JobResult result;
    QString path;                                      // of the user's file
    CartridgeState before = CartridgeState::Untouched; // of a write: what the reads before it left
};

struct JudgedJob {
    JudgementKind kind = JudgementKind::Failed;
    CartridgeJob job;
    Outcome outcome; // of every kind that is no verdict
    Verdict verdict; // of a read that was judged
    int bytes = 0;   // that were read or written
    QByteArray sha1; // of what was read; 20 bytes
    int reads = 0;
    bool isCompared = false;   // what was written was read back
    qint64 fileBytes = 0;      // of a written file, which may have more than fit
    WriteMismatch mismatch;    // of Trouble::Mismatch
    QStringList tableProblems; // of the user's DAT files, see DatFolder
};

// A dump or a save that was read. `readsAgain`: what no table knows is read a second time, and
// compared with the file.
JudgedJob judgeRead(const FinishedJob &finished, bool readsAgain, TrustListener &listener);

// A write. `compares`: what the cartridge holds now is read and compared with the file.
JudgedJob judgeWrite(const FinishedJob &finished, bool compares, TrustListener &listener);

// What the file of a read holds, compared with another read of the cartridge.
JudgedJob compareAgain(const FinishedJob &finished, TrustListener &listener);

// A ROM file that nobody saw read.
JudgedJob judgeRomFile(const QString &path);
