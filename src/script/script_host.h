// The script host: runs the mapper script of one job in a virtual machine of its own. Each job gets
// a fresh machine with exactly the natives that its operation may use; everything the script
// prints, and every error, goes to the job's listener as lines of its log.
//
// Thread: the one that runs the job. Nothing here outlives runOperation().
#pragma once

#include "script/job.h"

#include <squirrel.h>

// Opens a virtual machine with error handlers and the I/O library. With an owner, everything
// printed goes to its listener, and it hears of errors in `scriptError`; without one it is
// discarded. The root table stays on the stack, where running a script expects it. The caller
// closes the machine with sq_close().
HSQUIRRELVM createVm(RunningJob *owner);

// Makes `function` a global function of the script. It checks its arguments itself.
void registerNative(HSQUIRRELVM v, const SQChar *name, SQFUNCTION function);

// Calls the script's global function `name` with `userPointer` and `count` values of type int.
// Returns: negative if there is no such function (nothing is printed then) or if it ended with an
// error (which has been printed); 0 or more on success. What the function returns is ignored.
SQRESULT callScriptFunction(HSQUIRRELVM v, const SQChar *name, SQUserPointer userPointer, int count,
                            ...);

// Loads the job's script and calls the entry functions of its operation.
// Returns: Done, Refused, ScriptFailed or Cancelled.
JobEnd runScript(HSQUIRRELVM v, RunningJob *job);

// Runs the script part of a job in a machine of its own. An operation without natives is Refused.
JobEnd runOperation(RunningJob *job);
