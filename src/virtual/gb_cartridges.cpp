#include "virtual/gb_cartridges.h"

#include <utility>

namespace virtual_reader
{

namespace
{

constexpr std::uint16_t kRomEnd = 0x8000;
constexpr std::uint16_t kRamStart = 0xA000;
constexpr std::uint16_t kRamEnd = 0xC000;
constexpr std::uint8_t kRamOn = 0x0A;

} // namespace

GbCartridge::GbCartridge(ByteVector rom, std::uint32_t ramSize)
    : m_rom(std::move(rom)), m_ram(ramSize, 0)
{
}

std::uint8_t GbCartridge::gbRead(std::uint16_t address)
{
    if (address < kRomEnd)
        return readRom(address);
    if (address >= kRamStart && address < kRamEnd)
        return readUpper(address);
    return 0xFF;
}

void GbCartridge::gbWrite(std::uint16_t address, std::uint8_t value)
{
    if (address < kRomEnd) {
        if (m_flash != nullptr)
            m_flash->write(romOffset(address), value);
        writeRegister(address, value);
        return;
    }
    if (address >= kRamStart && address < kRamEnd)
        writeUpper(address, value);
}

bool GbCartridge::loadSave(const ByteVector &image)
{
    if (image.size() != m_ram.size())
        return false;
    m_ram = image;
    return true;
}

void GbCartridge::passTime(std::uint64_t microseconds)
{
    if (m_flash != nullptr)
        m_flash->passTime(microseconds);
}

void GbCartridge::powerCycle()
{
    if (m_flash != nullptr)
        m_flash->powerCycle();
}

void GbCartridge::writeRegister(std::uint16_t, std::uint8_t) {}

std::uint8_t GbCartridge::readUpper(std::uint16_t address)
{
    return hasOpenRam() ? ramByte(ramOffset(address)) : std::uint8_t{0xFF};
}

void GbCartridge::writeUpper(std::uint16_t address, std::uint8_t value)
{
    if (hasOpenRam())
        setRamByte(ramOffset(address), value);
}

void GbCartridge::setRamByte(std::uint32_t offset, std::uint8_t value)
{
    std::uint8_t &cell = m_ram[offset & (m_ram.size() - 1)];
    if (cell == value)
        return;
    cell = value;
    ++m_saveChanges;
}

std::uint32_t GbCartridge::ramOffset(std::uint16_t address) const
{
    return ramBank() * kGbRamBankSize + (address - kRamStart);
}

std::uint8_t GbCartridge::readRom(std::uint16_t address)
{
    const std::uint32_t offset = romOffset(address);
    const std::uint8_t value = m_flash != nullptr ? m_flash->read(offset) : m_rom[offset];
    return m_flaky ? m_flaky->seen(offset, value) : value;
}

std::uint32_t GbCartridge::romOffset(std::uint16_t address) const
{
    const std::uint32_t bank = address < kGbRomBankSize ? lowRomBank() : highRomBank();
    return (bank * kGbRomBankSize + address % kGbRomBankSize) & (romSize() - 1);
}

Mbc1Cartridge::Mbc1Cartridge(ByteVector rom, std::uint32_t ramSize, Mbc1Board board)
    : GbCartridge(std::move(rom), ramSize), m_bank1Lines(board == Mbc1Board::Plain ? 5 : 4)
{
}

void Mbc1Cartridge::powerCycle()
{
    GbCartridge::powerCycle();
    m_registers = {};
}

void Mbc1Cartridge::writeRegister(std::uint16_t address, std::uint8_t value)
{
    if (address < 0x2000) {
        m_registers.ramOn = (value & 0x0F) == kRamOn;
    } else if (address < 0x4000) {
        m_registers.bank1 = value & 0x1F;
        if (m_registers.bank1 == 0)
            m_registers.bank1 = 1;
    } else if (address < 0x6000) {
        m_registers.bank2 = value & 0x03;
    } else {
        m_registers.mode = (value & 1) != 0;
    }
}

std::uint32_t Mbc1Cartridge::lowRomBank() const
{
    return m_registers.mode ? m_registers.bank2 << m_bank1Lines : 0;
}

std::uint32_t Mbc1Cartridge::highRomBank() const
{
    const std::uint32_t connected = (1U << m_bank1Lines) - 1;
    return m_registers.bank2 << m_bank1Lines | (m_registers.bank1 & connected);
}

std::uint32_t Mbc1Cartridge::ramBank() const
{
    return m_registers.mode ? m_registers.bank2 : 0;
}

void Mbc5Cartridge::powerCycle()
{
    GbCartridge::powerCycle();
    m_registers = {};
}

void Mbc5Cartridge::writeRegister(std::uint16_t address, std::uint8_t value)
{
    Registers &registers = m_registers;
    if (address < 0x2000)
        registers.ramOn = value == kRamOn;
    else if (address < 0x3000)
        registers.romBank = (registers.romBank & 0x100) | value;
    else if (address < 0x4000)
        registers.romBank = (registers.romBank & 0xFF) | (value & 1U) << 8;
    else if (address < 0x6000)
        registers.ramBank = value & 0x0F;
}

} // namespace virtual_reader
