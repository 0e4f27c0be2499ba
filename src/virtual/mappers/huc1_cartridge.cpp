#include "virtual/mappers/huc1_cartridge.h"

namespace virtual_reader
{

namespace
{

constexpr std::uint8_t kSelectInfrared = 0x0E;
// What the infrared register reads as, without and with light.
constexpr std::uint8_t kDark = 0xC0;
constexpr std::uint8_t kLight = 0xC1;

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
    if (m_registers.infrared)
        return m_light ? kLight : kDark;
    return GbCartridge::readUpper(address);
}

void Huc1Cartridge::writeUpper(std::uint16_t address, std::uint8_t value)
{
    if (m_registers.infrared)
        m_registers.senderShines = (value & 1) != 0;
    else
        GbCartridge::writeUpper(address, value);
}

} // namespace virtual_reader
