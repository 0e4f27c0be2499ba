#include "script/script_library.h"

#include "script/compiler_traps.h"
#include "script/job.h"
#include "script/script_limits.h"

#include <QProcess>

#include <sqstdio.h>

#include <cstdio>
#include <cstring>

namespace
{

// No array that fits into a machine's memory has more elements.
constexpr SQInteger kMostElements = static_cast<SQInteger>(kScriptMemoryBytes / sizeof(SQObject));
constexpr SQInteger kCoroutineSlots = 64; // to begin with
constexpr SQInteger kMostArguments = 1000;
constexpr int kLongestError = 500;
// Of all texts that a machine compiles; they stay until it is closed.
constexpr qint64 kMostText = kScriptMemoryBytes;

RunningJob &ownerOf(HSQUIRRELVM v)
{
    return *static_cast<RunningJob *>(sq_getsharedforeignptr(v));
}

// --- Arrays ---

// The number at `index` as a size. Returns: false with an error if it is none.
bool getSize(HSQUIRRELVM v, SQInteger index, SQInteger *size)
{
    if (SQ_SUCCEEDED(sq_getinteger(v, index, size)) && *size >= 0 && *size <= kMostElements)
        return true;
    sq_throwerror(v, "an array cannot have this size");
    return false;
}

// Replaces the array's elements from `size` on by `fill`, on top of the stack.
void fillFrom(HSQUIRRELVM v, SQInteger array, SQInteger size)
{
    const SQInteger end = sq_getsize(v, array);
    for (SQInteger i = size; i < end; ++i) {
        sq_pushinteger(v, i);
        sq_push(v, -2);
        sq_rawset(v, array);
    }
}

// (size [, fill])
SQInteger makeArray(HSQUIRRELVM v)
{
    SQInteger size = 0;
    if (!getSize(v, 2, &size))
        return SQ_ERROR;
    const bool hasFill = sq_gettop(v) > 2;
    sq_newarray(v, size);
    if (hasFill) {
        sq_push(v, 3);
        fillFrom(v, sq_gettop(v) - 1, 0);
        sq_poptop(v);
    }
    return 1;
}

// (size [, fill]) of an array
SQInteger resizeArray(HSQUIRRELVM v)
{
    SQInteger size = 0;
    if (!getSize(v, 2, &size))
        return SQ_ERROR;
    const bool hasFill = sq_gettop(v) > 2;
    const SQInteger sizeBefore = sq_getsize(v, 1);
    if (SQ_FAILED(sq_arrayresize(v, 1, size)))
        return SQ_ERROR;
    if (hasFill) {
        sq_push(v, 3);
        fillFrom(v, 1, sizeBefore);
    }
    return 0;
}

// ([compare]) of an array; the library's own is the last on the stack. It sorts a copy, which
// nobody else can change.
SQInteger sortArray(HSQUIRRELVM v)
{
    const SQInteger original = sq_gettop(v);
    const SQInteger size = sq_getsize(v, 1);
    sq_clone(v, 1);
    const SQInteger copy = sq_gettop(v);
    sq_push(v, original);
    sq_push(v, copy);
    if (original > 2)
        sq_push(v, 2);
    if (SQ_FAILED(sq_call(v, original > 2 ? 2 : 1, SQFalse, SQFalse)))
        return SQ_ERROR;
    if (sq_getsize(v, 1) != size)
        return sq_throwerror(v, "the array was changed while it was sorted");
    for (SQInteger i = 0; i < size; ++i) {
        sq_pushinteger(v, i);
        sq_pushinteger(v, i);
        sq_rawget(v, copy);
        sq_rawset(v, 1);
    }
    return 0;
}

// --- Calls and coroutines ---

// (arguments) of a function
SQInteger callWithArray(HSQUIRRELVM v)
{
    const SQInteger count = sq_getsize(v, 2);
    if (count > kMostArguments)
        return sq_throwerror(v, "too many arguments");
    if (SQ_FAILED(sq_reservestack(v, count + 8)))
        return SQ_ERROR;
    sq_push(v, 1);
    for (SQInteger i = 0; i < count; ++i) {
        sq_pushinteger(v, i);
        sq_rawget(v, 2);
    }
    return SQ_SUCCEEDED(sq_call(v, count, SQTrue, SQFalse)) ? 1 : SQ_ERROR;
}

// (function)
SQInteger newCoroutine(HSQUIRRELVM v)
{
    if (sq_gettype(v, 2) != OT_CLOSURE)
        return sq_throwerror(v, "a coroutine needs a function of the script");
    HSQUIRRELVM coroutine = sq_newthread(v, kCoroutineSlots);
    sq_move(coroutine, v, 2);
    return 1;
}

// (arguments...) of a coroutine
SQInteger callCoroutine(HSQUIRRELVM v)
{
    HSQUIRRELVM coroutine = nullptr;
    if (SQ_FAILED(sq_getthread(v, 1, &coroutine)))
        return SQ_ERROR;
    if (sq_getvmstate(coroutine) != SQ_VMSTATE_IDLE)
        return sq_throwerror(v, "the coroutine runs already");
    const SQInteger count = sq_gettop(v);
    if (SQ_FAILED(sq_reservestack(coroutine, count + 3)))
        return SQ_ERROR;
    sq_pushroottable(coroutine);
    for (SQInteger i = 2; i <= count; ++i)
        sq_move(coroutine, v, i);
    if (SQ_SUCCEEDED(sq_call(coroutine, count, SQTrue, SQTrue))) {
        sq_move(v, coroutine, -1);
        sq_pop(coroutine, 1);
        return 1;
    }
    sq_getlasterror(coroutine);
    sq_move(v, coroutine, -1);
    sq_pop(coroutine, 1);
    return sq_throwobject(v);
}

// --- The stack ---

void addSlot(HSQUIRRELVM v, const SQChar *name)
{
    sq_pushstring(v, name, -1);
    sq_push(v, -2);
    sq_newslot(v, -4, SQFalse);
    sq_poptop(v);
}

// What the library's function makes of one level, with the line as the text has it. Pushes a table.
SQInteger pushStackInfos(HSQUIRRELVM v, SQInteger level)
{
    SQStackInfos infos;
    if (level < 0 || SQ_FAILED(sq_stackinfos(v, level, &infos)) ||
        SQ_FAILED(sq_reservestack(v, 16)))
        return 0;
    const SQChar *source = infos.source == nullptr ? "unknown" : infos.source;
    const SQInteger line = ownerOf(v).sources.lineOf(source, static_cast<int>(infos.line));
    sq_newtable(v);
    sq_pushstring(v, infos.funcname == nullptr ? "unknown" : infos.funcname, -1);
    addSlot(v, "func");
    sq_pushstring(v, source, -1);
    addSlot(v, "src");
    sq_pushinteger(v, line);
    addSlot(v, "line");
    sq_newtable(v);
    const SQChar *name = nullptr;
    for (SQUnsignedInteger index = 0;
         (name = sq_getlocal(v, static_cast<SQUnsignedInteger>(level), index)) != nullptr; ++index)
        addSlot(v, name);
    addSlot(v, "locals");
    return 1;
}

// (level)
SQInteger stackInfos(HSQUIRRELVM v)
{
    SQInteger level = 0;
    sq_getinteger(v, 2, &level);
    return pushStackInfos(v, level);
}

// (level) of a coroutine
SQInteger coroutineStackInfos(HSQUIRRELVM v)
{
    HSQUIRRELVM coroutine = nullptr;
    SQInteger level = 0;
    if (SQ_FAILED(sq_getthread(v, 1, &coroutine)) || SQ_FAILED(sq_getinteger(v, 2, &level)))
        return SQ_ERROR;
    const SQInteger top = sq_gettop(coroutine);
    if (pushStackInfos(coroutine, level) == 0)
        return 0;
    sq_move(v, coroutine, -1);
    sq_settop(coroutine, top);
    return 1;
}

SQInteger doNothing(HSQUIRRELVM /*v*/)
{
    return 0;
}

// --- Compiling ---

SQInteger nextByte(SQUserPointer source)
{
    checkScriptDepth(); // the compiler calls itself for everything that is nested
    return static_cast<ScriptSource *>(source)->nextByte();
}

void noteError(RunningJob &job, const QString &error, const QString &source, int line, int column)
{
    job.scriptError = source +
                      QStringLiteral(" line = (%1) column = (%2) : error ").arg(line).arg(column) +
                      error;
    job.scriptPlace = placeText(source, line);
    job.isThrown = false;
}

void reportCompilerError(HSQUIRRELVM v, const SQChar *error, const SQChar *source, SQInteger line,
                         SQInteger column)
{
    RunningJob &job = ownerOf(v);
    const int compiledLine = static_cast<int>(line);
    const ScriptSource *text = job.sources.last();
    const int realLine = text == nullptr ? compiledLine : text->lineOf(compiledLine);
    const int realColumn = text == nullptr ? static_cast<int>(column)
                                           : text->columnOf(compiledLine, static_cast<int>(column));
    noteError(job, QString::fromUtf8(error), QString::fromUtf8(source), realLine, realColumn);
}

// Throws what is wrong with a text, as the compiler says it of a place in it.
SQRESULT throwFault(HSQUIRRELVM v, bool tellsError)
{
    RunningJob &job = ownerOf(v);
    if (tellsError)
        job.listener.onLine(job.scriptError + QLatin1Char('\n'));
    char copy[kLongestError];
    qstrncpy(copy, job.scriptError.toUtf8().constData(), sizeof(copy));
    return sq_throwerror(v, copy);
}

// Compiles the text that was added last.
SQRESULT compileLast(HSQUIRRELVM v, bool tellsError)
{
    ScriptSource *source = ownerOf(v).sources.last();
    const CompilerTrap trap = findCompilerTrap(source->text());
    if (trap.error != nullptr) {
        noteError(ownerOf(v), QString::fromUtf8(trap.error), QString::fromUtf8(source->name()),
                  trap.line, trap.column);
        return throwFault(v, tellsError);
    }
    return SQ_SUCCEEDED(sq_compile(v, nextByte, source, source->name().constData(), SQTrue))
               ? SQ_OK
               : throwFault(v, tellsError);
}

// Reads a file for compileLast(). Returns: false if it cannot be compiled; the job says why, and
// where, but of a file that is not there.
bool addFile(RunningJob &job, const SQChar *path)
{
    QByteArray text;
    QString fault;
    const bool isRead = readScriptFile(path, &text, &fault);
    if (isRead && fault.isEmpty() && job.sources.totalBytes() + text.size() > kMostText)
        fault = QStringLiteral("the script compiles too much text");
    if (fault.isEmpty()) {
        job.sources.add(path, text);
        return true;
    }
    if (isRead) {
        noteError(job, fault, QString::fromLocal8Bit(path), 1, 1);
        return false;
    }
    job.scriptPlace.clear();
    job.scriptError = fault;
    job.isThrown = false;
    return false;
}

// (text [, name])
SQInteger compileString(HSQUIRRELVM v)
{
    const SQChar *text = nullptr;
    const SQChar *name = "unnamedbuffer";
    sq_getstring(v, 2, &text);
    if (sq_gettop(v) > 2)
        sq_getstring(v, 3, &name);
    const SQInteger size = sq_getsize(v, 2);
    if (size > kLongestScript || ownerOf(v).sources.totalBytes() + size > kMostText)
        return sq_throwerror(v, "the text is too large for a script");
    ownerOf(v).sources.add(name, QByteArray(text, static_cast<int>(size)));
    return SQ_SUCCEEDED(compileLast(v, false)) ? 1 : SQ_ERROR;
}

SQBool tellsErrors(HSQUIRRELVM v)
{
    SQBool tells = SQFalse;
    if (sq_gettop(v) > 2)
        sq_getbool(v, 3, &tells);
    return tells;
}

// (path [, tells errors])
SQInteger loadFile(HSQUIRRELVM v)
{
    const SQChar *path = nullptr;
    sq_getstring(v, 2, &path);
    return SQ_SUCCEEDED(compileFile(v, path, tellsErrors(v) == SQTrue)) ? 1 : SQ_ERROR;
}

// (path [, tells errors])
SQInteger doFile(HSQUIRRELVM v)
{
    if (loadFile(v) != 1)
        return SQ_ERROR;
    sq_push(v, 1);
    return SQ_SUCCEEDED(sq_call(v, 1, SQTrue, SQTrue)) ? 1 : SQ_ERROR;
}

// --- Files and tables ---

// An error, because the compiler takes the root table for a table.
SQInteger setRootTable(HSQUIRRELVM v)
{
    sq_pushroottable(v);
    sq_push(v, 2);
    return SQ_SUCCEEDED(sq_setroottable(v)) ? 1 : SQ_ERROR;
}

struct Replacement {
    const SQChar *name;
    SQFUNCTION function;
    SQInteger parameters; // as the library counts and types them
    const SQChar *types;
    bool wantsOriginal; // on top of its stack
};

// In the table on top of the stack.
template <int count> void replace(HSQUIRRELVM v, const Replacement (&rows)[count])
{
    for (const Replacement &row : rows) {
        sq_pushstring(v, row.name, -1);
        if (row.wantsOriginal) {
            sq_pushstring(v, row.name, -1);
            sq_rawget(v, -3);
        }
        sq_newclosure(v, row.function, row.wantsOriginal ? 1 : 0);
        sq_setparamscheck(v, row.parameters, row.types);
        sq_setnativeclosurename(v, -1, row.name);
        sq_newslot(v, -3, SQFalse);
    }
}

template <int count>
void replaceMethods(HSQUIRRELVM v, SQObjectType type, const Replacement (&rows)[count])
{
    sq_getdefaultdelegate(v, type);
    replace(v, rows);
    sq_poptop(v);
}

// Has `name` read nothing, and write to nowhere.
void emptyStream(HSQUIRRELVM v, const SQChar *name)
{
    // Shared by all machines, and never closed.
    static std::FILE *const empty = std::fopen(qPrintable(QProcess::nullDevice()), "r+b");
    sq_pushroottable(v);
    sq_pushstring(v, name, -1);
    if (empty != nullptr && SQ_SUCCEEDED(sqstd_createfile(v, empty, SQFalse)))
        sq_newslot(v, -3, SQFalse);
    sq_settop(v, 1);
}

SQInteger refuseFile(HSQUIRRELVM v)
{
    ownerOf(v).hasWantedFiles = true;
    return sq_throwerror(v, "scripts may not use files here");
}

constexpr Replacement kFileWriters[] = {{"writeclosuretofile", refuseFile, 0, nullptr, false}};
constexpr Replacement kOfFiles[] = {{"constructor", refuseFile, 0, nullptr, false}};

// The class that makes files out of names stays where instances show it, so its constructor goes.
void closeFiles(HSQUIRRELVM v)
{
    for (const SQChar *name : {"stdout", "stderr"})
        emptyStream(v, name);
    sq_pushroottable(v);
    replace(v, kFileWriters);
    sq_settop(v, 1);
    sq_pushregistrytable(v);
    sq_pushstring(v, "std_file", -1);
    sq_rawget(v, -2);
    replace(v, kOfFiles);
    sq_settop(v, 1);
}

// The file class takes a pointer, too, for an open file; scripts have `dev`, which is none.
void guardFiles(HSQUIRRELVM v)
{
    emptyStream(v, "stdin");
    sq_pushregistrytable(v);
    sq_pushstring(v, "std_file", -1);
    sq_rawget(v, -2);
    sq_pushstring(v, "constructor", -1);
    sq_rawget(v, -2);
    sq_setparamscheck(v, 3, "xss");
    sq_settop(v, 1);
}

constexpr Replacement kGlobals[] = {{"array", makeArray, -2, ".n", false},
                                    {"compilestring", compileString, -2, ".ss", false},
                                    {"dofile", doFile, -2, ".sb", false},
                                    {"enabledebuginfo", doNothing, 2, nullptr, false},
                                    {"getstackinfos", stackInfos, 2, ".n", false},
                                    {"loadfile", loadFile, -2, ".sb", false},
                                    {"newthread", newCoroutine, 2, ".c", false},
                                    {"setdebughook", doNothing, 2, nullptr, false},
                                    {"setroottable", setRootTable, 2, ".t", false}};
constexpr Replacement kOfArrays[] = {{"resize", resizeArray, -2, "an", false},
                                     {"sort", sortArray, -1, "ac", true}};
constexpr Replacement kOfFunctions[] = {{"acall", callWithArray, 2, "ca", false},
                                        {"pacall", callWithArray, 2, "ca", false}};
constexpr Replacement kOfCoroutines[] = {{"call", callCoroutine, -1, "v", false},
                                         {"getstackinfos", coroutineStackInfos, 2, "vn", false}};

} // namespace

void guardLibrary(HSQUIRRELVM v)
{
    sq_pushroottable(v);
    replace(v, kGlobals);
    sq_poptop(v);
    replaceMethods(v, OT_ARRAY, kOfArrays);
    replaceMethods(v, OT_CLOSURE, kOfFunctions);
    replaceMethods(v, OT_THREAD, kOfCoroutines);
    guardFiles(v);
    if (!ownerOf(v).job.mayUseFiles)
        closeFiles(v);
}

SQRESULT compileFile(HSQUIRRELVM v, const SQChar *path, bool tellsError)
{
    if (!addFile(ownerOf(v), path))
        return throwFault(v, tellsError && !ownerOf(v).scriptPlace.isEmpty());
    return compileLast(v, tellsError);
}

void keepCompileErrors(HSQUIRRELVM v)
{
    sq_setcompilererrorhandler(v, reportCompilerError);
}
