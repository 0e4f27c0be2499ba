#include "script/script_compile.h"

#include "script/compiler_traps.h"
#include "script/script_limits.h"
#include "script/script_owner.h"
#include "script/script_source.h"

namespace
{

constexpr int kLongestError = 500;
// Of all texts that a machine compiles; they stay until it is closed.
constexpr qint64 kMostText = kScriptMemoryBytes;

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

SQBool tellsErrors(HSQUIRRELVM v)
{
    SQBool tells = SQFalse;
    if (sq_gettop(v) > 2)
        sq_getbool(v, 3, &tells);
    return tells;
}

} // namespace

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

SQInteger loadFile(HSQUIRRELVM v)
{
    const SQChar *path = nullptr;
    sq_getstring(v, 2, &path);
    return SQ_SUCCEEDED(compileFile(v, path, tellsErrors(v) == SQTrue)) ? 1 : SQ_ERROR;
}

SQInteger doFile(HSQUIRRELVM v)
{
    if (loadFile(v) != 1)
        return SQ_ERROR;
    sq_push(v, 1);
    return SQ_SUCCEEDED(sq_call(v, 1, SQTrue, SQTrue)) ? 1 : SQ_ERROR;
}
