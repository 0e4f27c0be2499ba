#include "script/script_host.h"

#include "script/erase_poll.h"
#include "script/natives.h"
#include "worker/famicom_thread.h"
#include "worker/local_path.h"

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
    auto *owner = static_cast<FamicomThread *>(sq_getsharedforeignptr(v));
    emit owner->log(QString::fromUtf8(text));
}

SQRESULT dumpRom(HSQUIRRELVM v, FamicomThread *job)
{
    emit job->log(QObject::tr("Start dump rom..."));
    const SQRESULT result = callScriptFunction(v, "cpu_dump", job, 2, job->rom_size, job->rom_size);
    emit job->log(QObject::tr("Dump rom finish."));
    return result;
}

SQRESULT dumpSave(HSQUIRRELVM v, FamicomThread *job)
{
    emit job->log(QObject::tr("Start dump save..."));
    const SQRESULT result =
        callScriptFunction(v, "save_dump", job, 2, job->ram_size, job->ram_size);
    emit job->log(QObject::tr("Dump save finish."));
    return result;
}

SQRESULT writeSave(HSQUIRRELVM v, FamicomThread *job)
{
    emit job->log(QObject::tr("Start write save..."));
    const SQRESULT result =
        callScriptFunction(v, "save_write", job, 2, job->ram_size, job->ram_size);
    emit job->log(QObject::tr("Write save finish."));
    return result;
}

SQRESULT writeGbaSave(HSQUIRRELVM v, FamicomThread *job)
{
    constexpr int kFlashSave = 1;
    if (job->save_type == kFlashSave) {
        emit job->log(QObject::tr("Start erase flash chip..."));
        if (!eraseGbaSave(*job))
            return SQ_ERROR;
        emit job->log(QObject::tr("Erase flash chip finish."));
    }
    return writeSave(v, job);
}

SQRESULT flashRom(HSQUIRRELVM v, FamicomThread *job)
{
    emit job->log(QObject::tr("Start erase flash chip..."));
    // The poll below decides whether the erase worked.
    callScriptFunction(v, "cpu_erase", job, 2, job->rom_size, job->flash_width);
    if (!waitForGbErase(*job))
        return SQ_ERROR;
    emit job->log(QObject::tr("Erase flash chip finish."));
    emit job->log(QObject::tr("Start flash ROM..."));
    const SQRESULT result =
        callScriptFunction(v, "cpu_flash", job, 2, job->rom_size, job->rom_size);
    emit job->log(QObject::tr("Flash ROM finish."));
    return result;
}

} // namespace

HSQUIRRELVM createVm(FamicomThread *owner)
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
    }
    sq_settop(v, top);
    return result;
}

bool runScript(HSQUIRRELVM v, FamicomThread *job)
{
    const QByteArray path = localPath(job->script_name);
    if (SQ_FAILED(sqstd_dofile(v, path.constData(), SQFalse, SQTrue))) {
        emit job->log(QObject::tr("dump core script error\n"));
        return false;
    }
    switch (job->operate) {
    case GB_READ_ROM:
    case GBA_READ_ROM:
        return SQ_SUCCEEDED(dumpRom(v, job));
    case GB_READ_RAM:
    case GBA_READ_RAM:
        return SQ_SUCCEEDED(dumpSave(v, job));
    case GB_WRITE_RAM:
        return SQ_SUCCEEDED(writeSave(v, job));
    case GBA_WRITE_RAM:
        return SQ_SUCCEEDED(writeGbaSave(v, job));
    case GB_WRITE_FLASH:
        return SQ_SUCCEEDED(flashRom(v, job));
    default:
        return false;
    }
}

bool runOperation(FamicomThread *job)
{
    const NativeSet natives = nativesOf(job->operate);
    if (natives.count == 0) {
        emit job->log(QObject::tr("Unknow operate!"));
        return false;
    }
    HSQUIRRELVM v = createVm(job);
    for (int i = 0; i < natives.count; ++i)
        registerNative(v, natives.natives[i].name, natives.natives[i].function);
    const bool succeeded = runScript(v, job);
    sq_pop(v, 1);
    sq_close(v);
    return succeeded;
}
