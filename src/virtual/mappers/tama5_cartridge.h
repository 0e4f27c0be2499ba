// TAMA5: up to 512 KiB of ROM, and a second chip, TAMA6, with 32 bytes of memory and a clock.
//
// The mapper looks at the address lines A15, A14 and A0 and at four data lines only: an odd address
// above A000 picks a register, an even one carries its nibble. Writes below 0x8000 do nothing. The
// mapper answers once it was woken by picking register 0xA; until then it takes no values.
//
// The clock is not modelled: its commands change nothing.
// Source: Pan Docs, "TAMA5"; research published in the gbdev forum.
#pragma once

#include "virtual/gb_cartridges.h"

#include <array>

namespace virtual_reader
{

class Tama5Cartridge : public GbCartridge
{
public:
    static constexpr std::uint32_t kMemory = 32;

    explicit Tama5Cartridge(ByteVector rom);

    void powerCycle() override;

protected:
    std::uint8_t readUpper(std::uint16_t address) override;
    void writeUpper(std::uint16_t address, std::uint8_t value) override;
    std::uint32_t highRomBank() const override;

private:
    struct Registers {
        bool awake = false;
        std::uint8_t picked = 0;
        std::array<std::uint8_t, 8> nibbles{1}; // 0 to 7; the ROM bank is 1
        std::uint8_t output = 0;
    };

    void execute();

    Registers m_registers;
};

} // namespace virtual_reader
