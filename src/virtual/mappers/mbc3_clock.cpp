#include "virtual/mappers/mbc3_clock.h"

#include <utility>

namespace virtual_reader
{

namespace
{

constexpr std::uint32_t kDays = 512;
constexpr std::uint8_t kDayBit8 = 0x01;
constexpr std::uint8_t kHalted = 0x40;
constexpr std::uint8_t kOverflown = 0x80;

// Lets `field` of `bits` bits, which carries at `range`, count `steps`. Returns: carries.
std::uint64_t count(std::uint32_t *field, std::uint32_t range, std::uint32_t bits,
                    std::uint64_t steps)
{
    if (*field >= range) {
        const std::uint32_t untilZero = (1U << bits) - *field;
        if (steps < untilZero) {
            *field += static_cast<std::uint32_t>(steps);
            return 0;
        }
        steps -= untilZero;
        *field = 0;
    }
    const std::uint64_t total = *field + steps;
    *field = static_cast<std::uint32_t>(total % range);
    return total / range;
}

} // namespace

Mbc3Clock::Mbc3Clock(ClockSource source) : m_elapsed(std::move(source)) {}

std::uint8_t Mbc3Clock::registerOf(const Fields &fields, std::uint32_t number)
{
    switch (number) {
    case 0x08:
        return static_cast<std::uint8_t>(fields.seconds);
    case 0x09:
        return static_cast<std::uint8_t>(fields.minutes);
    case 0x0A:
        return static_cast<std::uint8_t>(fields.hours);
    case 0x0B:
        return static_cast<std::uint8_t>(fields.days);
    default:
        return static_cast<std::uint8_t>((fields.days >= 256 ? kDayBit8 : 0) |
                                         (fields.halted ? kHalted : 0) |
                                         (fields.overflown ? kOverflown : 0));
    }
}

void Mbc3Clock::setRegister(Fields *fields, std::uint32_t number, std::uint8_t value)
{
    switch (number) {
    case 0x08:
        fields->seconds = value & 0x3F;
        break;
    case 0x09:
        fields->minutes = value & 0x3F;
        break;
    case 0x0A:
        fields->hours = value & 0x1F;
        break;
    case 0x0B:
        fields->days = (fields->days & 0x100) | value;
        break;
    default:
        fields->days = (fields->days & 0xFF) | (value & kDayBit8) * 256U;
        fields->halted = (value & kHalted) != 0;
        fields->overflown = (value & kOverflown) != 0;
    }
}

void Mbc3Clock::write(std::uint32_t number, std::uint8_t value)
{
    catchUp();
    setRegister(&m_counter, number, value);
    setRegister(&m_copy, number, value);
}

void Mbc3Clock::latch()
{
    catchUp();
    m_copy = m_counter;
}

void Mbc3Clock::catchUp()
{
    std::uint64_t steps = m_elapsed.take();
    if (m_counter.halted)
        return;
    steps = count(&m_counter.seconds, 60, 6, steps);
    steps = count(&m_counter.minutes, 60, 6, steps);
    steps = count(&m_counter.hours, 24, 5, steps);
    if (count(&m_counter.days, kDays, 9, steps) != 0)
        m_counter.overflown = true;
}

} // namespace virtual_reader
