#include "virtual/mappers/mbc7_cartridge.h"

#include <utility>

namespace virtual_reader
{

namespace
{

constexpr std::uint8_t kFirstGate = 0x0A;
constexpr std::uint8_t kSecondGate = 0x40;
constexpr std::uint16_t kRegistersEnd = 0xB000;

// Registers, by address bits 4 to 7.
enum Register : unsigned {
    kClear = 0,
    kMeasure = 1,
    kXLow = 2,
    kXHigh = 3,
    kYLow = 4,
    kYHigh = 5,
    kAlwaysZero = 6,
    kEeprom = 8
};
constexpr std::uint8_t kClearKey = 0x55;
constexpr std::uint8_t kMeasureKey = 0xAA;
constexpr std::uint16_t kLevel = 0x81D0; // what an axis measures at rest

constexpr std::uint8_t kPinSelect = 0x80;
constexpr std::uint8_t kPinClock = 0x40;
constexpr std::uint8_t kPinDataIn = 0x02;
constexpr std::uint8_t kPinDataOut = 0x01;

unsigned registerAt(std::uint16_t address)
{
    return (address >> 4) & 0x0F;
}

} // namespace

Mbc7Cartridge::Mbc7Cartridge(ByteVector rom) : GbCartridge(std::move(rom), 0) {}

void Mbc7Cartridge::powerCycle()
{
    GbCartridge::powerCycle();
    m_registers = {};
    m_eeprom.powerCycle();
}

void Mbc7Cartridge::writeRegister(std::uint16_t address, std::uint8_t value)
{
    if (address < 0x2000)
        m_registers.firstGate = value == kFirstGate;
    else if (address < 0x4000)
        m_registers.romBank = value & 0x7F;
    else if (address < 0x6000)
        m_registers.secondGate = value == kSecondGate;
}

bool Mbc7Cartridge::registersShow(std::uint16_t address) const
{
    return m_registers.firstGate && m_registers.secondGate && address < kRegistersEnd;
}

std::uint8_t Mbc7Cartridge::readUpper(std::uint16_t address)
{
    if (!registersShow(address))
        return 0xFF;
    switch (registerAt(address)) {
    case kXLow:
    case kYLow:
        return static_cast<std::uint8_t>(m_registers.axis);
    case kXHigh:
    case kYHigh:
        return static_cast<std::uint8_t>(m_registers.axis >> 8);
    case kAlwaysZero:
        return 0;
    case kEeprom:
        return m_registers.eepromPins | (m_eeprom.dataOut() ? kPinDataOut : 0);
    default:
        return 0xFF;
    }
}

void Mbc7Cartridge::writeUpper(std::uint16_t address, std::uint8_t value)
{
    if (!registersShow(address))
        return;
    const unsigned number = registerAt(address);
    if (number == kClear && value == kClearKey) {
        m_registers.axis = kNotMeasured;
        m_registers.cleared = true;
    } else if (number == kMeasure && value == kMeasureKey && m_registers.cleared) {
        m_registers.axis = kLevel;
        m_registers.cleared = false;
    } else if (number == kEeprom) {
        writeEepromPins(value);
    }
}

void Mbc7Cartridge::writeEepromPins(std::uint8_t value)
{
    m_registers.eepromPins = value & (kPinSelect | kPinClock | kPinDataIn);
    m_eeprom.setPins((value & kPinSelect) != 0, (value & kPinClock) != 0,
                     (value & kPinDataIn) != 0);
}

} // namespace virtual_reader
