// The library's functions as scripts get them. Some believe what they are called with and take the
// program with them; these stand in their places, do the same and look first:
//   array, array.resize        a size below 0, or one that is no size
//   array.sort                 a comparing function that changes the array
//   acall, pacall              more arguments than the stack has room for
//   newthread                  a native in the place of a function
//   thread.call                a coroutine that runs already
//   getstackinfos, also of a coroutine: a level below 0
//   compilestring, loadfile, dofile: what is no text, see script_source.h
//   file                       what is no name of a file
// setdebughook and enabledebuginfo do nothing: the hook is taken. There is nobody to type into
// `stdin`, so it is empty.
//
// In a job whose script may not use files, none can be opened or written; what is written to
// `stdout` and `stderr` goes nowhere.
//
// Natives hold nothing that has to be destroyed while they use the machine, see script_limits.h.
#pragma once

#include <squirrel.h>

// Puts them into a machine that has an owner and the I/O library, see createVm().
void guardLibrary(HSQUIRRELVM v);

// Compiles the file at `path` (8 bits) and pushes the function. Its top level is not run.
// `tellsError`: whether the compiler's error is told in the log; it is kept as the owner's
// `scriptError` anyway, and thrown.
SQRESULT compileFile(HSQUIRRELVM v, const SQChar *path, bool tellsError);

// Has compile errors told and kept in the form of the library.
void keepCompileErrors(HSQUIRRELVM v);
