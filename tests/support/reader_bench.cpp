#include "reader_bench.h"

#include "job_events.h"

#include "device/device_link.h"
#include "device/device_ops.h"
#include "script/erase_poll.h"
#include "worker/job_run.h"

#include <algorithm>
#include <iterator>

using namespace virtual_reader;

const char kIdleScript[] = "function cpu_dump(dev, size, max) {}\n"
                           "function save_dump(dev, size, max) {}\n"
                           "function save_write(dev, size, max) {}\n"
                           "function cpu_erase(dev, size, width) {}\n"
                           "function cpu_flash(dev, size, max) {}\n";

namespace
{

constexpr std::uint8_t kStartOpcode = 1;
constexpr std::uint8_t kGbBusWriteOpcode = 13;

void waitNot(unsigned long /*timeMs*/) {}

class ReleaseReportingDrive : public FaultyDrive
{
public:
    ReleaseReportingDrive(DriveBackend &inner, QStringList *events)
        : FaultyDrive(inner), m_events(events)
    {
    }
    void releaseDrive() override
    {
        m_events->append("release");
        FaultyDrive::releaseDrive();
    }

private:
    QStringList *m_events;
};

std::unique_ptr<KeptReader> makeReader(std::unique_ptr<Cartridge> cartridge, BenchSetup *setup)
{
    SaveFile save(setup->savePath.toStdString());
    std::string error;
    if (!setup->savePath.isEmpty() && !save.load(cartridge.get(), &error))
        qFatal("no save: %s", error.c_str());
    setup->config.strictSectors = true;
    return std::make_unique<KeptReader>(std::move(cartridge), std::move(setup->config),
                                        std::move(save));
}

bool isBusWrite(const BlockRecord &block)
{
    return block.commandClass == kClassGb && block.opcode == kGbBusWriteOpcode;
}

QString blockText(const BlockRecord &block)
{
    return isBusWrite(block)
               ? QString::asprintf("%02X<-%02X", unsigned{block.address}, unsigned{block.value})
               : QString::asprintf("%02X/%02X", unsigned{block.commandClass},
                                   unsigned{block.opcode});
}

QString operationText(const Operation &operation)
{
    if (operation.kind == Operation::Kind::Read) {
        const char *file = operation.file == ReaderFile::Dump ? "DUMP" : "DRIVER";
        return QString("%1 %2+%3").arg(file).arg(operation.offset).arg(operation.length);
    }
    QStringList blocks;
    for (const BlockRecord &block : operation.blocks)
        blocks.append(blockText(block));
    return blocks.join(" ");
}

std::vector<BlockRecord> blocksOf(const std::vector<Operation> &operations)
{
    std::vector<BlockRecord> blocks;
    for (const Operation &operation : operations)
        blocks.insert(blocks.end(), operation.blocks.begin(), operation.blocks.end());
    return blocks;
}

} // namespace

BenchSetup keptIn(const QString &savePath)
{
    BenchSetup setup;
    setup.savePath = savePath;
    return setup;
}

ReaderBench::ReaderBench(std::unique_ptr<Cartridge> cartridge, BenchSetup setup)
    : m_files(createPlatformBackend()),
      m_reader(std::make_unique<InProcessDrive>(makeReader(std::move(cartridge), &setup), *m_files,
                                                setup.drive)),
      m_drive(std::make_unique<ReleaseReportingDrive>(*m_reader, &events))
{
    deviceLink = DeviceLink();
    deviceOps = DeviceOps();
    setDriveBackend(m_drive.get());
    setPollWaiter(waitNot);
}

ReaderBench::~ReaderBench()
{
    setPollWaiter(nullptr);
    setDriveBackend(nullptr);
}

QByteArray ReaderBench::busBytes(int address, int count)
{
    QByteArray bytes;
    for (int i = 0; i < count; ++i)
        bytes += static_cast<char>(cartridge().gbRead(static_cast<std::uint16_t>(address + i)));
    return bytes;
}

JobRun ReaderBench::run(const CartridgeJob &job, const QByteArray &input, int looks)
{
    events.clear();
    reader().clearOperations();
    JobRecorder recorder(&events);
    recorder.looksUntilStopped = looks;
    const JobResult result = runJob(job, input, recorder);
    return {result, logTexts(events)};
}

QStringList ReaderBench::traffic()
{
    QStringList texts;
    for (const Operation &operation : reader().operations())
        texts.append(operationText(operation));
    texts.removeAll("DRIVER 32768+1024");
    return texts;
}

std::vector<BlockRecord> ReaderBench::busWrites()
{
    const std::vector<BlockRecord> blocks = blocksOf(reader().operations());
    std::vector<BlockRecord> writes;
    std::copy_if(blocks.begin(), blocks.end(), std::back_inserter(writes), isBusWrite);
    return writes;
}

// Reads, of which a flash job makes some to poll, do not touch a cartridge.
bool ReaderBench::nothingWasSent()
{
    for (const BlockRecord &block : blocksOf(reader().operations())) {
        if (block.commandClass != kClassReader && block.opcode != kStartOpcode)
            return false;
    }
    return true;
}

std::uint64_t ReaderBench::refused()
{
    return reader().counters().refusedBlocks + reader().counters().refusedReads;
}
