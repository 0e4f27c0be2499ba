// MBC7: up to 2 MiB of ROM, an accelerometer, and a serial EEPROM instead of RAM.
//
// Two gates must both be open to reach the registers at A000-AFFF; address bits 4 to 7 pick one.
// Everything else there reads as ones.
// Source: Pan Docs, "MBC7".
#pragma once

#include "virtual/gb_cartridges.h"
#include "virtual/mappers/serial_eeprom.h"

namespace virtual_reader
{

class Mbc7Cartridge : public GbCartridge
{
public:
    // What an axis reads at rest, and until it was measured for the first time.
    static constexpr std::uint16_t kLevel = 0x81D0;
    static constexpr std::uint16_t kNotMeasured = 0x8000;

    explicit Mbc7Cartridge(ByteVector rom);

    void powerCycle() override;
    ByteVector saveImage() const override { return m_eeprom.contents(); }
    bool loadSave(const ByteVector &image) override { return m_eeprom.load(image); }
    std::uint64_t saveChanges() const override { return m_eeprom.changes(); }

    // How the cartridge is held, in units of the sensor away from level; about 0x70 for one g.
    void setTilt(int x, int y);

protected:
    void writeRegister(std::uint16_t address, std::uint8_t value) override;
    std::uint8_t readUpper(std::uint16_t address) override;
    void writeUpper(std::uint16_t address, std::uint8_t value) override;
    std::uint32_t highRomBank() const override { return m_registers.romBank; }

private:
    struct Axes {
        std::uint16_t x = kNotMeasured;
        std::uint16_t y = kNotMeasured;
    };
    struct Registers {
        bool firstGate = false;
        bool secondGate = false;
        std::uint32_t romBank = 1; // 7 bits, 0 allowed
        bool cleared = false;      // ready to measure
        Axes measured;
        std::uint8_t eepromPins = 0; // the three inputs as written
    };

    bool registersShow(std::uint16_t address) const;
    void writeEepromPins(std::uint8_t value);

    Axes m_held = {kLevel, kLevel};
    Registers m_registers;
    SerialEeprom m_eeprom;
};

} // namespace virtual_reader
