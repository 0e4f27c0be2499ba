#include "virtual/eeprom_chip.h"

namespace virtual_reader
{

namespace
{

constexpr unsigned kBlockBits = 64;
constexpr unsigned kAnswerBits = 4 + kBlockBits;
// Reads that see the chip at work; about 6.5 ms on hardware.
constexpr unsigned kProgrammingReads = 4;
constexpr std::uint8_t kErased = 0xFF;

} // namespace

EepromChip::EepromChip(unsigned addressBits, std::uint32_t sizeBytes)
    : m_addressBits(addressBits), m_cells(sizeBytes, kErased)
{
}

bool EepromChip::load(const ByteVector &contents)
{
    if (contents.size() != m_cells.size())
        return false;
    m_cells = contents;
    return true;
}

std::uint8_t *EepromChip::block()
{
    return m_cells.data() + std::size_t{m_block} * kEepromBlockSize % m_cells.size();
}

void EepromChip::writeBit(bool bit)
{
    switch (m_state) {
    case State::Idle:
    case State::Sending:
        m_state = bit ? State::Kind : State::Idle;
        break;
    case State::Kind:
        m_isRead = bit;
        m_bitsLeft = m_addressBits;
        m_state = State::Address;
        break;
    case State::Address:
        shiftIn(bit, m_isRead ? State::End : State::Data);
        break;
    case State::Data:
        shiftIn(bit, State::End);
        break;
    case State::End:
        m_state = State::Idle;
        if (!bit)
            finishRequest();
        break;
    case State::Programming:
        break;
    }
}

void EepromChip::shiftIn(bool bit, State next)
{
    m_bits = m_bits << 1 | (bit ? 1U : 0U);
    if (--m_bitsLeft > 0)
        return;
    if (m_state == State::Address) {
        const std::uint64_t mask = (std::uint64_t{1} << m_addressBits) - 1;
        m_block = static_cast<std::uint32_t>(m_bits & mask);
        m_bitsLeft = kBlockBits;
    }
    m_state = next;
}

void EepromChip::finishRequest()
{
    if (m_isRead) {
        m_bits = 0;
        for (std::uint32_t i = 0; i < kEepromBlockSize; ++i)
            m_bits = m_bits << 8 | block()[i];
        m_bitsLeft = kAnswerBits;
        m_state = State::Sending;
        return;
    }
    for (std::uint32_t i = 0; i < kEepromBlockSize; ++i) {
        const auto byte = static_cast<std::uint8_t>(m_bits >> (kBlockBits - 8 * (i + 1)));
        m_changes += block()[i] != byte;
        block()[i] = byte;
    }
    m_bitsLeft = kProgrammingReads;
    m_state = State::Programming;
}

bool EepromChip::readBit()
{
    if (m_state != State::Sending && m_state != State::Programming)
        return true;
    --m_bitsLeft;
    const bool isData = m_state == State::Sending && m_bitsLeft < kBlockBits;
    const bool bit = isData && (m_bits >> m_bitsLeft & 1) != 0;
    if (m_bitsLeft == 0)
        m_state = State::Idle;
    return bit;
}

} // namespace virtual_reader
