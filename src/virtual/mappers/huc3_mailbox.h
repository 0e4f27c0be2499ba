// The small computer in a HuC-3, as programs talk to it: a mailbox that takes a command with a
// nibble and gives a nibble back, 256 nibbles of memory, and a clock in some of them.
//
// The clock counts minutes of the day and days, twelve bits each. The host can see it only after
// asking for a copy in the first nibbles of the memory. Commands take no time here.
// Source: Pan Docs, "HuC-3".
#pragma once

#include "virtual/clock_source.h"

#include <array>
#include <cstdint>

namespace virtual_reader
{

class Huc3Mailbox
{
public:
    explicit Huc3Mailbox(ClockSource source);

    // Puts a command (bits 6-4) and its nibble (bits 3-0) into the mailbox.
    void put(std::uint8_t value) { m_request = value & 0x7F; }
    std::uint8_t request() const { return m_request; }
    // Executes what is in the mailbox.
    void execute();
    // Returns: the command executed last (bits 6-4) and the nibble that it answered (bits 3-0).
    std::uint8_t answer() const { return m_answer; }

    // Command, answer and address are lost with the supply; memory and clock have a battery.
    void powerCycle();

    // Nibble of the memory, for tests.
    std::uint8_t nibble(std::uint8_t address) const { return m_memory[address]; }

private:
    void executeExtended(std::uint8_t command);
    void catchUp();
    std::uint32_t number(std::uint8_t firstNibble) const;
    void setNumber(std::uint8_t firstNibble, std::uint32_t value);

    ElapsedTime m_elapsed;
    std::uint64_t m_secondsOfMinute = 0;
    std::array<std::uint8_t, 256> m_memory{};
    std::uint8_t m_address = 0;
    std::uint8_t m_request = 0;
    std::uint8_t m_answer = 0;
};

} // namespace virtual_reader
