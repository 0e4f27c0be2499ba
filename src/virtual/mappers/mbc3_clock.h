// The clock in an MBC3: a counter of seconds, minutes, hours and days, and a copy of it that
// programs read.
//
// The counter has a cell of 32768 Hz behind it; here it counts whole seconds of the source. A field
// that was set beyond its range runs on to the end of its bits and starts again without a carry, as
// the comparator in the chip only knows the regular last value.
// Source: Pan Docs, "MBC3".
#pragma once

#include "virtual/clock_source.h"

#include <cstdint>

namespace virtual_reader
{

class Mbc3Clock
{
public:
    explicit Mbc3Clock(ClockSource source);

    // Registers 0x08 seconds, 0x09 minutes, 0x0A hours, 0x0B low 8 bits of the days, 0x0C: bit 0
    // day bit 8, bit 6 halt, bit 7 the days have overflown (stays set until written).
    static bool hasRegister(std::uint32_t number) { return number >= 0x08 && number <= 0x0C; }

    // Value of the copy; bits that the register does not have are 0.
    std::uint8_t read(std::uint32_t number) const { return registerOf(m_copy, number); }
    // Sets the counter, and the copy with it.
    void write(std::uint32_t number, std::uint8_t value);
    // Copies the counter.
    void latch();

private:
    struct Fields {
        std::uint32_t seconds = 0; // 6 bits
        std::uint32_t minutes = 0; // 6 bits
        std::uint32_t hours = 0;   // 5 bits
        std::uint32_t days = 0;    // 9 bits
        bool halted = false;
        bool overflown = false;
    };

    static std::uint8_t registerOf(const Fields &fields, std::uint32_t number);
    static void setRegister(Fields *fields, std::uint32_t number, std::uint8_t value);
    void catchUp();

    ElapsedTime m_elapsed;
    Fields m_counter;
    Fields m_copy;
};

} // namespace virtual_reader
