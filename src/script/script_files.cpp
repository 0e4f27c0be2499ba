#include "script/script_files.h"

#include "script/script_host.h"
#include "script/script_owner.h"

#include <QProcess>

#include <sqstdio.h>

#include <cstdio>

namespace
{

// Has the stream `name` read nothing, and write to nowhere.
void emptyStream(HSQUIRRELVM v, const SQChar *name)
{
    // Shared by all machines, and never closed.
    static std::FILE *const empty = std::fopen(qPrintable(QProcess::nullDevice()), "r+b");
    const SQInteger top = sq_gettop(v);
    sq_pushroottable(v);
    sq_pushstring(v, name, -1);
    if (empty != nullptr && SQ_SUCCEEDED(sqstd_createfile(v, empty, SQFalse)))
        sq_newslot(v, -3, SQFalse);
    sq_settop(v, top);
}

SQInteger refuseFile(HSQUIRRELVM v)
{
    ownerOf(v).hasWantedFiles = true;
    return sq_throwerror(v, "scripts may not use files here");
}

// Leaves the class of files and the name of its constructor on the stack. The class stays wherever
// an instance shows it, so what makes files is the constructor.
void pushConstructorName(HSQUIRRELVM v)
{
    sq_pushregistrytable(v);
    sq_pushstring(v, "std_file", -1);
    sq_rawget(v, -2);
    sq_pushstring(v, "constructor", -1);
}

void closeFiles(HSQUIRRELVM v)
{
    emptyStream(v, "stdout");
    emptyStream(v, "stderr");
    registerNative(v, "writeclosuretofile", refuseFile);
    pushConstructorName(v);
    sq_newclosure(v, refuseFile, 0);
    sq_newslot(v, -3, SQFalse);
}

// The library's constructor takes a pointer, too, for an open file; scripts have `dev`, which is
// none.
void checkNames(HSQUIRRELVM v)
{
    pushConstructorName(v);
    sq_rawget(v, -2);
    sq_setparamscheck(v, 3, "xss");
}

} // namespace

void guardFiles(HSQUIRRELVM v)
{
    const SQInteger top = sq_gettop(v);
    emptyStream(v, "stdin");
    if (ownerOf(v).job.mayUseFiles)
        checkNames(v);
    else
        closeFiles(v);
    sq_settop(v, top);
}
