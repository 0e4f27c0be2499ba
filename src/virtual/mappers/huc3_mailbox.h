// The small computer in a HuC-3, as programs talk to it: a mailbox that takes a command with a
// nibble and gives a nibble back, 256 nibbles of memory, and a clock in some of them.
//
// The clock has minutes of the day and days, twelve bits each. It stands still, so that every run
// gives the same bytes: only more minutes than a day has run on into the days. Programs see it in a
// copy that they ask for, in the first nibbles of the memory. Commands take no time here.
// Source: Pan Docs, "HuC-3".
#pragma once

#include <array>
#include <cstdint>

namespace virtual_reader
{

class Huc3Mailbox
{
public:
    // Puts a command (bits 6-4) and its nibble (bits 3-0) into the mailbox.
    void put(std::uint8_t value) { m_request = value & 0x7F; }
    std::uint8_t request() const { return m_request; }
    // Executes what is in the mailbox.
    void execute();
    // Returns: the command executed last (bits 6-4) and the nibble that it answered (bits 3-0).
    std::uint8_t answer() const { return m_answer; }

    // Command, answer and address are lost with the supply; memory and clock have a battery.
    void powerCycle();

private:
    void executeExtended(std::uint8_t command);
    void carryIntoDays();
    std::uint32_t number(std::uint8_t firstNibble) const;
    void setNumber(std::uint8_t firstNibble, std::uint32_t value);

    std::array<std::uint8_t, 256> m_memory{};
    std::uint8_t m_address = 0;
    std::uint8_t m_request = 0;
    std::uint8_t m_answer = 0;
};

} // namespace virtual_reader
