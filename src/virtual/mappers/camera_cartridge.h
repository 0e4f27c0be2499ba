// The camera cartridge: up to 1 MiB of ROM, 128 KiB of RAM, and the registers of an image sensor.
//
// RAM can always be read; the gate opens it for writing. Bit 4 of the bank register shows the
// sensor's registers instead, which repeat every 128 bytes and can always be written. Only the
// first can be read, so what the others hold is not kept. While a picture is taken RAM reads 0 and
// cannot be written. There is no sensor here: a picture takes a few polls of the first register and
// leaves the RAM as it is.
//
// On the hardware RAM can be written only while the clock line is high, which is taken as given.
// Source: Pan Docs, "Game Boy Camera".
#pragma once

#include "virtual/gb_cartridges.h"

namespace virtual_reader
{

class CameraCartridge : public GbCartridge
{
public:
    using GbCartridge::GbCartridge;

    void powerCycle() override;

protected:
    void writeRegister(std::uint16_t address, std::uint8_t value) override;
    std::uint8_t readUpper(std::uint16_t address) override;
    void writeUpper(std::uint16_t address, std::uint8_t value) override;
    std::uint32_t highRomBank() const override { return m_registers.romBank; }
    std::uint32_t ramBank() const override { return m_registers.ramBank; }

private:
    struct Registers {
        bool ramWritable = false;
        bool sensorShows = false;
        std::uint32_t romBank = 1; // 6 bits, 0 allowed
        std::uint32_t ramBank = 0; // 4 bits
        unsigned capturePolls = 0; // left
        std::uint8_t sensor = 0;   // the first of the sensor's registers, 3 bits
    };

    bool capturing() const { return (m_registers.sensor & 1) != 0; }
    std::uint8_t pollSensor();

    Registers m_registers;
};

} // namespace virtual_reader
