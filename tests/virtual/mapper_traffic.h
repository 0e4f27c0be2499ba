// Random traffic on the bus of a Game Boy cartridge.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

constexpr unsigned kUpper = 0xA000;
constexpr unsigned kUpperEnd = 0xBFFF;

struct BusStep {
    enum class Kind { Read, Write, PowerCycle };

    Kind kind = Kind::Read;
    std::uint16_t address = 0;
    std::uint8_t value = 0;
};

// The same seed gives the same steps on every platform.
class BusTraffic
{
public:
    explicit BusTraffic(std::uint64_t seed) : m_random(seed) {}

    // 0 to `count` - 1.
    unsigned below(unsigned count) { return static_cast<unsigned>(m_random() % count); }
    std::uint8_t byte() { return static_cast<std::uint8_t>(below(256)); }
    // Somewhere in `first` to `last`.
    std::uint16_t place(unsigned first, unsigned last);

    void read(unsigned first, unsigned last);
    void write(unsigned first, unsigned last, unsigned value);
    void powerCycle();

    // Registers of nearly all mappers, each 8 KiB wide; anywhere in them.
    void writeGateRegister(unsigned value) { write(0x0000, 0x1FFF, value); }
    void writeRomBank(unsigned value) { write(0x2000, 0x3FFF, value); }
    void writeRamBank(unsigned value) { write(0x4000, 0x5FFF, value); }
    void writeMode(unsigned value) { write(0x6000, 0x7FFF, value); }

    // Opens the gate three times out of four. Values other than these two are left out: the library
    // takes most of them for neither. `upperBits`: those that the mapper does not look at.
    void useGate(unsigned upperBits = 0)
    {
        writeGateRegister(upperBits | (below(4) == 0 ? 0x00 : 0x0A));
    }
    void readRom() { read(0x0000, 0x7FFF); }
    // Reads or writes one of few addresses, so that what was written is met again.
    void useRam();

    std::vector<BusStep> steps;

private:
    std::mt19937_64 m_random;
};
