// MBC3 with its clock, and its larger kin MBC30.
//
// The clock stands still, so that every run gives the same bytes: its registers hold what was
// written to them. They have a battery and keep it over a power cycle, but are no part of the save
// image. On the hardware programs read a copy that a write to 6000-7FFF makes; of a clock that
// stands still it is always the same.
// Source: Pan Docs, "MBC3"; Game Boy: Complete Technical Reference, "MBC30".
#pragma once

#include "virtual/gb_cartridges.h"

#include <array>

namespace virtual_reader
{

// Up to 2 MiB and 32 KiB, or, as MBC30, up to 4 MiB and 64 KiB.
class Mbc3Cartridge : public GbCartridge
{
public:
    // Is an MBC30 if ROM or RAM is larger than an MBC3 can reach.
    Mbc3Cartridge(ByteVector rom, std::uint32_t ramSize);

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
    };

    bool clockShows() const;

    std::uint8_t m_romBankMask;
    Registers m_registers;
    // Seconds, minutes, hours, low 8 bits of the days, and: day bit 8, halt, overflow of the days.
    std::array<std::uint8_t, 5> m_clock{};
};

} // namespace virtual_reader
