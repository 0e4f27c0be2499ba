// The write itself, between its backup and the proof that it worked.
//
// Thread: as worker/job_run.h.
#pragma once

#include "trust/checked_read.h"

// How what was read back differs from what was written.
struct WriteMismatch {
    ByteDifferences bytes;
    std::uint32_t size = 0;
    QString blocks; // "banks 3, 7-9 of 64"
    struct Place {
        int offset = 0;
        std::uint8_t found = 0;
        std::uint8_t wanted = 0;
    };
    QVector<Place> first; // the first few
};

struct CheckedWrite {
    Outcome outcome;        // Done: written, read back and equal
    WriteMismatch mismatch; // of Trouble::Mismatch
};

// Reads back what was written, with `readJob`, which reads as much as `content` or more, and
// compares. The state of the cartridge is Written, however this ends.
CheckedWrite checkWritten(const CartridgeJob &readJob, const QByteArray &content,
                          TrustListener &listener);

// Writes `content` with `writeJob`, reads it back as above. Stopped if the user wants that before
// the write; afterwards what was written in full deserves its check, which changes nothing.
// `before`: what the reads before it left.
CheckedWrite writeAndCheck(const CartridgeJob &writeJob, const CartridgeJob &readJob,
                           const QByteArray &content, CartridgeState before,
                           TrustListener &listener);
