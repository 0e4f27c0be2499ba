#include "virtual/mappers/serial_eeprom.h"

namespace virtual_reader
{

namespace
{

constexpr unsigned kInstructionBits = 10;
constexpr unsigned kWordBits = 16;
constexpr std::uint32_t kErasedWord = 0xFFFF;

// Upper two bits of an instruction.
enum Operation : std::uint32_t { kOther = 0, kWrite = 1, kRead = 2, kErase = 3 };
// The two bits behind them, of other instructions.
enum OtherOperation : std::uint32_t { kForbid = 0, kWriteAll = 1, kEraseAll = 2, kAllow = 3 };

std::uint32_t otherOperation(std::uint32_t instruction)
{
    return (instruction >> 6) & 3;
}

} // namespace

SerialEeprom::SerialEeprom() : m_cells(kBytes, 0xFF) {}

void SerialEeprom::powerCycle()
{
    m_changesAllowed = false;
    m_state = State::AwaitStart;
    m_clock = false;
    m_dataOut = true;
}

bool SerialEeprom::load(const ByteVector &contents)
{
    if (contents.size() != kBytes)
        return false;
    m_cells = contents;
    return true;
}

void SerialEeprom::setPins(bool select, bool clock, bool dataIn)
{
    const bool rises = clock && !m_clock;
    m_clock = clock;
    if (!select) {
        if (m_state == State::Complete)
            commit();
        m_state = State::AwaitStart;
        m_dataOut = true;
    } else if (rises) {
        clockIn(dataIn);
    }
}

void SerialEeprom::clockIn(bool bit)
{
    switch (m_state) {
    case State::AwaitStart:
        if (bit) {
            m_state = State::Instruction;
            m_bitsLeft = kInstructionBits;
            m_instruction = 0;
        }
        break;
    case State::Instruction:
        m_instruction = m_instruction << 1 | (bit ? 1 : 0);
        if (--m_bitsLeft == 0)
            startInstruction();
        break;
    case State::DataIn:
        m_data = m_data << 1 | (bit ? 1 : 0);
        if (--m_bitsLeft == 0)
            m_state = State::Complete;
        break;
    case State::DataOut:
        putOut();
        break;
    case State::Complete:
        break;
    }
}

void SerialEeprom::startInstruction()
{
    const std::uint32_t other = otherOperation(m_instruction);
    m_state = State::Complete;
    m_data = 0;
    m_bitsLeft = 0;
    if (operation() == kRead) {
        m_state = State::DataOut;
        m_readWord = address();
        m_dataOut = false;
    } else if (operation() == kWrite || (operation() == kOther && other == kWriteAll)) {
        m_state = State::DataIn;
        m_bitsLeft = kWordBits;
    } else if (operation() == kOther && other != kEraseAll) {
        m_changesAllowed = other == kAllow;
    }
}

void SerialEeprom::putOut()
{
    if (m_bitsLeft == 0) {
        m_data = word(m_readWord);
        m_readWord = (m_readWord + 1) % kWords;
        m_bitsLeft = kWordBits;
    }
    --m_bitsLeft;
    m_dataOut = ((m_data >> m_bitsLeft) & 1) != 0;
}

void SerialEeprom::commit()
{
    if (!m_changesAllowed)
        return;
    if (operation() == kWrite)
        setWord(address(), m_data);
    else if (operation() == kErase)
        setWord(address(), kErasedWord);
    else if (otherOperation(m_instruction) == kWriteAll)
        setAllWords(m_data);
    else if (otherOperation(m_instruction) == kEraseAll)
        setAllWords(kErasedWord);
}

std::uint32_t SerialEeprom::word(std::uint32_t index) const
{
    return m_cells[index * 2] * 256U + m_cells[index * 2 + 1];
}

void SerialEeprom::setWord(std::uint32_t index, std::uint32_t value)
{
    for (std::uint32_t i = 0; i < 2; ++i) {
        std::uint8_t &cell = m_cells[index * 2 + i];
        const auto byte = static_cast<std::uint8_t>(i == 0 ? value >> 8 : value);
        m_changes += cell != byte ? 1 : 0;
        cell = byte;
    }
}

void SerialEeprom::setAllWords(std::uint32_t value)
{
    for (std::uint32_t i = 0; i < kWords; ++i)
        setWord(i, value);
}

} // namespace virtual_reader
