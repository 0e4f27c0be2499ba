// MBC5 with a motor: bit 3 of the RAM bank register drives it instead of the RAM's highest line, so
// that 64 KiB of RAM remain.
// Source: Pan Docs, "MBC5".
#pragma once

#include "virtual/gb_cartridges.h"

namespace virtual_reader
{

class RumbleCartridge : public Mbc5Cartridge
{
public:
    using Mbc5Cartridge::Mbc5Cartridge;

    bool motorRuns() const { return (bankRegister() & kMotorBit) != 0; }
    // How often the motor was switched on.
    unsigned motorStarts() const { return m_motorStarts; }

protected:
    void writeRegister(std::uint16_t address, std::uint8_t value) override;
    std::uint32_t ramBank() const override { return bankRegister() & ~kMotorBit; }

private:
    static constexpr std::uint32_t kMotorBit = 0x08;

    std::uint32_t bankRegister() const { return Mbc5Cartridge::ramBank(); }

    unsigned m_motorStarts = 0;
};

} // namespace virtual_reader
