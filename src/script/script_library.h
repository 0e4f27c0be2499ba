// The library's functions as scripts get them. Some believe what they are called with and take the
// program with them; these stand in their places, do the same and look first:
//   array, array.resize        a size below 0, or one that is no size
//   array.sort                 a comparing function that changes the array
//   acall, pacall              more arguments than the stack has room for
//   newthread                  a native in the place of a function
//   thread.call                a coroutine that runs already
//   getstackinfos, also of a coroutine: a level below 0
//   compilestring, loadfile, dofile: what is no text, see script_compile.h
// setdebughook and enabledebuginfo do nothing: the hook is taken. Files: script_files.h.
//
// Natives hold nothing that has to be destroyed while they use the machine, see script_limits.h.
#pragma once

#include <squirrel.h>

// Puts them into a machine that has an owner and the I/O library, see createVm().
void guardLibrary(HSQUIRRELVM v);
