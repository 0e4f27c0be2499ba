#include "script/script_host.h"

#include "device/device_commands.h"
#include "device/device_link.h"
#include "device/local_path.h"
#include "script/erase_poll.h"
#include "script/natives.h"
#include "script/script_compile.h"
#include "script/script_library.h"
#include "script/script_limits.h"
#include "script/script_owner.h"
#include "script/script_report.h"

#include <QObject>

#include <sqstdaux.h>
#include <sqstdio.h>

#include <cstdarg>
#include <cstdio>

namespace
{

constexpr SQInteger kInitialStackSlots = 1024;
constexpr std::size_t kPrintBufferSize = 1024;
// A script that prints for ever must not fill the log's memory.
constexpr int kMostPrintedLines = 20000;

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
    RunningJob &owner = ownerOf(v);
    if (++owner.printedLines < kMostPrintedLines)
        owner.listener.onLine(QString::fromUtf8(text));
    else if (owner.printedLines == kMostPrintedLines)
        owner.listener.onLine(QObject::tr("(what the script prints is not shown any more)"));
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

// Why a machine was given up, told as its error.
JobEnd endOfStop(RunningJob *job)
{
    const ScriptStop stop = scriptStop();
    job->scriptError = scriptStopText(stop);
    job->scriptPlace = scriptStopPlace();
    job->listener.onLine(job->scriptError);
    return stop == ScriptStop::Silence && job->listener.isStopWanted() ? JobEnd::ScriptStopped
                                                                       : JobEnd::ScriptError;
}

// A script that throws says something about the cartridge or the job; any other error that is not
// the reader's is its own fault.
JobEnd endOfError(const RunningJob &job)
{
    if (!job.failedOperation.isEmpty() && (job.isThrown || job.scriptError == job.failedOperation))
        return JobEnd::ScriptFailed;
    if (!job.isThrown)
        return JobEnd::ScriptError;
    return job.hasTouchedCartridge ? JobEnd::ScriptFailed : JobEnd::Refused;
}

// After a call whose result was this: how the job stands, and what the script said. To the library
// a function that suspends itself has succeeded; here it has not come to its end, and nobody wakes
// it up. A machine that was given up cannot be asked any more. `name`: of the function; nullptr:
// the script's top level.
JobEnd endOfCall(HSQUIRRELVM v, SQRESULT result, const char *name, RunningJob *job)
{
    if (scriptStop() != ScriptStop::None)
        return endOfStop(job);
    if (sq_getvmstate(v) == SQ_VMSTATE_SUSPENDED) {
        job->scriptError = name == nullptr
                               ? QObject::tr("the script suspended itself")
                               : QObject::tr("%1 suspended itself").arg(QLatin1String(name));
        job->listener.onLine(job->scriptError);
        return JobEnd::ScriptError;
    }
    job->scriptError = SQ_FAILED(result) ? lastError(v) : QString();
    if (job->hasLeft)
        return JobEnd::Left;
    return SQ_SUCCEEDED(result) ? JobEnd::Done : endOfError(*job);
}

// Calls an entry function.
JobEnd callEntry(HSQUIRRELVM v, RunningJob *job, const char *name, int first, int second)
{
    job->isThrown = false;
    if (!definesFunction(v, name)) {
        job->scriptError = QObject::tr("the script has no function %1").arg(QLatin1String(name));
        return JobEnd::ScriptError;
    }
    const SQRESULT result = callScriptFunction(v, name, job, 2, first, second);
    return endOfCall(v, result, name, job);
}

// The same with the line before it and the line behind it. Both come whether the call succeeds or
// not.
JobEnd callToldEntry(HSQUIRRELVM v, RunningJob *job, const QString &begin, const char *name,
                     int size, const QString &end)
{
    job->listener.onLine(begin);
    const JobEnd jobEnd = callEntry(v, job, name, size, size);
    job->listener.onLine(end);
    return jobEnd;
}

// Compiles the script and runs its top level, with the root table as environment, as the library's
// own function for both does.
JobEnd loadScript(HSQUIRRELVM v, RunningJob *job)
{
    const SQRESULT result = runScriptFile(v, localPath(job->job.scriptPath));
    if (result == kNotCompiled)
        return JobEnd::ScriptError;
    // Not an error of another file that the script has loaded and got over.
    return endOfCall(v, result, nullptr, job);
}

JobEnd dumpRom(HSQUIRRELVM v, RunningJob *job)
{
    return callToldEntry(v, job, QObject::tr("Start dump rom..."), "cpu_dump", job->job.romSize,
                         QObject::tr("Dump rom finish."));
}

JobEnd dumpSave(HSQUIRRELVM v, RunningJob *job)
{
    return callToldEntry(v, job, QObject::tr("Start dump save..."), "save_dump", job->job.ramSize,
                         QObject::tr("Dump save finish."));
}

JobEnd writeSave(HSQUIRRELVM v, RunningJob *job)
{
    return callToldEntry(v, job, QObject::tr("Start write save..."), "save_write", job->job.ramSize,
                         QObject::tr("Write save finish."));
}

// The end of the job after an erase that was waited for; Done: it goes on.
JobEnd endOfErase(const EraseWait &wait, RunningJob *job)
{
    switch (wait.end) {
    case EraseEnd::Erased:
        job->listener.onLine(QObject::tr("Erase flash chip finish."));
        return JobEnd::Done;
    case EraseEnd::Cancelled:
        return JobEnd::Cancelled;
    case EraseEnd::NoAnswer:
        job->failedOperation =
            QObject::tr("the reader did not answer while the chip was being erased");
        break;
    case EraseEnd::TooLong:
        job->failedOperation =
            QObject::tr("the chip was not erased after %1 seconds").arg(wait.longestSeconds);
        break;
    }
    job->scriptError = job->failedOperation;
    job->listener.onLine(job->failedOperation);
    return JobEnd::EraseFailed;
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
                QObject::tr("the reader did not take the command that erases the save");
            job->listener.onLine(job->scriptError);
            return JobEnd::ScriptFailed;
        }
        const JobEnd end = endOfErase(waitForGbaSaveErase(job->listener), job);
        if (end != JobEnd::Done)
            return end;
    }
    return writeSave(v, job);
}

JobEnd flashRom(HSQUIRRELVM v, RunningJob *job)
{
    job->listener.onLine(QObject::tr("Start erase flash chip..."));
    const JobEnd erased = callEntry(v, job, "cpu_erase", job->job.romSize, job->job.flashWidth);
    // A chip that never got the commands need not be waited for. Whatever else went wrong, the poll
    // below decides whether the erase worked.
    if (scriptStop() != ScriptStop::None || sq_getvmstate(v) == SQ_VMSTATE_SUSPENDED ||
        erased == JobEnd::ScriptFailed)
        return erased;
    const QString scriptError = job->scriptError;
    const JobEnd end = endOfErase(waitForGbErase(job->listener, job->job), job);
    // A script that said why it sent nothing is the reason why nothing was erased.
    if (end != JobEnd::Done && !job->hasTouchedCartridge && !scriptError.isEmpty()) {
        job->scriptError = scriptError;
        return erased;
    }
    if (end != JobEnd::Done)
        return end;
    return callToldEntry(v, job, QObject::tr("Start flash ROM..."), "cpu_flash", job->job.romSize,
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
    sqstd_register_iolib(v);
    if (owner != nullptr) {
        keepErrorReports(v);
        keepCompileErrors(v);
        guardLibrary(v);
        watchMachine(v);
    }
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

bool definesFunction(HSQUIRRELVM v, const char *name)
{
    const SQInteger top = sq_gettop(v);
    sq_pushroottable(v);
    sq_pushstring(v, name, -1);
    const bool isFound = SQ_SUCCEEDED(sq_rawget(v, -2)); // without its metamethods
    sq_settop(v, top);
    if (!isFound)
        sq_reseterror(v); // the host looked in vain; the script has said nothing
    return isFound;
}

SQRESULT callWithinLimits(HSQUIRRELVM v, SQInteger arguments)
{
    SQRESULT result = SQ_ERROR;
    const bool isSound = stepWithinLimits([&] { result = sq_call(v, arguments, SQFalse, SQTrue); });
    auto *owner = isSound ? static_cast<RunningJob *>(sq_getsharedforeignptr(v)) : nullptr;
    if (owner != nullptr && SQ_FAILED(result))
        tellErrorReport(*owner);
    else if (owner != nullptr)
        owner->report.clear();
    return isSound ? result : SQ_ERROR;
}

SQRESULT runScriptFile(HSQUIRRELVM v, const QByteArray &path)
{
    SQRESULT compiled = SQ_ERROR;
    if (!stepWithinLimits([&] { compiled = compileFile(v, path.constData(), true); }))
        return SQ_ERROR;
    if (SQ_FAILED(compiled))
        return kNotCompiled;
    sq_push(v, -2);
    const SQRESULT result = callWithinLimits(v, 1);
    if (scriptStop() == ScriptStop::None)
        sq_pop(v, 1);
    return result;
}

SQRESULT callScriptFunction(HSQUIRRELVM v, const SQChar *name, SQUserPointer userPointer, int count,
                            ...)
{
    const SQInteger top = sq_gettop(v);
    SQRESULT result = SQ_ERROR;
    sq_pushroottable(v);
    sq_pushstring(v, name, -1);
    if (SQ_SUCCEEDED(sq_rawget(v, -2))) {
        sq_pushroottable(v);
        sq_pushuserpointer(v, userPointer);
        va_list values;
        va_start(values, count);
        for (int i = 0; i < count; ++i)
            sq_pushinteger(v, va_arg(values, int));
        va_end(values);
        result = callWithinLimits(v, count + 2);
        if (scriptStop() != ScriptStop::None)
            return SQ_ERROR;
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

bool withMachine(RunningJob &job, const std::function<void(HSQUIRRELVM)> &use)
{
    return runWithinLimits(job, [&] {
        HSQUIRRELVM v = createVm(&job);
        use(v);
        if (scriptStop() == ScriptStop::None) {
            sq_pop(v, 1);
            sq_close(v);
        }
        dropMachineMemory();
    });
}

JobEnd runOperation(RunningJob *job)
{
    const NativeSet natives = nativesOf(job->job.operate);
    if (natives.count == 0) {
        job->listener.onLine(QObject::tr("Unknow operate!"));
        return JobEnd::Refused;
    }
    JobEnd end = JobEnd::NoMemory;
    withMachine(*job, [&](HSQUIRRELVM v) {
        for (int i = 0; i < natives.count; ++i)
            registerNative(v, natives.natives[i].name, natives.natives[i].function);
        end = runScript(v, job);
    });
    return end;
}
