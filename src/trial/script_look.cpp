#include "trial/script_look.h"

#include "device/local_path.h"
#include "script/natives.h"
#include "script/script_host.h"

#include <sqstdio.h>

namespace
{

// Keeps what the script prints.
class LookListener : public JobListener
{
public:
    explicit LookListener(QStringList *log) : m_log(log) {}

    void onLine(const QString &line) override { *m_log << line; }
    void onProgress(int /*doneBytes*/, int /*maximum*/) override {}
    bool isStopWanted() override { return false; }

private:
    QStringList *m_log;
};

SQInteger refuseNative(HSQUIRRELVM v)
{
    return sq_throwerror(v, "the top level of a script cannot use the cartridge; do that in the "
                            "functions that the program calls");
}

// Runs the file with the root table, which createVm() left on the stack, as its environment.
ScriptLook runTopLevel(HSQUIRRELVM v, const QString &path)
{
    if (SQ_FAILED(sqstd_loadfile(v, localPath(path).constData(), SQTrue)))
        return ScriptLook::NotCompiled;
    sq_push(v, -2);
    const bool hasRun = SQ_SUCCEEDED(sq_call(v, 1, SQFalse, SQTrue));
    sq_pop(v, 1);
    return hasRun ? ScriptLook::Defined : ScriptLook::Threw;
}

bool isDefined(HSQUIRRELVM v, const char *name)
{
    const SQInteger top = sq_gettop(v);
    sq_pushroottable(v);
    sq_pushstring(v, name, -1);
    const bool isFound = SQ_SUCCEEDED(sq_get(v, -2));
    sq_settop(v, top);
    return isFound;
}

} // namespace

const QList<ScriptOperation> &scriptOperations(bool isGba)
{
    static const QList<ScriptOperation> kGb = {
        {"dump", GB_READ_ROM, {"cpu_dump"}},
        {"flash", GB_WRITE_FLASH, {"cpu_erase", "cpu_flash"}},
        {"read-ram", GB_READ_RAM, {"save_dump"}},
        {"write-ram", GB_WRITE_RAM, {"save_write"}}};
    static const QList<ScriptOperation> kGba = {{"dump", GBA_READ_ROM, {"cpu_dump"}},
                                                {"read-ram", GBA_READ_RAM, {"save_dump"}},
                                                {"write-ram", GBA_WRITE_RAM, {"save_write"}}};
    return isGba ? kGba : kGb;
}

QString entryNames(const ScriptOperation &operation)
{
    QStringList names;
    for (const char *entry : operation.entries)
        names << QLatin1String(entry);
    return names.join(QStringLiteral(" and "));
}

ScriptLook lookAtScript(const QString &path, const ScriptOperation &operation, QStringList *log)
{
    LookListener listener(log);
    RunningJob job({}, listener); // never run: it passes on what the script prints
    HSQUIRRELVM v = createVm(&job);
    const NativeSet natives = nativesOf(operation.operate);
    for (int i = 0; i < natives.count; ++i)
        registerNative(v, natives.natives[i].name, refuseNative);
    ScriptLook look = runTopLevel(v, path);
    for (const char *entry : operation.entries) {
        if (look == ScriptLook::Defined && !isDefined(v, entry))
            look = ScriptLook::NotDefined;
    }
    sq_close(v);
    return look;
}
