// MBC7: up to 2 MiB of ROM, an accelerometer, and a serial EEPROM instead of RAM.
//
// Two gates must both be open to reach the registers at A000-AFFF; address bits 4 to 7 pick one.
// Everything else there reads as ones. The cartridge lies level: both axes measure the same.
// Source: Pan Docs, "MBC7".
#pragma once

#include "virtual/gb_cartridges.h"
#include "virtual/mappers/serial_eeprom.h"

namespace virtual_reader
{

class Mbc7Cartridge : public GbCartridge
{
public:
    explicit Mbc7Cartridge(ByteVector rom);

    void powerCycle() override;
    ByteVector saveImage() const override { return m_eeprom.contents(); }
    bool loadSave(const ByteVector &image) override { return m_eeprom.load(image); }
    std::uint64_t saveChanges() const override { return m_eeprom.changes(); }

protected:
    void writeRegister(std::uint16_t address, std::uint8_t value) override;
    std::uint8_t readUpper(std::uint16_t address) override;
    void writeUpper(std::uint16_t address, std::uint8_t value) override;
    std::uint32_t highRomBank() const override { return m_registers.romBank; }

private:
    // What an axis reads until it is measured.
    static constexpr std::uint16_t kNotMeasured = 0x8000;

    struct Registers {
        bool firstGate = false;
        bool secondGate = false;
        std::uint32_t romBank = 1; // 7 bits, 0 allowed
        bool cleared = false;      // ready to measure
        std::uint16_t axis = kNotMeasured;
        std::uint8_t eepromPins = 0; // the three inputs as written
    };

    bool registersShow(std::uint16_t address) const;
    void writeEepromPins(std::uint8_t value);

    Registers m_registers;
    SerialEeprom m_eeprom;
};

} // namespace virtual_reader
