#include "virtual/mappers/mbc3_cartridge.h"

#include <utility>

namespace virtual_reader
{

namespace
{

constexpr std::uint32_t kLargestMbc3Rom = 2 * 1024 * 1024;
constexpr std::uint32_t kLargestMbc3Ram = 32 * 1024;
constexpr std::uint8_t kUpperOn = 0x0A;
constexpr std::uint32_t kFirstClockSelect = 0x08;
// Bits that the clock's registers have.
constexpr std::array<std::uint8_t, 5> kClockBits = {0x3F, 0x3F, 0x1F, 0xFF, 0xC1};

bool needsMbc30(std::uint32_t romSize, std::uint32_t ramSize)
{
    return romSize > kLargestMbc3Rom || ramSize > kLargestMbc3Ram;
}

} // namespace

Mbc3Cartridge::Mbc3Cartridge(ByteVector rom, std::uint32_t ramSize)
    : GbCartridge(std::move(rom), ramSize), m_romBankMask(0x7F)
{
    if (needsMbc30(romSize(), ramSize))
        m_romBankMask = 0xFF;
}

void Mbc3Cartridge::powerCycle()
{
    GbCartridge::powerCycle();
    m_registers = {};
}

void Mbc3Cartridge::writeRegister(std::uint16_t address, std::uint8_t value)
{
    if (address < 0x2000) {
        m_registers.upperOn = (value & 0x0F) == kUpperOn;
    } else if (address < 0x4000) {
        m_registers.romBank = value & m_romBankMask;
        if (m_registers.romBank == 0)
            m_registers.romBank = 1;
    } else if (address < 0x6000) {
        m_registers.upperSelect = value & 0x0F;
    }
}

bool Mbc3Cartridge::ramEnabled() const
{
    return m_registers.upperOn && m_registers.upperSelect < kFirstClockSelect;
}

bool Mbc3Cartridge::clockShows() const
{
    return m_registers.upperOn && m_registers.upperSelect >= kFirstClockSelect &&
           m_registers.upperSelect < kFirstClockSelect + m_clock.size();
}

std::uint8_t Mbc3Cartridge::readUpper(std::uint16_t address)
{
    return clockShows() ? m_clock[m_registers.upperSelect - kFirstClockSelect]
                        : GbCartridge::readUpper(address);
}

void Mbc3Cartridge::writeUpper(std::uint16_t address, std::uint8_t value)
{
    if (!clockShows()) {
        GbCartridge::writeUpper(address, value);
        return;
    }
    const std::uint32_t index = m_registers.upperSelect - kFirstClockSelect;
    m_clock[index] = value & kClockBits[index];
}

} // namespace virtual_reader
