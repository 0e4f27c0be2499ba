// How much longer does a dump take when its hash is made meanwhile? The largest dump there is, from
// the virtual reader of this process: as fast as it can, which no real reader comes near, and as
// fast as a USB 2 reader could at best be.
#include "cli/transfer_hash.h"
#include "cli/trial_bench.h"
#include "worker/famicom_thread.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

using namespace virtual_reader;

namespace
{

constexpr int kDumpBytes = 32 * 1024 * 1024;

struct Speed {
    const char *name;
    int rounds;     // odd, so that one round is the median
    int dumpTimeMs; // that the reader needs at least; 0: none
};

constexpr Speed kSpeeds[] = {{"as fast as it can", 11, 0}, {"20 MB/s", 5, 1600}};

enum class Hashing { None, Meanwhile, Afterwards };

// Time of one dump into `path`, in milliseconds.
double dump(const QString &path, Hashing hashing, QByteArray *sha1)
{
    FamicomThread worker;
    worker.operate = GBA_READ_ROM;
    worker.file_name = path;
    worker.script_name = QStringLiteral(SHIPPED_SCRIPTS "/gba.nut");
    worker.rom_size = kDumpBytes;
    QElapsedTimer timer;
    timer.start();
    std::unique_ptr<TransferHash> hash;
    if (hashing == Hashing::Meanwhile)
        hash = std::make_unique<TransferHash>(&worker);
    QEventLoop loop;
    QObject::connect(&worker, &QThread::finished, &loop, &QEventLoop::quit);
    worker.start();
    loop.exec();
    if (hash)
        *sha1 = hash->sha1();
    if (hashing == Hashing::Afterwards) {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            *sha1 = QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha1);
    }
    return double(timer.nsecsElapsed()) / 1e6;
}

double medianOf(std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

// Makes every read of the cartridge take its part of the time.
void slowDown(FaultyDrive *drive, std::uint32_t readsPerDump, int dumpTimeMs)
{
    DriveFault pause;
    pause.pathEnd = "DUMP.ROM";
    pause.times = DriveFault::kForever;
    pause.code = DriveErrorCode::None;
    pause.bytes = DriveFault::kAllBytes;
    const auto timeUs = static_cast<unsigned long>(dumpTimeMs) * 1000 / readsPerDump;
    pause.happens = [timeUs] { QThread::usleep(timeUs); };
    drive->clearFaults();
    if (dumpTimeMs != 0)
        drive->addFault(pause);
}

// Returns: false if a hash is wrong.
bool measure(const Speed &speed, const QString &path, const QByteArray &expected)
{
    // In turn, so that whatever else the machine does hits all of them alike.
    std::vector<double> times[3];
    for (int round = 0; round < speed.rounds; ++round) {
        for (const Hashing hashing : {Hashing::None, Hashing::Meanwhile, Hashing::Afterwards}) {
            QByteArray sha1 = expected;
            times[int(hashing)].push_back(dump(path, hashing, &sha1));
            if (sha1 != expected)
                return false;
        }
    }
    const double bare = medianOf(times[0]);
    const char *names[] = {"no hash", "hash meanwhile", "hash afterwards"};
    for (int i = 0; i < 3; ++i)
        std::printf("%-18s %-16s median %8.2f ms, ratio %.3f (%d rounds)\n", speed.name, names[i],
                    medianOf(times[i]), medianOf(times[i]) / bare, speed.rounds);
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    TrialCartridge cartridge;
    cartridge.isGba = true;
    cartridge.romSize = kDumpBytes;
    TrialBench bench(cartridge);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("dump"));
    const QByteArray expected = QCryptographicHash::hash(bench.image(), QCryptographicHash::Sha1);

    QByteArray ignored;
    dump(path, Hashing::None, &ignored);
    const std::uint32_t readsPerDump = bench.drive().callCount(DriveCall::Read, "DUMP.ROM");
    for (const Speed &speed : kSpeeds) {
        slowDown(&bench.drive(), readsPerDump, speed.dumpTimeMs);
        if (!measure(speed, path, expected)) {
            std::fputs("the hash is wrong\n", stderr);
            return 1;
        }
    }
    return 0;
}
