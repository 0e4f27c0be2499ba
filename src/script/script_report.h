// What is told of a script's error: the error, the functions it came through, their values. In the
// form of the library, which tells it where the error is about to leave the script. Here it is kept
// from where the error was first raised; so one that a script catches and throws again names its
// cause.
//
// Thread: as the machine.
#pragma once

#include "script/job.h"

#include <squirrel.h>

// Makes the machine keep reports for its owner, see createVm().
void keepErrorReports(HSQUIRRELVM v);

// Tells the owner's listener of the error that has left the script, and forgets it.
void tellErrorReport(RunningJob &job);
