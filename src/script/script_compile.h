// Texts on their way to the compiler: those that it would stumble over are refused, see
// script_source.h and compiler_traps.h, and errors are told in the lines of the text.
//
// Thread: as the machine.
#pragma once

#include <squirrel.h>

// Compiles the file at `path` (8 bits) and pushes the function. Its top level is not run.
// `tellsError`: whether the compiler's error is told in the log; it is kept as the owner's
// `scriptError` anyway, and thrown.
// Returns: SQ_OK, or an error with nothing pushed.
SQRESULT compileFile(HSQUIRRELVM v, const SQChar *path, bool tellsError);

// Has compile errors told and kept in the form of the library.
void keepCompileErrors(HSQUIRRELVM v);

// --- The library's functions as scripts get them; natives, whose arguments have been counted ---

SQInteger compileString(HSQUIRRELVM v); // (text [, name])
SQInteger loadFile(HSQUIRRELVM v);      // (path [, tells errors])
SQInteger doFile(HSQUIRRELVM v);        // likewise
