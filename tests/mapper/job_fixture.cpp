#include "job_fixture.h"

#include "device/device_link.h"
#include "device/device_ops.h"
#include "script/erase_poll.h"
#include "virtual/image_generator.h"

#include <QFile>

using namespace virtual_reader;

namespace
{

// The job that is running, and the looks left until its user cancels. A waiter gets no context.
FamicomThread *pollingJob = nullptr;
int looksLeft = 0;

void countLook(unsigned long /*timeMs*/)
{
    if (looksLeft > 0 && --looksLeft == 0)
        pollingJob->canceled();
}

std::unique_ptr<KeptReader> makeReader(std::unique_ptr<Cartridge> cartridge,
                                       const QString &savePath)
{
    SaveFile save(savePath.toStdString());
    std::string error;
    if (!savePath.isEmpty() && !save.load(cartridge.get(), &error))
        qFatal("no save: %s", error.c_str());
    VirtualReaderConfig config;
    config.strictSectors = true;
    return std::make_unique<KeptReader>(std::move(cartridge), config, std::move(save));
}

DriveFault faultOf(DriveCall call, const char *pathEnd, unsigned after)
{
    DriveFault fault;
    fault.call = call;
    fault.pathEnd = pathEnd;
    fault.after = after;
    return fault;
}

} // namespace

JobFixture::JobFixture(std::unique_ptr<Cartridge> cartridge, const QString &savePath)
    : m_platform(createPlatformBackend()),
      m_inProcess(std::make_unique<InProcessDrive>(makeReader(std::move(cartridge), savePath),
                                                   *m_platform)),
      m_drive(std::make_unique<FaultyDrive>(*m_inProcess))
{
    deviceLink = DeviceLink();
    deviceOps = DeviceOps();
    setDriveBackend(m_drive.get());
    setPollWaiter(countLook);
}

JobFixture::~JobFixture()
{
    setPollWaiter(nullptr);
    setDriveBackend(nullptr);
}

// The slots run on the worker's thread; what they collect is looked at only after it has ended.
JobOutcome JobFixture::run(const Job &job)
{
    JobOutcome outcome;
    FamicomThread worker;
    worker.operate = job.operate;
    worker.script_name = QStringLiteral(MAPPER_FOLDER "/") + job.script;
    worker.file_name = job.fileName;
    worker.rom_size = job.size;
    worker.ram_size = job.size;
    worker.save_type = job.saveType;
    worker.flash_width = job.flashWidth;
    QObject::connect(&worker, &FamicomThread::log,
                     [&](const QString &line) { outcome.log << line; });
    QObject::connect(&worker, &FamicomThread::error, [&](int flag) { outcome.results << flag; });
    reader().clearOperations();
    pollingJob = &worker;
    looksLeft = job.cancelAfter;
    worker.start();
    worker.wait();
    return outcome;
}

void JobFixture::setSave(const QByteArray &bytes)
{
    if (!cartridge().loadSave(ByteVector(bytes.begin(), bytes.end())))
        qFatal("the cartridge has no save memory of %d bytes", bytes.size());
}

QByteArray JobFixture::busBytes(int address, int count)
{
    QByteArray bytes;
    for (int i = 0; i < count; ++i)
        bytes += static_cast<char>(cartridge().gbRead(static_cast<std::uint16_t>(address + i)));
    return bytes;
}

QVector<BlockRecord> JobFixture::busWrites()
{
    constexpr std::uint8_t kGbBusWriteOpcode = 13;
    QVector<BlockRecord> writes;
    for (const Operation &operation : reader().operations()) {
        for (const BlockRecord &block : operation.blocks) {
            if (block.commandClass == kClassGb && block.opcode == kGbBusWriteOpcode)
                writes << block;
        }
    }
    return writes;
}

// Reads, of which a flash job makes some to poll, do not touch a cartridge.
bool JobFixture::nothingWasSent()
{
    constexpr std::uint8_t kStartOpcode = 1;
    for (const Operation &operation : reader().operations()) {
        for (const BlockRecord &block : operation.blocks) {
            if (block.commandClass != kClassReader && block.opcode != kStartOpcode)
                return false;
        }
    }
    return true;
}

std::uint64_t JobFixture::refused()
{
    return reader().counters().refusedBlocks + reader().counters().refusedReads;
}

QByteArray JobFixture::bytesOf(const ByteVector &bytes)
{
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size()));
}

QByteArray noise(int size, unsigned seed)
{
    return JobFixture::bytesOf(makeNoise(static_cast<std::uint32_t>(size), seed));
}

QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

DriveFault commandFileFault(unsigned after)
{
    return faultOf(DriveCall::OpenForWrite, "CMD.CMD", after);
}

DriveFault dumpReadFault(unsigned after)
{
    return faultOf(DriveCall::Read, "DUMP.ROM", after);
}
