// How long does it take to recognise a GBA game? The table is searched row by row, so the worst
// case is a game that it does not know.
#include "cart/gba_header.h"
#include "constants/boot_logos.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <vector>

namespace
{

constexpr int kRounds = 10001; // odd, so that one round is the median

using Header = std::array<std::uint8_t, kGbaHeaderBytes>;

Header makeHeader(const char *code)
{
    Header header{};
    std::copy(kGbaBootLogo.begin(), kGbaBootLogo.end(), header.begin() + 0x04);
    std::memcpy(header.data() + 0xAC, code, 4);
    return header;
}

double microsecondsOfOneLookup(const Header &header)
{
    GbaHeaderInfo info;
    const auto start = std::chrono::steady_clock::now();
    decodeGbaHeader(header.data(), &info);
    const auto end = std::chrono::steady_clock::now();
    return std::chrono::duration<double, std::micro>(end - start).count();
}

void measure(const char *name, const char *code)
{
    const Header header = makeHeader(code);
    std::vector<double> times;
    for (int round = 0; round < kRounds; ++round)
        times.push_back(microsecondsOfOneLookup(header));
    std::sort(times.begin(), times.end());
    std::printf("%-14s median %7.2f us, fastest %7.2f us, slowest %7.2f us (%d rounds)\n", name,
                times[kRounds / 2], times.front(), times.back(), kRounds);
}

} // namespace

int main()
{
    measure("first row", "BQJE");
    measure("last row", "-006");
    measure("unknown game", "AZZZ");
    return 0;
}
