// How the careful steps around a job end: what went wrong, how far it came, and what can be said of
// the cartridge then. Words for people: trust/words.h.
#pragma once

#include "script/job.h"
#include "trust/file_trouble.h"

// What a job is for.
enum class Phase {
    Read,    // what the user asked for
    Compare, // the same again
    Backup,  // what a write is about to replace
    Write,
    Check // what was written, read back
};

// Who hears of careful steps while they run, on the thread that runs them.
class TrustListener : public JobListener
{
public:
    // A job begins that is to move `totalBytes`.
    virtual void onPhase(Phase phase, int totalBytes) = 0;
    // It has ended.
    virtual void onPhaseEnd(const JobResult &result) = 0;
    // isStopWanted() is asked between jobs as well, where stopping leaves nothing half done.
};

// What is known of the cartridge where a task ends.
enum class CartridgeState {
    Untouched,  // nothing was sent to it
    LookedAt,   // its header was read
    OnlyRead,   // its memory was read, without a write to its bus
    Switched,   // likewise, and the bus was written to: bank switches, if the script is the right
                // one
    NotRead,    // a read was meant, and not begun
    NotWritten, // likewise a write; nothing was written to the bus
    NotBegun,   // likewise, behind reads that left it Switched
    PartlyWritten, // or it was begun, and how far it came is not known
    PartlyErased,  // likewise the erase of a chip
    Written        // to its end; whether rightly is another matter
};

// Why a task ended early.
enum class Trouble {
    None,
    JobFailed,     // `job` tells how
    Stopped,       // the user asked to stop
    ReadsDiffer,   // two reads of what is to be replaced; `detail` names the blocks
    SaveIsBlank,   // all bytes of the save to be replaced are equal
    SaveIsLarger,  // the save chip holds more than the job would keep of it
    ChipIsUnclear, // a flash chip says something else when it is asked again
    NoFolder,      // `detail`, the folder for the backup, cannot be made
    NoFile,        // a file cannot be written or read back; `file` says which and why
    NotReadBack,   // written, but the read that was to prove it failed as `job` tells
    Mismatch       // written, but the cartridge holds something else
};

struct Outcome {
    Trouble trouble = Trouble::None;
    CartridgeState state = CartridgeState::Untouched;
    Phase phase = Phase::Read; // of `job`
    JobResult job;             // of JobFailed and NotReadBack
    QString detail;            // see Trouble; of a job without a script its path
    FileTrouble file;          // of NoFile

    bool isDone() const { return trouble == Trouble::None; }
};

// Of a read that left nothing but what it read.
bool isOnlyRead(CartridgeState state);

// A write was meant, and nothing of it was sent.
bool isUnwritten(CartridgeState state);

// What can be said after two steps, of which the first read and the second read or wrote nothing.
CartridgeState afterBoth(CartridgeState first, CartridgeState second);

// What can be said where a write is not begun. `before`: what was done before it left.
CartridgeState unwritten(CartridgeState before);

// What can be said of the cartridge after this job, whose end is `result`.
CartridgeState stateAfter(const CartridgeJob &job, const JobResult &result);
