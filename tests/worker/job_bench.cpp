#include "job_bench.h"

const char kMovingScript[] = R"(
function cpu_dump(dev, size, max) {
    for (local done = 0; done < size; done += 0x2000)
        cpu_read(dev, done, 0x2000);
}
function save_dump(dev, size, max) {
    if ("ram_read" in getroottable())
        ram_read(dev, 0, size);
    else
        cpu_read(dev, 0xA000, size);
}
function save_write(dev, size, max) { ram_write(dev, 0, size); }
function cpu_erase(dev, size, width) { cpu_write(dev, 0x555, 0x80); }
function cpu_flash(dev, size, max) { rom_write(dev, 0x4000, size); }
)";

namespace
{

constexpr unsigned long kJobTimeoutMs = 60000;

} // namespace

JobBench::JobBench(virtual_reader::VirtualReaderConfig config)
    : ReaderBench(std::make_unique<TestCartridge>(), {std::move(config)})
{
    recordEvents(&job, &events);
}

bool JobBench::run(int operate)
{
    events.clear();
    reader().clearOperations();
    job.operate = operate;
    job.start();
    if (!job.wait(kJobTimeoutMs))
        qFatal("the job does not end");
    return !events.isEmpty() && events.last() == "error 1";
}

void JobBench::setScript(const QByteArray &text)
{
    job.script_name = m_scripts.addFile("mapper.nut", text);
}

QStringList jobEnd(bool succeeded)
{
    return {"release", "progress 1/1", succeeded ? "error 1" : "error 0"};
}
