#include "virtual/mappers/tama5_cartridge.h"

#include <utility>

namespace virtual_reader
{

namespace
{

constexpr std::uint16_t kPickLine = 0x01;  // address bit: picks a register
constexpr std::uint8_t kOpenBits = 0xF0;   // the mapper has four data lines
constexpr std::uint8_t kAwake = 0x01;      // what the status reads as
constexpr std::uint8_t kWriteMemory = 0x0; // operations, bits 3-1 of register 6
constexpr std::uint8_t kReadMemory = 0x1;

enum Register : std::uint8_t {
    kBankLow = 0x0,
    kBankHigh = 0x1,
    kDataLow = 0x4,
    kDataHigh = 0x5,
    kOperation = 0x6, // bit 0: address bit 4
    kAddress = 0x7,   // address bits 3-0; a write executes the operation
    kNibbles = 0x8,
    kStatus = 0xA,
    kOutputLow = 0xC,
    kOutputHigh = 0xD
};

} // namespace

Tama5Cartridge::Tama5Cartridge(ByteVector rom) : GbCartridge(std::move(rom), kMemory) {}

void Tama5Cartridge::powerCycle()
{
    GbCartridge::powerCycle();
    m_registers = {};
}

std::uint32_t Tama5Cartridge::highRomBank() const
{
    return m_registers.nibbles[kBankLow] | (m_registers.nibbles[kBankHigh] & 1U) << 4;
}

std::uint8_t Tama5Cartridge::readUpper(std::uint16_t address)
{
    if ((address & kPickLine) != 0)
        return 0xFF;
    switch (m_registers.picked) {
    case kStatus:
        return kOpenBits | kAwake;
    case kOutputLow:
        return kOpenBits | (m_registers.output & 0x0F);
    case kOutputHigh:
        return static_cast<std::uint8_t>(kOpenBits | m_registers.output >> 4);
    default:
        return 0xFF;
    }
}

void Tama5Cartridge::writeUpper(std::uint16_t address, std::uint8_t value)
{
    const std::uint8_t nibble = value & 0x0F;
    if ((address & kPickLine) != 0) {
        m_registers.picked = nibble;
        m_registers.awake |= nibble == kStatus;
        return;
    }
    if (!m_registers.awake || m_registers.picked >= kNibbles)
        return;
    m_registers.nibbles[m_registers.picked] = nibble;
    if (m_registers.picked == kAddress)
        execute();
}

void Tama5Cartridge::execute()
{
    const auto &nibbles = m_registers.nibbles;
    const std::uint32_t cell = nibbles[kAddress] | (nibbles[kOperation] & 1U) << 4;
    const std::uint8_t operation = nibbles[kOperation] >> 1;
    if (operation == kWriteMemory)
        setRamByte(cell, static_cast<std::uint8_t>(nibbles[kDataLow] | nibbles[kDataHigh] << 4));
    else if (operation == kReadMemory)
        m_registers.output = ramByte(cell);
}

} // namespace virtual_reader
