#include "virtual/mappers/huc3_mailbox.h"

#include <algorithm>

namespace virtual_reader
{

namespace
{

enum Command : std::uint8_t {
    kReadAndAdvance = 1,
    kWriteAndAdvance = 3,
    kSetAddressLow = 4,
    kSetAddressHigh = 5,
    kExtended = 6
};

// Others (status, sound) have no effect that a reader could see.
enum ExtendedCommand : std::uint8_t { kCopyClock = 0, kSetClock = 1 };

// Places in the memory. A number has three nibbles, the lowest first.
constexpr std::uint8_t kCopy = 0x00;
constexpr std::uint8_t kClock = 0x10;
constexpr std::uint8_t kClockNibbles = 7;
constexpr std::uint8_t kMinutes = 0x10;
constexpr std::uint8_t kDays = 0x13;

constexpr std::uint32_t kMinutesOfDay = 24 * 60;
constexpr std::uint8_t kDone = 1; // answer of extended commands

} // namespace

void Huc3Mailbox::powerCycle()
{
    m_address = 0;
    m_request = 0;
    m_answer = 0;
}

void Huc3Mailbox::execute()
{
    const std::uint8_t command = m_request >> 4;
    const std::uint8_t nibble = m_request & 0x0F;
    std::uint8_t result = nibble;
    switch (command) {
    case kReadAndAdvance:
        carryIntoDays();
        result = m_memory[m_address++];
        break;
    case kWriteAndAdvance:
        carryIntoDays();
        m_memory[m_address++] = nibble;
        break;
    case kSetAddressLow:
        m_address = static_cast<std::uint8_t>((m_address & 0xF0) | nibble);
        break;
    case kSetAddressHigh:
        m_address = static_cast<std::uint8_t>((m_address & 0x0F) | nibble << 4);
        break;
    case kExtended:
        executeExtended(nibble);
        result = kDone;
        break;
    default:
        break;
    }
    m_answer = static_cast<std::uint8_t>(command << 4 | result);
}

void Huc3Mailbox::executeExtended(std::uint8_t command)
{
    carryIntoDays();
    if (command == kCopyClock)
        std::copy_n(m_memory.begin() + kClock, kClockNibbles, m_memory.begin() + kCopy);
    else if (command == kSetClock)
        std::copy_n(m_memory.begin() + kCopy, kClockNibbles, m_memory.begin() + kClock);
}

void Huc3Mailbox::carryIntoDays()
{
    const std::uint32_t minutes = number(kMinutes);
    setNumber(kMinutes, minutes % kMinutesOfDay);
    setNumber(kDays, number(kDays) + minutes / kMinutesOfDay);
}

std::uint32_t Huc3Mailbox::number(std::uint8_t firstNibble) const
{
    const std::uint8_t *nibbles = &m_memory[firstNibble];
    return nibbles[0] | nibbles[1] * 16U | nibbles[2] * 256U;
}

void Huc3Mailbox::setNumber(std::uint8_t firstNibble, std::uint32_t value)
{
    for (std::uint8_t i = 0; i < 3; ++i)
        m_memory[firstNibble + i] = (value >> (4 * i)) & 0x0F;
}

} // namespace virtual_reader
