#include "job_bench.h"

#include "job_events.h"

#include "device/device_link.h"
#include "device/device_ops.h"
#include "script/erase_poll.h"

#include <QDir>
#include <QFile>

using namespace virtual_reader;

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

const char kIdleScript[] = "function cpu_dump(dev, size, max) {}\n"
                           "function save_dump(dev, size, max) {}\n"
                           "function save_write(dev, size, max) {}\n"
                           "function cpu_erase(dev, size, width) {}\n"
                           "function cpu_flash(dev, size, max) {}\n";

namespace
{

constexpr unsigned long kJobTimeoutMs = 60000;

void waitNot(unsigned long /*timeMs*/) {}

QString operationText(const Operation &operation)
{
    if (operation.kind == Operation::Kind::Read) {
        const char *file = operation.file == ReaderFile::Dump ? "DUMP" : "DRIVER";
        return QString("%1 %2+%3").arg(file).arg(operation.offset).arg(operation.length);
    }
    QStringList blocks;
    for (const BlockRecord &block : operation.blocks)
        blocks.append(
            QString::asprintf("%02X/%02X", unsigned{block.commandClass}, unsigned{block.opcode}));
    return blocks.join(" ");
}

} // namespace

ReleaseReportingDrive::ReleaseReportingDrive(DriveBackend &inner, QStringList *events)
    : FaultyDrive(inner), m_events(events)
{
}

void ReleaseReportingDrive::releaseDrive()
{
    m_events->append("release");
    FaultyDrive::releaseDrive();
}

JobBench::JobBench(VirtualReaderConfig config) : m_files(createPlatformBackend())
{
    auto cartridge = std::make_unique<TestCartridge>();
    m_cartridge = cartridge.get();
    auto reader = std::make_unique<KeptReader>(std::move(cartridge), std::move(config), SaveFile());
    m_reader = std::make_unique<InProcessDrive>(std::move(reader), *m_files);
    m_drive = std::make_unique<ReleaseReportingDrive>(*m_reader, &events);
    deviceLink = DeviceLink();
    deviceOps = DeviceOps();
    setDriveBackend(m_drive.get());
    setPollWaiter(waitNot);
    recordEvents(&job, &events);
}

JobBench::~JobBench()
{
    setPollWaiter(nullptr);
    setDriveBackend(nullptr);
}

bool JobBench::run(int operate)
{
    events.clear();
    m_reader->reader().clearOperations();
    job.operate = operate;
    job.start();
    if (!job.wait(kJobTimeoutMs))
        qFatal("the job does not end");
    return !events.isEmpty() && events.last() == "error 1";
}

QStringList JobBench::logs() const
{
    return logTexts(events);
}

QStringList JobBench::traffic()
{
    QStringList texts;
    for (const Operation &operation : m_reader->reader().operations())
        texts.append(operationText(operation));
    texts.removeOne("DRIVER 32768+1024");
    return texts;
}

QString JobBench::addFile(const QString &name, const QByteArray &bytes) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path(name)));
    return path(name);
}

QByteArray JobBench::fileBytes(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList JobBench::fileNames() const
{
    return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
}

void JobBench::setScript(const QByteArray &text)
{
    job.script_name = m_scripts.filePath("mapper.nut");
    QFile file(job.script_name);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("cannot write %s", qPrintable(job.script_name));
}

QStringList jobEnd(bool succeeded)
{
    return {"release", "progress 1/1", succeeded ? "error 1" : "error 0"};
}
