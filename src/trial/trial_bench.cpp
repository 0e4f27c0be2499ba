#include "trial/trial_bench.h"

#include "device/device_link.h"
#include "script/erase_poll.h"
#include "virtual/cartridge_factory.h"
#include "virtual/image_generator.h"
#include "worker/job_run.h"

#include <QElapsedTimer>

using namespace virtual_reader;

namespace
{

// The smallest RAM that a header can name; what an MBC2 has built in is less.
constexpr std::uint32_t kSmallestHeaderRam = 8 * 1024;

// Looks at an erase before it is given up; virtual chips need three.
constexpr int kMostLooks = 50;

// A script that has used the cartridge for so long does not come to its end.
constexpr qint64 kLongestTrialMs = 60000;

void waitNot(unsigned long /*timeMs*/) {}

// Keeps the log, and gives up an erase or a script that does not come to its end.
class TrialListener : public JobListener
{
public:
    explicit TrialListener(QStringList *log) : m_log(log) { m_sinceStart.start(); }

    void onLine(const QString &line) override { *m_log << line; }
    void onProgress(int /*doneBytes*/, int /*maximum*/) override {}
    bool isStopWanted() override { return ++m_looks >= kMostLooks; }
    bool endsSilentScript() override { return true; }
    bool isLeaveWanted() override { return m_sinceStart.hasExpired(kLongestTrialMs); }
    bool hasGivenUp() const { return m_looks >= kMostLooks; }

private:
    QStringList *m_log;
    int m_looks = 0;
    QElapsedTimer m_sinceStart;
};

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

TrialRun TrialBench::run(const CartridgeJob &job, const QByteArray &input)
{
    TrialRun run;
    TrialListener listener(&run.log);
    setPollWaiter(waitNot);
    CartridgeJob trial = job;
    trial.isTrial = true;
    run.result = runJob(trial, input, listener);
    setPollWaiter(nullptr);
    if (listener.hasGivenUp())
        run.log << QStringLiteral("The erase does not end.");
    return run;
}

QByteArray TrialBench::bytesOf(const ByteVector &bytes)
{
    return {reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size())};
}
