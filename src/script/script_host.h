// The script host: runs the mapper script of one job in a virtual machine of its own. Each job gets
// a fresh machine with exactly the natives that its operation may use; everything the script
// prints, and every error, goes to the job's listener as lines of its log.
//
// The library is kept from taking the program with it; see script_limits.h and script_library.h. So
// a script runs on a stack, which is a thread, of its own, while the one that runs the job waits.
// Its natives and what they tell the listener run there.
//
// Thread: the one that runs the job. Nothing here outlives runOperation().
#pragma once

#include "script/job.h"

#include <squirrel.h>

#include <functional>

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

// Whether the script has a global of this name.
bool definesFunction(HSQUIRRELVM v, const SQChar *name);

// sq_call() without a result, within the limits. An error is told to the owner's listener.
SQRESULT callWithinLimits(HSQUIRRELVM v, SQInteger arguments);

// Compiles the file at `path` (8 bits) and runs its top level, with the root table, which
// createVm() left on the stack, as its environment.
// Returns: as sq_call(); kNotCompiled if it cannot be read or compiled, and the owner knows why.
constexpr SQRESULT kNotCompiled = -2;
SQRESULT runScriptFile(HSQUIRRELVM v, const QByteArray &path);

// Has `use` work with a machine of the job's own. Where scriptStop() says afterwards that it was
// given up, nothing of it may be used.
// Returns: false if there is no memory; nothing was run.
bool withMachine(RunningJob &job, const std::function<void(HSQUIRRELVM)> &use);

// Loads the job's script and calls the entry functions of its operation.
// Returns: Done, Refused, ScriptFailed, ScriptError, ScriptStopped, Left, EraseFailed or Cancelled.
JobEnd runScript(HSQUIRRELVM v, RunningJob *job);

// Runs the script part of a job in a machine of its own. An operation without natives is Refused.
JobEnd runOperation(RunningJob *job);
