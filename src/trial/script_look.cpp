#include "trial/script_look.h"

#include "device/local_path.h"
#include "script/natives.h"
#include "script/script_host.h"
#include "script/script_limits.h"

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
    bool endsSilentScript() override { return true; }

private:
    QStringList *m_log;
};

SQInteger refuseNative(HSQUIRRELVM v)
{
    return sq_throwerror(v, "the top level of a script cannot use the cartridge; do that in the "
                            "functions that the program calls");
}

ScriptLook lookWith(HSQUIRRELVM v, const QByteArray &path, const ScriptOperation &operation)
{
    const NativeSet natives = nativesOf(operation.operate);
    for (int i = 0; i < natives.count; ++i)
        registerNative(v, natives.natives[i].name, refuseNative);
    const SQRESULT result = runScriptFile(v, path);
    if (result == kNotCompiled)
        return ScriptLook::NotCompiled;
    if (SQ_FAILED(result))
        return ScriptLook::Threw;
    for (const char *entry : operation.entries) {
        if (!definesFunction(v, entry))
            return ScriptLook::NotDefined;
    }
    return ScriptLook::Defined;
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

ScriptLook lookAtScript(const QString &path, const ScriptOperation &operation, FileUse *files,
                        QStringList *log)
{
    LookListener listener(log);
    RunningJob job({}, listener); // never run: it passes on what the script prints
    job.job.mayUseFiles = files->isAllowed;
    ScriptLook look = ScriptLook::Threw;
    withMachine(job, [&](HSQUIRRELVM v) {
        look = lookWith(v, localPath(path), operation);
        if (scriptStop() != ScriptStop::None)
            *log << scriptStopText(scriptStop()) + QStringLiteral(" (%1)").arg(scriptStopPlace());
    });
    files->wasRefused = files->wasRefused || job.hasWantedFiles;
    return look;
}
