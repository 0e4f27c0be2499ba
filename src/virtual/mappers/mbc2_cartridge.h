// MBC2: up to 256 KiB of ROM, and 512 cells of 4 bits inside the mapper.
//
// One range of addresses, 0000-3FFF, serves both registers: address bit 8 tells which. Only the
// lower half of the data lines is wired to the cells; the upper half of what is read is open, and
// like most readers with pull-ups this one sees ones. Save images hold a byte for each cell, with
// the upper half set.
// Source: Pan Docs, "MBC2"; Game Boy: Complete Technical Reference, "MBC2".
#pragma once

#include "virtual/gb_cartridges.h"

namespace virtual_reader
{

class Mbc2Cartridge : public GbCartridge
{
public:
    static constexpr std::uint32_t kCells = 512;
    static constexpr std::uint8_t kOpenBits = 0xF0;

    explicit Mbc2Cartridge(ByteVector rom);

    void powerCycle() override;
    // Takes 512 bytes, of which the lower halves count.
    bool loadSave(const ByteVector &image) override;

protected:
    void writeRegister(std::uint16_t address, std::uint8_t value) override;
    void writeUpper(std::uint16_t address, std::uint8_t value) override;
    std::uint32_t highRomBank() const override { return m_registers.romBank; }
    bool ramEnabled() const override { return m_registers.ramOn; }

private:
    struct Registers {
        bool ramOn = false;
        std::uint32_t romBank = 1; // 4 bits, never 0
    };

    Registers m_registers;
};

} // namespace virtual_reader
