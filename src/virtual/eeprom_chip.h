// The serial EEPROM of GBA cartridges, bit by bit.
//
// A request is a start bit 1, then 1 to read or 0 to write, the number of a block of 8 bytes, for a
// write its 64 bits, and a 0 that ends it; everything most significant bit first. After a read
// request the chip gives 4 bits of no meaning and the 64 bits; after a write request 0 until the
// block, which erases itself, is programmed, then 1.
// Source: GBATEK, "GBA Cart Backup EEPROM".
#pragma once

#include "virtual/bytes.h"

#include <cstdint>

namespace virtual_reader
{

constexpr std::uint32_t kEepromBlockSize = 8;

class EepromChip
{
public:
    // `addressBits`: of a block number as transmitted. `sizeBytes`: a power of two; 64 blocks of a
    // small chip need 6 bits, 1024 blocks of a large one the low 10 of 14.
    EepromChip(unsigned addressBits, std::uint32_t sizeBytes);

    // One cycle of the bus, of which the chip has one line.
    void writeBit(bool bit);
    bool readBit();

    const ByteVector &contents() const { return m_cells; }
    // Returns: false if the size is not the chip's.
    bool load(const ByteVector &contents);
    // Number of bytes changed by requests so far.
    std::uint64_t changes() const { return m_changes; }

private:
    enum class State { Idle, Kind, Address, Data, End, Sending, Programming };

    void shiftIn(bool bit, State next);
    void finishRequest();
    std::uint8_t *block();

    unsigned m_addressBits;
    ByteVector m_cells;
    std::uint64_t m_changes = 0;
    State m_state = State::Idle;
    bool m_isRead = false;
    unsigned m_bitsLeft = 0; // of the field, or of the answer
    std::uint64_t m_bits = 0;
    std::uint32_t m_block = 0;
};

} // namespace virtual_reader
