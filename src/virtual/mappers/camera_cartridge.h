// The camera cartridge: up to 1 MiB of ROM, 128 KiB of RAM, and the registers of an image sensor.
//
// RAM can always be read; the gate opens it for writing. Bit 4 of the bank register shows the
// sensor's registers instead, which repeat every 128 bytes and can always be written. Only the
// first can be read. While a picture is taken RAM reads 0 and cannot be written. There is no sensor
// here: a picture takes a few polls of the first register and leaves the RAM as it is.
//
// On the hardware RAM can be written only while the clock line is high, which is taken as given.
// Source: Pan Docs, "Game Boy Camera".
#pragma once

#include "virtual/gb_cartridges.h"

#include <array>

namespace virtual_reader
{

class CameraCartridge : public GbCartridge
{
public:
    static constexpr std::uint32_t kRegisters = 0x36;
    static constexpr unsigned kCapturePolls = 2; // that see a picture being taken

    using GbCartridge::GbCartridge;

    void powerCycle() override;
    // What was written to a register, 0 to kRegisters - 1.
    std::uint8_t sensorRegister(std::uint32_t number) const { return m_registers.sensor[number]; }

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
        std::array<std::uint8_t, kRegisters> sensor{};
    };

    bool capturing() const { return (m_registers.sensor[0] & 1) != 0; }
    std::uint8_t readSensor(std::uint32_t number);
    void writeSensor(std::uint32_t number, std::uint8_t value);

    Registers m_registers;
};

} // namespace virtual_reader
