#include "script/script_host.h"

#include "device/device_commands.h"
#include "device/device_link.h"
#include "device/local_path.h"
#include "script/erase_poll.h"
#include "script/natives.h"

#include <QObject>

#include <sqstdaux.h>
#include <sqstdio.h>

#include <cstdarg>
#include <cstdio>

namespace
{

constexpr SQInteger kInitialStackSlots = 1024;
constexpr std::size_t kPrintBufferSize = 1024;

void printNothing(HSQUIRRELVM /*v*/, const SQChar * /*format*/, ...) {}

void printToLog(HSQUIRRELVM v, const SQChar *format, ...)
{
    // Longer messages are cut: one print is one line of a log, not a document.
    char text[kPrintBufferSize] = {};
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof(text) - 1, format, arguments);
    va_end(arguments);
    // Coroutines of a script are machines of their own; only the shared pointer reaches them.
    auto *owner = static_cast<RunningJob *>(sq_getsharedforeignptr(v));
    owner->listener.onLine(QString::fromUtf8(text));
}

// What the script threw, or the machine for it, as far as it is a text.
QString lastError(HSQUIRRELVM v)
{
    const SQInteger top = sq_gettop(v);
    sq_getlasterror(v);
    const SQChar *text = nullptr;
    const bool isText = SQ_SUCCEEDED(sq_getstring(v, -1, &text));
    const QString error = isText ? QString::fromUtf8(text) : QString();
    sq_settop(v, top);
    return error;
}

void reportCompilerError(HSQUIRRELVM v, const SQChar *error, const SQChar *source, SQInteger line,
                         SQInteger column)
{
    const QString text =
        QString::fromUtf8(source) +
        QStringLiteral(" line = (%1) column = (%2) : error ").arg(line).arg(column) +
        QString::fromUtf8(error);
    auto *owner = static_cast<RunningJob *>(sq_getsharedforeignptr(v));
    owner->scriptError = text;
    sq_geterrorfunc(v)(v, "%s\n", text.toUtf8().constData());
}

// After a call whose result was this: keeps what the script said. To the library a function that
// suspends itself has succeeded; here it has not come to its end, and nobody wakes it up.
void noteScriptError(HSQUIRRELVM v, SQRESULT result, const QString &name, RunningJob *job)
{
    job->scriptError = SQ_FAILED(result) ? lastError(v) : QString();
    if (sq_getvmstate(v) != SQ_VMSTATE_SUSPENDED)
        return;
    job->scriptError = name + QStringLiteral(" suspended itself");
    job->listener.onLine(job->scriptError);
}

JobEnd endOf(HSQUIRRELVM v, SQRESULT result, const RunningJob &job)
{
    if (sq_getvmstate(v) == SQ_VMSTATE_SUSPENDED)
        return JobEnd::ScriptFailed;
    if (SQ_SUCCEEDED(result))
        return JobEnd::Done;
    // Without an error of its own the script lacks the entry function.
    return job.hasTouchedCartridge || job.scriptError.isEmpty() ? JobEnd::ScriptFailed
                                                                : JobEnd::Refused;
}

// One entry function, with the line before it and the line behind it. Both come whether the call
// succeeds or not.
JobEnd callEntry(HSQUIRRELVM v, RunningJob *job, const QString &begin, const SQChar *name, int size,
                 const QString &end)
{
    job->listener.onLine(begin);
    const SQRESULT result = callScriptFunction(v, name, job, 2, size, size);
    noteScriptError(v, result, QLatin1String(name), job);
    job->listener.onLine(end);
    return endOf(v, result, *job);
}

// Compiles the script and runs its top level, with the root table as environment, as the library's
// own function for both does.
JobEnd loadScript(HSQUIRRELVM v, RunningJob *job)
{
    if (SQ_FAILED(sqstd_loadfile(v, localPath(job->job.scriptPath).constData(), SQTrue))) {
        if (job->scriptError.isEmpty()) // it could not be read
            job->scriptError = lastError(v);
        return JobEnd::ScriptFailed;
    }
    sq_push(v, -2);
    const SQRESULT result = sq_call(v, 1, SQFalse, SQTrue);
    // Not an error of another file that the script has loaded and got over.
    noteScriptError(v, result, QStringLiteral("the script"), job);
    sq_pop(v, 1);
    return endOf(v, result, *job);
}

JobEnd dumpRom(HSQUIRRELVM v, RunningJob *job)
{
    const int size = job->job.romSize;
    return callEntry(v, job, QObject::tr("Start dump rom..."), "cpu_dump", size,
                     QObject::tr("Dump rom finish."));
}

JobEnd dumpSave(HSQUIRRELVM v, RunningJob *job)
{
    const int size = job->job.ramSize;
    return callEntry(v, job, QObject::tr("Start dump save..."), "save_dump", size,
                     QObject::tr("Dump save finish."));
}

JobEnd writeSave(HSQUIRRELVM v, RunningJob *job)
{
    const int size = job->job.ramSize;
    return callEntry(v, job, QObject::tr("Start write save..."), "save_write", size,
                     QObject::tr("Write save finish."));
}

JobEnd writeGbaSave(HSQUIRRELVM v, RunningJob *job)
{
    constexpr int kFlashSave = 1;
    if (job->job.saveType == kFlashSave) {
        job->listener.onLine(QObject::tr("Start erase flash chip..."));
        job->hasTouchedCartridge = true;
        const std::uint32_t answer = gbaSaveErase();
        if (answer == 0 || answer == kFailed) {
            job->scriptError = job->failedOperation =
                QStringLiteral("the reader did not take the command that erases the save");
            job->listener.onLine(job->scriptError);
            return JobEnd::ScriptFailed;
        }
        if (!waitForGbaSaveErase(job->listener))
            return JobEnd::Cancelled;
        job->listener.onLine(QObject::tr("Erase flash chip finish."));
    }
    return writeSave(v, job);
}

JobEnd flashRom(HSQUIRRELVM v, RunningJob *job)
{
    const int size = job->job.romSize;
    job->listener.onLine(QObject::tr("Start erase flash chip..."));
    const SQRESULT erased = callScriptFunction(v, "cpu_erase", job, 2, size, job->job.flashWidth);
    noteScriptError(v, erased, QStringLiteral("cpu_erase"), job);
    // A chip that never got the commands need not be waited for. Whatever else went wrong, the poll
    // below decides whether the erase worked.
    if (sq_getvmstate(v) == SQ_VMSTATE_SUSPENDED ||
        (SQ_FAILED(erased) && !job->failedOperation.isEmpty()))
        return JobEnd::ScriptFailed;
    if (!waitForGbErase(job->listener))
        // A script that did not say why it sent nothing has refused nothing: the user ended the
        // wait.
        return job->hasTouchedCartridge || job->scriptError.isEmpty() ? JobEnd::Cancelled
                                                                      : JobEnd::Refused;
    job->listener.onLine(QObject::tr("Erase flash chip finish."));
    return callEntry(v, job, QObject::tr("Start flash ROM..."), "cpu_flash", size,
                     QObject::tr("Flash ROM finish."));
}

} // namespace

HSQUIRRELVM createVm(RunningJob *owner)
{
    HSQUIRRELVM v = sq_open(kInitialStackSlots);
    SQPRINTFUNCTION print = printNothing;
    if (owner != nullptr) {
        sq_setforeignptr(v, owner);
        sq_setsharedforeignptr(v, owner);
        print = printToLog;
    }
    sq_setprintfunc(v, print, print);
    sq_pushroottable(v);
    sqstd_seterrorhandlers(v);
    if (owner != nullptr)
        sq_setcompilererrorhandler(v, reportCompilerError);
    sqstd_register_iolib(v);
    return v;
}

void registerNative(HSQUIRRELVM v, const SQChar *name, SQFUNCTION function)
{
    sq_pushroottable(v);
    sq_pushstring(v, name, -1);
    sq_newclosure(v, function, 0);
    sq_newslot(v, -3, SQFalse);
    sq_pop(v, 1);
}

SQRESULT callScriptFunction(HSQUIRRELVM v, const SQChar *name, SQUserPointer userPointer, int count,
                            ...)
{
    const SQInteger top = sq_gettop(v);
    SQRESULT result = SQ_ERROR;
    sq_pushroottable(v);
    sq_pushstring(v, name, -1);
    if (SQ_SUCCEEDED(sq_get(v, -2))) {
        sq_pushroottable(v);
        sq_pushuserpointer(v, userPointer);
        va_list values;
        va_start(values, count);
        for (int i = 0; i < count; ++i)
            sq_pushinteger(v, va_arg(values, int));
        va_end(values);
        result = sq_call(v, count + 2, SQFalse, SQTrue);
    } else {
        sq_reseterror(v); // the host looked in vain; the script has said nothing
    }
    sq_settop(v, top);
    return result;
}

JobEnd runScript(HSQUIRRELVM v, RunningJob *job)
{
    const JobEnd loaded = loadScript(v, job);
    if (loaded != JobEnd::Done) {
        job->listener.onLine(QObject::tr("dump core script error\n"));
        return loaded;
    }
    switch (job->job.operate) {
    case GB_READ_ROM:
    case GBA_READ_ROM:
        return dumpRom(v, job);
    case GB_READ_RAM:
    case GBA_READ_RAM:
        return dumpSave(v, job);
    case GB_WRITE_RAM:
        return writeSave(v, job);
    case GBA_WRITE_RAM:
        return writeGbaSave(v, job);
    case GB_WRITE_FLASH:
        return flashRom(v, job);
    default:
        return JobEnd::Refused;
    }
}

JobEnd runOperation(RunningJob *job)
{
    const NativeSet natives = nativesOf(job->job.operate);
    if (natives.count == 0) {
        job->listener.onLine(QObject::tr("Unknow operate!"));
        return JobEnd::Refused;
    }
    HSQUIRRELVM v = createVm(job);
    for (int i = 0; i < natives.count; ++i)
        registerNative(v, natives.natives[i].name, natives.natives[i].function);
    const JobEnd end = runScript(v, job);
    sq_pop(v, 1);
    sq_close(v);
    return end;
}
