// The files that the library opens for scripts, and the streams of the process that it hands them.
//
// Thread: as the machine.
#pragma once

#include <squirrel.h>

// In a machine that has an owner and the I/O library: `stdin` is empty, as there is nobody to type,
// and the class "file" takes a name and no pointer. Where the owner's job does not allow files,
// none can be opened or written, and `stdout` and `stderr` go nowhere; the owner learns of an
// attempt.
void guardFiles(HSQUIRRELVM v);
