// Trying a mapper script on a virtual cartridge: what it defines for each operation, and what one
// job with it does. Nothing of this touches a real drive.
//
// Thread: the main thread of an application; blocks. As with a TrialBench, the process has no drive
// backend afterwards.
#pragma once

#include "trial/script_kinds.h"
#include "trial/script_look.h"

#include <QList>
#include <QString>
#include <QStringList>

enum class TrialOutcome {
    NotDefined, // the script does not define the operation's entry functions
    Refused,    // it did not load, or threw before anything was sent to the cartridge
    Failed,     // it threw later, or the chip that it was to erase never became blank
    Wrong,      // it ended well, but the bytes are not where they belong
    Right
};

struct ScriptTrial {
    QString operation; // "cpu_dump", "cpu_erase and cpu_flash", ...
    TrialOutcome outcome = TrialOutcome::NotDefined;
    bool isScriptError = false; // the script itself is wrong
    int movedBytes = 0;
    int expectedBytes = 0;
    DeviceOperations used;
    DeviceOperations least; // what the natives allow
    bool hasLeast = false;
    QStringList log; // of the job
};

// Tries every operation of the kind's system, in the order of the job codes. `*files` says what the
// script may do with files, and learns whether it was refused any.
QList<ScriptTrial> tryScript(const QString &scriptPath, const ScriptKind &kind, FileUse *files);

// What came of a trial, for people: the operation with its verdict, then indented what was moved,
// with how many device operations, and what the job said unless all is right.
QStringList trialLines(const ScriptTrial &trial);
