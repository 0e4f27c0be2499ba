#include "virtual/mappers/mmm01_cartridge.h"

namespace virtual_reader
{

namespace
{

constexpr std::uint8_t kRamOn = 0x0A;
constexpr std::uint8_t kMap = 0x40;
constexpr std::uint8_t kModeLock = 0x40;
constexpr std::uint8_t kMultiplex = 0x40;
// All address lines are ones before the map bit is set: the last banks of any ROM.
constexpr std::uint32_t kMenuLowBank = 0x1FE;
constexpr std::uint32_t kMenuHighBank = 0x1FF;

// `value` in the bits that are not in `mask`, `old` in those that are.
std::uint32_t masked(std::uint32_t old, std::uint32_t value, std::uint32_t mask)
{
    return (old & mask) | (value & ~mask);
}

} // namespace

void Mmm01Cartridge::powerCycle()
{
    GbCartridge::powerCycle();
    m_registers = {};
}

void Mmm01Cartridge::writeRegister(std::uint16_t address, std::uint8_t value)
{
    if (address < 0x2000)
        writeGate(value);
    else if (address < 0x4000)
        writeRomBank(value);
    else if (address < 0x6000)
        writeRamBank(value);
    else
        writeMode(value);
}

void Mmm01Cartridge::writeGate(std::uint8_t value)
{
    m_registers.ramOn = (value & 0x0F) == kRamOn;
    if (m_registers.mapped)
        return;
    m_registers.ramMask = (value >> 4) & 0x03;
    m_registers.mapped = (value & kMap) != 0;
}

void Mmm01Cartridge::writeRomBank(std::uint8_t value)
{
    const std::uint32_t mask = m_registers.mapped ? m_registers.romMask : 0;
    m_registers.romLow = masked(m_registers.romLow, value & 0x1F, mask);
    if (!m_registers.mapped)
        m_registers.romMid = (value >> 5) & 0x03;
}

void Mmm01Cartridge::writeRamBank(std::uint8_t value)
{
    const std::uint32_t mask = m_registers.mapped ? m_registers.ramMask : 0;
    m_registers.ramLow = masked(m_registers.ramLow, value & 0x03, mask);
    if (m_registers.mapped)
        return;
    m_registers.ramHigh = (value >> 2) & 0x03;
    m_registers.romHigh = (value >> 4) & 0x03;
    m_registers.modeLocked = (value & kModeLock) != 0;
}

void Mmm01Cartridge::writeMode(std::uint8_t value)
{
    if (!m_registers.modeLocked)
        m_registers.mode = (value & 1) != 0;
    if (m_registers.mapped)
        return;
    m_registers.romMask = ((value >> 2) & 0x0FU) << 1;
    m_registers.multiplexed = (value & kMultiplex) != 0;
}

std::uint32_t Mmm01Cartridge::gatedRamLow() const
{
    return m_registers.mode ? m_registers.ramLow : m_registers.ramLow & m_registers.ramMask;
}

std::uint32_t Mmm01Cartridge::lowRomBank() const
{
    const Registers &r = m_registers;
    if (!r.mapped)
        return kMenuLowBank;
    const std::uint32_t mid = r.multiplexed ? gatedRamLow() : r.romMid;
    return r.romHigh << 7 | mid << 5 | (r.romLow & r.romMask);
}

std::uint32_t Mmm01Cartridge::highRomBank() const
{
    const Registers &r = m_registers;
    if (!r.mapped)
        return kMenuHighBank;
    const std::uint32_t mid = r.multiplexed ? r.ramLow : r.romMid;
    // The test for zero leaves the masked bits out.
    const std::uint32_t low = (r.romLow & ~r.romMask) == 0 ? r.romLow | 1 : r.romLow;
    return r.romHigh << 7 | mid << 5 | low;
}

std::uint32_t Mmm01Cartridge::ramBank() const
{
    const std::uint32_t low = m_registers.multiplexed ? m_registers.romMid : gatedRamLow();
    return m_registers.ramHigh << 2 | low;
}

} // namespace virtual_reader
