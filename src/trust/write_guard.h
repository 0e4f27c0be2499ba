// What has to be so before the window's worker may write into a cartridge: the cartridge is the one
// that the settings speak of, and all that the write replaces lies in a file. And before it may
// read with writes that could change a save.
//
// Thread: as worker/job_run.h.
#pragma once

#include "trust/cartridge_contradiction.h"
#include "trust/flash_check.h"
#include "trust/kept_backup.h"

// A write that somebody wants.
struct WantedWrite {
    CartridgeJob job;
    QString file;            // of the user's, which is to be written
    QString folder;          // for the backup; empty: the default one
    bool isReadBack = false; // what was written will be compared
};

// Why a job must not begin.
enum class GuardFault {
    None,
    Trouble,       // `outcome` tells
    OtherSystem,   // the slot holds a cartridge of another system than the job's
    Danger,        // `danger`
    Contradiction, // `contradiction`
    Flash,         // `flash`, with the two sizes of its text
    Target,        // the file of a dump cannot be written; `outcome` tells
    BeyondBus,     // a GBA ROM larger than the bus reaches is to be read
    NoChip         // nothing answers: no header, no chip, all bytes FF; and nobody would notice
};

struct WriteGuard {
    GuardFault fault = GuardFault::None;
    Outcome outcome;
    Danger danger = Danger::None;
    Contradiction contradiction = Contradiction::None;
    FlashFault flash = FlashFault::None;
    int bytes = 0;
    int allowedBytes = 0;
    KeptBackup backup; // of None; its path also where a refusal came behind it
    // The chip does not say how large it is: kept is what the mapper shows of it.
    bool keepsWhatIsShown = false;
    bool isFileBlank = false; // all bytes of the save that is to be written are equal
};

// Looks at the cartridge, checks, and keeps what it holds. A GBA ROM, which no job can write, is
// let pass: its job ends before it has sent anything.
WriteGuard guardWrite(const WantedWrite &write, TrustListener &listener);

// Looks at the cartridge before a read that writes where another board keeps its save, see
// writesWhereSavesAre(). Of any other read nothing is to be feared, and nothing is looked at.
WriteGuard guardRead(const CartridgeJob &job);
