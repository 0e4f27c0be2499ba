// MBC3 with its clock, and its larger kin MBC30.
//
// The clock runs on a battery: it keeps its time and its copy over a power cycle. It is no part of
// the save image.
// Source: Pan Docs, "MBC3"; Game Boy: Complete Technical Reference, "MBC30".
#pragma once

#include "virtual/gb_cartridges.h"
#include "virtual/mappers/mbc3_clock.h"

namespace virtual_reader
{

// Up to 2 MiB and 32 KiB, or, as MBC30, up to 4 MiB and 64 KiB.
class Mbc3Cartridge : public GbCartridge
{
public:
    // Is an MBC30 if ROM or RAM is larger than an MBC3 can reach.
    Mbc3Cartridge(ByteVector rom, std::uint32_t ramSize, ClockSource clock = {});

    void powerCycle() override;

protected:
    void writeRegister(std::uint16_t address, std::uint8_t value) override;
    std::uint8_t readUpper(std::uint16_t address) override;
    void writeUpper(std::uint16_t address, std::uint8_t value) override;
    std::uint32_t highRomBank() const override { return m_registers.romBank; }
    bool ramEnabled() const override;
    std::uint32_t ramBank() const override { return m_registers.upperSelect; }

private:
    struct Registers {
        bool upperOn = false;          // RAM and clock
        std::uint32_t romBank = 1;     // 7 bits, 8 of an MBC30; never 0
        std::uint32_t upperSelect = 0; // 4 bits: RAM bank, or clock register from 8 on
        std::uint8_t latch = 0xFF;     // what was last written to the latch
    };

    bool clockShows() const;

    std::uint8_t m_romBankMask;
    Registers m_registers;
    Mbc3Clock m_clock;
};

} // namespace virtual_reader
