// How long does it take to look up a dump by its SHA-1, and how much of the program is the table?
#include "cart/known_dump_table.h"
#include "cart/known_dumps.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace
{

constexpr int kRounds = 101; // odd, so that one round is the median

Sha1Digest digestOf(const KnownDumpRecord &record)
{
    Sha1Digest digest;
    std::copy(std::begin(record.sha1), std::end(record.sha1), digest.begin());
    return digest;
}

// One lookup for every row, with the last byte of its SHA-1 changed by `change`: any change but 0
// makes the image an unknown one.
double nanosecondsOfOneLookup(std::uint8_t change, std::size_t *found)
{
    const auto start = std::chrono::steady_clock::now();
    for (std::size_t row = 0; row < knownDumpCount; ++row) {
        const KnownDumpRecord &record = knownDumpRecords[row];
        Sha1Digest digest = digestOf(record);
        digest[19] = static_cast<std::uint8_t>(digest[19] ^ change);
        *found += findKnownDump(record.size, digest) ? 1 : 0;
    }
    const auto end = std::chrono::steady_clock::now();
    return std::chrono::duration<double, std::nano>(end - start).count() /
           static_cast<double>(knownDumpCount);
}

void measure(const char *name, std::uint8_t change)
{
    std::vector<double> times;
    std::size_t found = 0;
    for (int round = 0; round < kRounds; ++round)
        times.push_back(nanosecondsOfOneLookup(change, &found));
    std::sort(times.begin(), times.end());
    std::printf(
        "%-14s median %6.0f ns, fastest %6.0f ns, slowest %6.0f ns (%d rounds, %zu found)\n", name,
        times[kRounds / 2], times.front(), times.back(), kRounds, found / kRounds);
}

} // namespace

int main()
{
    const std::size_t recordBytes = knownDumpCount * sizeof(KnownDumpRecord);
    std::printf(
        "table          %zu images, %zu bytes of records + %zu bytes of titles = %zu bytes\n",
        knownDumpCount, recordBytes, knownDumpTitleBytes, recordBytes + knownDumpTitleBytes);
    measure("known image", 0x00);
    measure("unknown image", 0x55);
    return 0;
}
