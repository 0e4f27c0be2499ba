#include "virtual/gb_cartridges.h"

#include <utility>

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
    if (address < kRomEnd) {
        const std::uint32_t bank = address < kGbRomBankSize ? lowRomBank() : highRomBank();
        const std::uint32_t offset = bank * kGbRomBankSize + address % kGbRomBankSize;
        return m_rom[offset & (m_rom.size() - 1)];
    }
    const std::uint8_t *cell = ramCell(address);
    return cell == nullptr ? std::uint8_t{0xFF} : *cell;
}

void GbCartridge::gbWrite(std::uint16_t address, std::uint8_t value)
{
    if (address < kRomEnd) {
        writeRegister(address, value);
        return;
    }
    std::uint8_t *cell = ramCell(address);
    if (cell == nullptr || *cell == value)
        return;
    *cell = value;
    ++m_saveChanges;
}

bool GbCartridge::loadSave(const ByteVector &image)
{
    if (image.size() != m_ram.size())
        return false;
    m_ram = image;
    return true;
}

void GbCartridge::writeRegister(std::uint16_t, std::uint8_t) {}

std::uint8_t *GbCartridge::ramCell(std::uint16_t address)
{
    if (address < kRamStart || address >= kRamEnd || m_ram.empty() || !ramEnabled())
        return nullptr;
    const std::uint32_t offset = ramBank() * kGbRamBankSize + (address - kRamStart);
    return &m_ram[offset & (m_ram.size() - 1)];
}

void Mbc1Cartridge::writeRegister(std::uint16_t address, std::uint8_t value)
{
    if (address < 0x2000) {
        m_ramOn = (value & 0x0F) == kRamOn;
    } else if (address < 0x4000) {
        m_bank1 = value & 0x1F;
        if (m_bank1 == 0)
            m_bank1 = 1;
    } else if (address < 0x6000) {
        m_bank2 = value & 0x03;
    } else {
        m_mode = (value & 1) != 0;
    }
}

std::uint32_t Mbc1Cartridge::lowRomBank() const
{
    return m_mode ? m_bank2 * 32U : 0;
}

std::uint32_t Mbc1Cartridge::highRomBank() const
{
    return m_bank2 * 32U + m_bank1;
}

std::uint32_t Mbc1Cartridge::ramBank() const
{
    return m_mode ? m_bank2 : 0;
}

void Mbc5Cartridge::writeRegister(std::uint16_t address, std::uint8_t value)
{
    if (address < 0x2000)
        m_ramOn = value == kRamOn;
    else if (address < 0x3000)
        m_romBank = (m_romBank & 0x100) | value;
    else if (address < 0x4000)
        m_romBank = (m_romBank & 0xFF) | (value & 1U) << 8;
    else if (address < 0x6000)
        m_ramBank = value & 0x0F;
}
