#include "script_bench.h"

#include "device/device_link.h"
#include "device/device_ops.h"
#include "script/erase_poll.h"
#include "script/script_host.h"

ScriptBench::ScriptBench()
{
    attachReader(&drive);
    setPollWaiter([](unsigned long) {});
    selectGbMode();
    selectGbaMode();
}

ScriptBench::~ScriptBench()
{
    setPollWaiter(nullptr);
    deviceOps = DeviceOps();
    setDriveBackend(nullptr);
}

QString ScriptBench::setScript(const QByteArray &text)
{
    job.scriptPath = m_folder.addFile("mapper.nut", text);
    return job.scriptPath;
}

bool ScriptBench::run(int operate)
{
    drive.forgetCalls();
    job.operate = operate;
    RunningJob running(job, recorder);
    running.data = data;
    end = runOperation(&running);
    scriptError = running.scriptError;
    scriptPlace = running.scriptPlace;
    return end == JobEnd::Done;
}

bool ScriptBench::runDump(const QByteArray &body)
{
    setScript("function cpu_dump(dev, a, b)\n{\n" + body + "\n}\n");
    return run(GB_READ_ROM);
}
