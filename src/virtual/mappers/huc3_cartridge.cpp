#include "virtual/mappers/huc3_cartridge.h"

namespace virtual_reader
{

namespace
{

constexpr std::uint8_t kOpenBit = 0x80; // the mailbox has seven data lines
constexpr std::uint8_t kReady = 0x01;   // of the semaphore; a write without it executes
constexpr std::uint8_t kDark = 0xC0;    // what the infrared register reads as without light

} // namespace

void Huc3Cartridge::powerCycle()
{
    GbCartridge::powerCycle();
    m_registers = {};
    m_mailbox.powerCycle();
}

void Huc3Cartridge::writeRegister(std::uint16_t address, std::uint8_t value)
{
    if (address < 0x2000)
        m_registers.upper = static_cast<Upper>(value & 0x0F);
    else if (address < 0x4000)
        m_registers.romBank = value & 0x7F;
    else if (address < 0x6000)
        m_registers.ramBank = value & 0x0F;
}

bool Huc3Cartridge::ramEnabled() const
{
    return m_registers.upper == Upper::ReadOnlyRam || m_registers.upper == Upper::Ram;
}

std::uint8_t Huc3Cartridge::readUpper(std::uint16_t address)
{
    switch (m_registers.upper) {
    case Upper::Request:
        return kOpenBit | m_mailbox.request();
    case Upper::Answer:
        return kOpenBit | m_mailbox.answer();
    case Upper::Semaphore:
        return 0xFE | kReady;
    case Upper::Infrared:
        return kDark;
    default:
        return GbCartridge::readUpper(address);
    }
}

void Huc3Cartridge::writeUpper(std::uint16_t address, std::uint8_t value)
{
    switch (m_registers.upper) {
    case Upper::Ram:
        GbCartridge::writeUpper(address, value);
        break;
    case Upper::Request:
        m_mailbox.put(value);
        break;
    case Upper::Semaphore:
        if ((value & kReady) == 0)
            m_mailbox.execute();
        break;
    default:
        break;
    }
}

} // namespace virtual_reader
