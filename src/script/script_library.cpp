#include "script/script_library.h"

#include "script/script_compile.h"
#include "script/script_files.h"
#include "script/script_limits.h"
#include "script/script_owner.h"

#include <cstring>

namespace
{

// No array that fits into a machine's memory has more elements.
constexpr SQInteger kMostElements = static_cast<SQInteger>(kScriptMemoryBytes / sizeof(SQObject));
constexpr SQInteger kCoroutineSlots = 64; // to begin with
constexpr SQInteger kMostArguments = 1000;

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

// --- Tables ---

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
}
