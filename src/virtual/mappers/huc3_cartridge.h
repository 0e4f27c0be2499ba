// HuC-3: up to 2 MiB of ROM and 128 KiB of RAM, a clock behind a mailbox, and infrared.
//
// What stands at A000-BFFF is chosen by one register: RAM to read, RAM, one of three mailbox
// registers, or the infrared register, whose receiver never sees light. Any other choice leaves the
// bus open.
// Source: Pan Docs, "HuC-3".
#pragma once

#include "virtual/gb_cartridges.h"
#include "virtual/mappers/huc3_mailbox.h"

namespace virtual_reader
{

class Huc3Cartridge : public GbCartridge
{
public:
    using GbCartridge::GbCartridge;

    void powerCycle() override;

protected:
    void writeRegister(std::uint16_t address, std::uint8_t value) override;
    std::uint8_t readUpper(std::uint16_t address) override;
    void writeUpper(std::uint16_t address, std::uint8_t value) override;
    std::uint32_t highRomBank() const override { return m_registers.romBank; }
    bool ramEnabled() const override;
    std::uint32_t ramBank() const override { return m_registers.ramBank; }

private:
    enum class Upper : std::uint8_t {
        ReadOnlyRam = 0x0,
        Ram = 0xA,
        Request = 0xB,
        Answer = 0xC,
        Semaphore = 0xD,
        Infrared = 0xE
    };
    struct Registers {
        Upper upper = Upper::ReadOnlyRam;
        std::uint32_t romBank = 1; // 7 bits, 0 allowed
        std::uint32_t ramBank = 0; // 4 bits
    };

    Registers m_registers;
    Huc3Mailbox m_mailbox;
};

} // namespace virtual_reader
