#include "bench_cases.h"

using namespace virtual_reader;

namespace
{

constexpr std::uint32_t kSaveRom = 64 * kKibi;
constexpr std::uint32_t kSmallRom = 32 * kKibi;

} // namespace

BenchCase gbSave(std::uint8_t headerType, std::uint32_t size, char keptBits)
{
    BenchCase bench;
    bench.cartridge.headerType = headerType;
    bench.cartridge.romSize = kSaveRom;
    bench.cartridge.ramSize = size;
    bench.keptBits = keptBits;
    return bench;
}

BenchCase gbaSave(GbaSaveType type, int choice, int size)
{
    BenchCase bench;
    bench.cartridge.isGba = true;
    bench.cartridge.romSize = kSaveRom;
    bench.cartridge.options.saveType = type;
    bench.cartridge.options.saveSize = static_cast<std::uint32_t>(size);
    bench.values.saveType = choice;
    bench.values.ramSize = size;
    return bench;
}

BenchCase gbFlash(FlashWidth width)
{
    BenchCase bench = gbSave(0x1B, 8 * kKibi);
    bench.command = BenchCommand::Flash;
    bench.cartridge.romSize = kSmallRom;
    bench.cartridge.options.flash = width;
    // All of the chip, as only the user knows: an 8-bit chip does not tell.
    bench.values.romSize = int(kSmallRom);
    bench.ignoresContradiction = true;
    return bench;
}

BenchCase with(BenchCommand command, BenchCase bench)
{
    bench.command = command;
    return bench;
}
