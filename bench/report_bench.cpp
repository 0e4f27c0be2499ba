// How long does a cartridge report take? Against the virtual reader in this process: what the
// program itself needs, without a drive's time.
#include "device/device_link.h"
#include "virtual/cartridge_factory.h"
#include "virtual/image_generator.h"
#include "virtual/in_process_drive.h"
#include "worker/cartridge_report.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

using namespace virtual_reader;

namespace
{

constexpr int kRounds = 2001; // odd, so that one round is the median
constexpr std::uint32_t kRomSize = 64 * 1024;

std::unique_ptr<Cartridge> insert(const ByteVector &image)
{
    std::string error;
    auto cartridge = makeCartridge(image, &error);
    if (!cartridge) {
        std::fprintf(stderr, "%s\n", error.c_str());
        std::exit(1);
    }
    return cartridge;
}

std::unique_ptr<Cartridge> makeGb()
{
    GbImageSpec spec;
    spec.type = 0x19; // MBC5
    spec.romSize = kRomSize;
    ByteVector image;
    std::string error;
    makeGbImage(spec, &image, &error);
    return insert(image);
}

std::unique_ptr<Cartridge> makeGba(const char *code)
{
    GbaImageSpec spec;
    spec.code = code;
    spec.romSize = kRomSize;
    ByteVector image;
    std::string error;
    makeGbaImage(spec, &image, &error);
    return insert(image);
}

double microsecondsOfOneReport(ReportOutcome expected)
{
    const ReportOutput output = {[](const QString &) {}, [] {}, [](const DetectedSettings &) {}};
    const auto start = std::chrono::steady_clock::now();
    const CartridgeReport report = makeCartridgeReport(output);
    const auto end = std::chrono::steady_clock::now();
    if (report.outcome != expected) {
        std::fprintf(stderr, "the report found something else\n");
        std::exit(1);
    }
    return std::chrono::duration<double, std::micro>(end - start).count();
}

void measure(const char *name, std::unique_ptr<Cartridge> cartridge, ReportOutcome expected)
{
    VirtualReaderConfig config;
    config.keepOperations = false;
    const auto files = createPlatformBackend();
    InProcessDrive drive(std::make_unique<KeptReader>(std::move(cartridge), config, SaveFile()),
                         *files);
    setDriveBackend(&drive);
    std::vector<double> times;
    for (int round = 0; round < kRounds; ++round)
        times.push_back(microsecondsOfOneReport(expected));
    setDriveBackend(nullptr);
    std::sort(times.begin(), times.end());
    std::printf("%-14s median %7.1f us, fastest %7.1f us, slowest %7.1f us (%d rounds)\n", name,
                times[kRounds / 2], times.front(), times.back(), kRounds);
}

} // namespace

int main()
{
    measure("GB cartridge", makeGb(), ReportOutcome::GbCartridge);
    measure("GBA, first row", makeGba("BQJE"), ReportOutcome::GbaCartridge);
    measure("GBA, last row", makeGba("-006"), ReportOutcome::GbaCartridge);
    measure("unknown game", makeGba("AZZZ"), ReportOutcome::Unknown);
    measure("no cartridge", nullptr, ReportOutcome::Unknown);
    return 0;
}
