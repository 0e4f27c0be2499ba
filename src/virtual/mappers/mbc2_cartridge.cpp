#include "virtual/mappers/mbc2_cartridge.h"

#include <utility>

namespace virtual_reader
{

namespace
{

constexpr std::uint16_t kRegistersEnd = 0x4000;
constexpr std::uint16_t kRomBankLine = 0x100; // address bit that picks the bank register
constexpr std::uint8_t kRamOn = 0x0A;

} // namespace

Mbc2Cartridge::Mbc2Cartridge(ByteVector rom) : GbCartridge(std::move(rom), kCells)
{
    Mbc2Cartridge::loadSave(ByteVector(kCells, 0));
}

void Mbc2Cartridge::powerCycle()
{
    GbCartridge::powerCycle();
    m_registers = {};
}

bool Mbc2Cartridge::loadSave(const ByteVector &image)
{
    ByteVector cells = image;
    for (std::uint8_t &cell : cells)
        cell |= kOpenBits;
    return GbCartridge::loadSave(cells);
}

void Mbc2Cartridge::writeRegister(std::uint16_t address, std::uint8_t value)
{
    if (address >= kRegistersEnd)
        return;
    if ((address & kRomBankLine) == 0) {
        m_registers.ramOn = (value & 0x0F) == kRamOn;
        return;
    }
    m_registers.romBank = value & 0x0F;
    if (m_registers.romBank == 0)
        m_registers.romBank = 1;
}

void Mbc2Cartridge::writeUpper(std::uint16_t address, std::uint8_t value)
{
    GbCartridge::writeUpper(address, value | kOpenBits);
}

} // namespace virtual_reader
