// The script host: runs the mapper script of one job in a virtual machine of its own. Each job gets
// a fresh machine with exactly the natives that its operation may use; everything the script
// prints, and every error, reaches the user through the job's log() signal.
//
// Thread: the worker's. Nothing here outlives runOperation().
#pragma once

#include <squirrel.h>

class FamicomThread;

// Opens a virtual machine with error handlers and the I/O library. With an owner, everything
// printed goes to the owner's log(); without one it is discarded. The root table stays on the
// stack, where running a script expects it. The caller closes the machine with sq_close().
HSQUIRRELVM createVm(FamicomThread *owner);

// Makes `function` a global function of the script. It checks its arguments itself.
void registerNative(HSQUIRRELVM v, const SQChar *name, SQFUNCTION function);

// Calls the script's global function `name` with `userPointer` and `count` values of type int.
// Returns: negative if there is no such function (nothing is printed then) or if it ended with an
// error (which has been printed); 0 or more on success. What the function returns is ignored.
SQRESULT callScriptFunction(HSQUIRRELVM v, const SQChar *name, SQUserPointer userPointer, int count,
                            ...);

// Loads the job's script and calls the entry functions of its operation.
// Returns: true if the script part succeeded.
bool runScript(HSQUIRRELVM v, FamicomThread *job);

// Runs the script part of a job in a machine of its own. An operation without natives is refused.
// Returns: true if it succeeded.
bool runOperation(FamicomThread *job);
