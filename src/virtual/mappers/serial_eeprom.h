// The 93LC56 of MBC7 cartridges: 128 words of 16 bits behind four wires.
//
// With the chip selected, every rising clock edge takes one bit in or puts one out. A start bit, a
// 1, opens an instruction of ten bits, the highest first:
//   10 x aaaaaaa   read: a 0, then the word's 16 bits, then those of the words behind it
//   01 x aaaaaaa   write the 16 bits that follow
//   11 x aaaaaaa   erase the word to ones
//   00 11xxxxxx    allow the changes above and below (not allowed after power-on)
//   00 00xxxxxx    forbid them
//   00 10xxxxxx    erase all words
//   00 01xxxxxx    write the 16 bits that follow to all words
// A change is made when the chip is deselected after its last bit; it takes no time here. The
// output reads 1 whenever the chip does not put out a word: it is ready, or the wire is pulled up.
// Source: data sheet of the 93LC56, x16 organisation; Pan Docs, "MBC7".
#pragma once

#include "virtual/bytes.h"

#include <cstdint>

namespace virtual_reader
{

class SerialEeprom
{
public:
    static constexpr std::uint32_t kWords = 128;
    static constexpr std::uint32_t kBytes = kWords * 2;

    // Erased: all ones.
    SerialEeprom();

    // Sets the three inputs.
    void setPins(bool select, bool clock, bool dataIn);
    bool dataOut() const { return m_dataOut; }
    // The supply is cut and comes back.
    void powerCycle();

    // 256 bytes, in the order in which the bits come: the high byte of each word first.
    const ByteVector &contents() const { return m_cells; }
    // Returns: false if the size is wrong.
    bool load(const ByteVector &contents);
    // Bytes changed through the pins so far.
    std::uint64_t changes() const { return m_changes; }

private:
    enum class State { AwaitStart, Instruction, DataIn, DataOut, Complete };

    void clockIn(bool bit);
    void startInstruction();
    void putOut();
    // Makes the change that a complete instruction asks for.
    void commit();
    std::uint32_t operation() const { return m_instruction >> 8; }
    std::uint32_t address() const { return m_instruction % kWords; }
    std::uint32_t word(std::uint32_t index) const;
    void setWord(std::uint32_t index, std::uint32_t value);
    void setAllWords(std::uint32_t value);

    ByteVector m_cells;
    std::uint64_t m_changes = 0;
    bool m_changesAllowed = false;
    State m_state = State::AwaitStart;
    bool m_clock = false;
    bool m_dataOut = true;
    unsigned m_bitsLeft = 0;
    std::uint32_t m_instruction = 0; // 10 bits
    std::uint32_t m_data = 0;        // 16 bits, in or out
    std::uint32_t m_readWord = 0;    // that is put out next
};

} // namespace virtual_reader
