#include "script_bench.h"

#include "job_events.h"

#include "device/device_link.h"
#include "device/device_ops.h"
#include "script/erase_poll.h"
#include "script/script_host.h"

#include <QFile>

ScriptBench::ScriptBench()
{
    attachReader(&drive);
    selectGbMode();
    selectGbaMode();
    recordEvents(&job, &drive.calls);
}

ScriptBench::~ScriptBench()
{
    setPollWaiter(nullptr);
    deviceOps = DeviceOps();
    setDriveBackend(nullptr);
}

QString ScriptBench::setScript(const QByteArray &text)
{
    job.script_name = m_folder.filePath("mapper.nut");
    QFile file(job.script_name);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("cannot write the script %s", qPrintable(job.script_name));
    return job.script_name;
}

bool ScriptBench::run(int operate)
{
    drive.forgetCalls();
    job.operate = operate;
    return runOperation(&job);
}

QStringList ScriptBench::logs() const
{
    return logTexts(events());
}
