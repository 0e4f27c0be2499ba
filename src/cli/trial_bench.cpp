#include "cli/trial_bench.h"

#include "device/device_link.h"
#include "script/erase_poll.h"
#include "virtual/cartridge_factory.h"
#include "virtual/image_generator.h"
#include "worker/famicom_thread.h"

#include <QEventLoop>
#include <QFile>

using namespace virtual_reader;

namespace
{

// The smallest RAM that a header can name; what an MBC2 has built in is less.
constexpr std::uint32_t kSmallestHeaderRam = 8 * 1024;

// Looks at an erase before it is given up; virtual chips need three.
constexpr int kMostLooks = 100;

// The job that runs and the looks it has left. A waiter gets no context. Touched by the worker's
// thread while it runs, by the main thread before and after.
FamicomThread *runningJob = nullptr;
int looksLeft = 0;

void countLook(unsigned long /*timeMs*/)
{
    if (--looksLeft <= 0)
        runningJob->canceled();
}

ByteVector makeImage(const TrialCartridge &cartridge, unsigned seed)
{
    ByteVector image;
    std::string error;
    bool isMade = false;
    if (cartridge.isGba) {
        GbaImageSpec spec;
        spec.romSize = cartridge.romSize;
        spec.seed = seed;
        isMade = makeGbaImage(spec, &image, &error);
    } else {
        GbImageSpec spec;
        spec.type = cartridge.headerType;
        spec.romSize = cartridge.romSize;
        spec.ramSize = cartridge.ramSize < kSmallestHeaderRam ? 0 : cartridge.ramSize;
        spec.seed = seed;
        isMade = makeGbImage(spec, &image, &error);
    }
    if (!isMade)
        qFatal("%s", error.c_str());
    return image;
}

std::unique_ptr<KeptReader> makeReader(const TrialCartridge &cartridge)
{
    std::string error;
    auto built = makeCartridge(makeImage(cartridge, 1), cartridge.options, &error);
    if (built == nullptr)
        qFatal("%s", error.c_str());
    VirtualReaderConfig config;
    config.keepOperations = false;
    return std::make_unique<KeptReader>(std::move(built), config, SaveFile());
}

bool writeInput(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

void readOutput(const QString &path, TrialRun *run)
{
    QFile file(path);
    run->hasFile = file.open(QIODevice::ReadOnly);
    if (run->hasFile)
        run->file = file.readAll();
}

void fillJobFields(const TrialJob &job, const QString &fileName, FamicomThread *worker)
{
    worker->operate = job.operate;
    worker->script_name = job.scriptPath;
    worker->file_name = fileName;
    worker->rom_size = job.romSize;
    worker->ram_size = job.ramSize;
    worker->save_type = job.saveType;
    worker->flash_width = job.flashWidth;
}

void runWorker(FamicomThread *worker, TrialRun *run)
{
    QEventLoop loop;
    QObject::connect(worker, &FamicomThread::log, &loop,
                     [run](const QString &line) { run->log << line; });
    QObject::connect(worker, &FamicomThread::error, &loop,
                     [run](int flag) { run->hasSucceeded = flag == 1; });
    QObject::connect(worker, &QThread::finished, &loop, &QEventLoop::quit);
    runningJob = worker;
    looksLeft = kMostLooks;
    setPollWaiter(countLook);
    worker->start();
    loop.exec();
    setPollWaiter(nullptr);
    if (looksLeft <= 0)
        run->log << QStringLiteral("The erase does not end.");
    run->movedBytes = qMax(0, worker->data_pos);
    run->expectedBytes = jobBufferSize(*worker);
}

} // namespace

QByteArray trialImage(const TrialCartridge &cartridge, unsigned seed)
{
    const ByteVector image = makeImage(cartridge, seed);
    return {reinterpret_cast<const char *>(image.data()), static_cast<int>(image.size())};
}

QByteArray trialNoise(int size)
{
    const ByteVector noise = makeNoise(static_cast<std::uint32_t>(size), 7);
    return {reinterpret_cast<const char *>(noise.data()), size};
}

TrialBench::TrialBench(const TrialCartridge &cartridge)
    : m_image(trialImage(cartridge)), m_platform(createPlatformBackend()),
      m_inProcess(makeReader(cartridge), *m_platform), m_drive(m_inProcess)
{
    setDriveBackend(&m_drive);
}

TrialBench::~TrialBench()
{
    setDriveBackend(nullptr);
}

TrialRun TrialBench::run(const TrialJob &job)
{
    TrialRun run;
    const bool isWriteJob = (job.operate & 1) != 0;
    const QString path = m_folder.filePath(QStringLiteral("file"));
    QFile::remove(path);
    if (isWriteJob && !writeInput(path, job.input)) {
        run.log << QStringLiteral("The temporary file cannot be written.");
        return run;
    }
    FamicomThread worker;
    fillJobFields(job, path, &worker);
    clearLastDriveError();
    runWorker(&worker, &run);
    run.driveError = QString::fromLocal8Bit(lastDriveError().c_str());
    if (!isWriteJob)
        readOutput(path, &run);
    return run;
}

QByteArray TrialBench::bytesOf(const ByteVector &bytes)
{
    return {reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size())};
}
