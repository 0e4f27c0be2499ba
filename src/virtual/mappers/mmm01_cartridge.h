// MMM01: an MBC1 for compilations of up to 8 MiB of ROM and 128 KiB of RAM. A menu sets it up for
// the chosen game and locks the setup.
//
// After power-on the last 32 KiB of the ROM, menu and true header, fill 0000-7FFF. The menu writes
// the setup bits and sets the map bit; from then on the setup bits ignore writes until the supply
// is cut, and the game finds what looks like an MBC1. Bits of the ROM and RAM banks that the setup
// masks keep their value as well. The image has the order of the chip: the menu comes last. Source:
// Pan Docs, "MMM01".
#pragma once

#include "virtual/gb_cartridges.h"

namespace virtual_reader
{

class Mmm01Cartridge : public GbCartridge
{
public:
    using GbCartridge::GbCartridge;

    void powerCycle() override;

protected:
    void writeRegister(std::uint16_t address, std::uint8_t value) override;
    std::uint32_t lowRomBank() const override;
    std::uint32_t highRomBank() const override;
    bool ramEnabled() const override { return m_registers.ramOn; }
    std::uint32_t ramBank() const override;

private:
    struct Registers {
        bool mapped = false; // setup bits are locked
        bool ramOn = false;
        std::uint32_t romLow = 0;  // 5 bits
        std::uint32_t romMid = 0;  // 2 bits, setup
        std::uint32_t romHigh = 0; // 2 bits, setup
        std::uint32_t romMask = 0; // setup; bits of romLow that a game cannot change; never bit 0
        std::uint32_t ramLow = 0;  // 2 bits
        std::uint32_t ramHigh = 0; // 2 bits, setup
        std::uint32_t ramMask = 0; // setup; bits of ramLow that a game cannot change
        bool mode = false;         // all of ramLow counts, as BANK2 does in mode 1 of an MBC1
        bool modeLocked = false;   // setup
        bool multiplexed = false;  // setup; ramLow and romMid change places
    };

    void writeGate(std::uint8_t value);
    void writeRomBank(std::uint8_t value);
    void writeRamBank(std::uint8_t value);
    void writeMode(std::uint8_t value);
    // ramLow as 0000-3FFF and the RAM see it.
    std::uint32_t gatedRamLow() const;

    Registers m_registers;
};

} // namespace virtual_reader
