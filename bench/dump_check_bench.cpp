// How long do the checks of the largest dump take, and the comparison of two of them?
#include "cart/dump_checks.h"
#include "cart/dump_differences.h"
#include "virtual/image_generator.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

using namespace virtual_reader;

namespace
{

constexpr int kRounds = 21; // odd, so that one round is the median
constexpr std::uint32_t kDumpBytes = 32 * 1024 * 1024;

// `work` gives back what it found, so that it has to look.
void measure(const char *name, const std::function<std::uint32_t()> &work)
{
    std::vector<double> times;
    std::uint32_t result = 0;
    for (int round = 0; round < kRounds; ++round) {
        const auto start = std::chrono::steady_clock::now();
        result = work();
        const auto end = std::chrono::steady_clock::now();
        times.push_back(std::chrono::duration<double, std::milli>(end - start).count());
    }
    std::sort(times.begin(), times.end());
    std::printf("%-20s median %6.2f ms, slowest %6.2f ms (%d rounds, result %u)\n", name,
                times[kRounds / 2], times.back(), kRounds, result);
}

void measureChecks(const char *name, const ByteVector &dump, DumpSystem system)
{
    measure(name, [&dump, system] {
        return checkDump(dump.data(), static_cast<std::uint32_t>(dump.size()), system).contentSize;
    });
}

// 32 MiB that begin with `content` again and again.
ByteVector repeated(const ByteVector &content)
{
    ByteVector dump(kDumpBytes);
    for (std::size_t offset = 0; offset < dump.size(); offset += content.size())
        std::copy(content.begin(), content.end(), dump.begin() + static_cast<long>(offset));
    return dump;
}

// Nothing but the addresses of its halfwords.
ByteVector openBus()
{
    ByteVector dump(kDumpBytes);
    for (std::uint32_t halfword = 0; halfword < kDumpBytes / 2; ++halfword)
        putLittleEndian(dump.data() + std::size_t{2} * halfword, halfword, 2);
    return dump;
}

void measureComparison(const char *name, const ByteVector &a, const ByteVector &b)
{
    measure(name, [&a, &b] { return differingBytes(a.data(), b.data(), kDumpBytes).count; });
}

} // namespace

int main()
{
    const ByteVector noise = makeNoise(kDumpBytes, 1);
    measureChecks("GBA, 32 MiB", noise, DumpSystem::Gba);
    measureChecks("GB, 8 MiB", makeNoise(8 * 1024 * 1024, 2), DumpSystem::Gb);
    measureChecks("4 MiB eight times", repeated(makeNoise(4 * 1024 * 1024, 3)), DumpSystem::Gba);
    measureChecks("two bytes, repeated", repeated({0x12, 0x34}), DumpSystem::Gba);
    measureChecks("open bus", openBus(), DumpSystem::Gba);
    measureChecks("all FF", ByteVector(kDumpBytes, 0xFF), DumpSystem::Gba);
    measureComparison("two equal dumps", noise, ByteVector(noise));
    measureComparison("all bytes differ", noise, makeNoise(kDumpBytes, 4));
    return 0;
}
