// HuC1: up to 1 MiB of ROM and 32 KiB of RAM, with an infrared sender and receiver.
//
// There is no gate: A000-BFFF is either the infrared register or RAM that is always writable. The
// receiver never sees light, and nobody sees the sender's.
// Source: Pan Docs, "HuC1".
#pragma once

#include "virtual/gb_cartridges.h"

namespace virtual_reader
{

class Huc1Cartridge : public GbCartridge
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
        bool infrared = false;
        std::uint32_t romBank = 1; // 6 bits, 0 allowed
        std::uint32_t ramBank = 0; // 2 bits
    };

    Registers m_registers;
};

} // namespace virtual_reader
