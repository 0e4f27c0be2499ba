#include "virtual/mappers/huc1_cartridge.h"

namespace virtual_reader
{

namespace
{

constexpr std::uint8_t kSelectInfrared = 0x0E;
constexpr std::uint8_t kDark = 0xC0; // what the infrared register reads as without light

} // namespace

void Huc1Cartridge::powerCycle()
{
    GbCartridge::powerCycle();
    m_registers = {};
}

void Huc1Cartridge::writeRegister(std::uint16_t address, std::uint8_t value)
{
    if (address < 0x2000)
        m_registers.infrared = value == kSelectInfrared;
    else if (address < 0x4000)
        m_registers.romBank = value & 0x3F;
    else if (address < 0x6000)
        m_registers.ramBank = value & 0x03;
}

std::uint8_t Huc1Cartridge::readUpper(std::uint16_t address)
{
    return m_registers.infrared ? kDark : GbCartridge::readUpper(address);
}

void Huc1Cartridge::writeUpper(std::uint16_t address, std::uint8_t value)
{
    if (!m_registers.infrared)
        GbCartridge::writeUpper(address, value);
}

} // namespace virtual_reader
