// Game Boy cartridges: ROM and RAM alone, and behind the mappers MBC1 and MBC5. Other mappers are
// in the folder mappers/. A flash chip may stand in the place of the ROM.
//
// The mapper supplies the ROM's upper address lines. A write below 0x8000 reaches both the flash
// chip, with the lines as they are before it, and the mapper's registers.
//
// Addresses that a chip has no lines for wrap at its size, as they do on the boards. RAM that is
// switched off or missing reads 0xFF and ignores writes. Fresh RAM is all zero.
// Source: Pan Docs, "MBCs"; Game Boy: Complete Technical Reference, "MBC1", "MBC5".
#pragma once

#include "virtual/cartridge.h"
#include "virtual/flaky_bank.h"
#include "virtual/flash_chip.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace virtual_reader
{

constexpr std::uint32_t kGbRomBankSize = 16 * 1024;
constexpr std::uint32_t kGbRamBankSize = 8 * 1024;

// ROM only, or ROM with RAM that is always on; also the base of cartridges with a mapper.
class GbCartridge : public Cartridge
{
public:
    // `rom`: at least 32 KiB. `ramSize`: bytes, 0 for none. Both must be powers of two.
    GbCartridge(ByteVector rom, std::uint32_t ramSize);
    // Puts a flash chip, as large as the ROM, in its place; null leaves the ROM.
    void fitFlash(std::unique_ptr<FlashChip> chip) { m_flash = std::move(chip); }
    // Gives a bank of the ROM or flash chip a bad contact.
    void loosen(std::uint32_t bank) { m_flaky.emplace(bank); }

    std::uint8_t gbRead(std::uint16_t address) override;
    void gbWrite(std::uint16_t address, std::uint8_t value) override;
    ByteVector romImage() const override
    {
        return m_flash != nullptr ? m_flash->contents() : m_rom;
    }
    ByteVector saveImage() const override { return m_ram; }
    bool loadSave(const ByteVector &image) override;
    std::uint64_t saveChanges() const override { return m_saveChanges; }
    void passTime(std::uint64_t microseconds) override;
    // Mappers reset their registers as well.
    void powerCycle() override;

protected:
    // A write below 0x8000.
    virtual void writeRegister(std::uint16_t address, std::uint8_t value);
    // A000-BFFF: the RAM, unless a mapper shows something else there.
    virtual std::uint8_t readUpper(std::uint16_t address);
    virtual void writeUpper(std::uint16_t address, std::uint8_t value);
    // Bank of 16 KiB at 0000-3FFF and at 4000-7FFF, before it wraps.
    virtual std::uint32_t lowRomBank() const { return 0; }
    virtual std::uint32_t highRomBank() const { return 1; }
    virtual bool ramEnabled() const { return true; }
    // Bank of 8 KiB at A000-BFFF, before it wraps.
    virtual std::uint32_t ramBank() const { return 0; }

    // A cell by its own address, which wraps. There must be RAM.
    std::uint8_t ramByte(std::uint32_t offset) const { return m_ram[offset & (m_ram.size() - 1)]; }
    // Stores a byte and counts the change.
    void setRamByte(std::uint32_t offset, std::uint8_t value);
    // In RAM, where `address` of A000-BFFF leads.
    std::uint32_t ramOffset(std::uint16_t address) const;
    std::uint32_t romSize() const { return static_cast<std::uint32_t>(m_rom.size()); }

private:
    // What the ROM or flash chip shows at `address` below 0x8000.
    std::uint8_t readRom(std::uint16_t address);
    // In the ROM or flash chip, where `address` below 0x8000 leads.
    std::uint32_t romOffset(std::uint16_t address) const;
    bool hasOpenRam() const { return !m_ram.empty() && ramEnabled(); }

    ByteVector m_rom;
    std::unique_ptr<FlashChip> m_flash;
    std::optional<FlakyBank> m_flaky;
    ByteVector m_ram;
    std::uint64_t m_saveChanges = 0;
};

// How the outputs of an MBC1 are wired to the ROM.
enum class Mbc1Board {
    Plain,
    // Compilations of 1 MiB: bit 4 of BANK1 is not connected and BANK2 drives the ROM's lines 18
    // and 19, so that each game of 256 KiB sees itself alone.
    MultiCart
};

// Up to 2 MiB and 32 KiB.
class Mbc1Cartridge : public GbCartridge
{
public:
    Mbc1Cartridge(ByteVector rom, std::uint32_t ramSize, Mbc1Board board = Mbc1Board::Plain);

    void powerCycle() override;

protected:
    void writeRegister(std::uint16_t address, std::uint8_t value) override;
    std::uint32_t lowRomBank() const override;
    std::uint32_t highRomBank() const override;
    bool ramEnabled() const override { return m_registers.ramOn; }
    std::uint32_t ramBank() const override;

private:
    struct Registers {
        bool ramOn = false;
        std::uint32_t bank1 = 1; // 5 bits, never 0
        std::uint32_t bank2 = 0; // 2 bits
        bool mode = false;       // BANK2 also reaches 0000-3FFF and the RAM
    };

    std::uint32_t m_bank1Lines; // of BANK1 that reach the ROM
    Registers m_registers;
};

// Up to 8 MiB and 128 KiB. With a motor, bit 3 of the RAM bank register drives it instead of the
// RAM's highest line: no more than 64 KiB remain, which have no such line. Nothing on the bus tells
// whether it runs.
class Mbc5Cartridge : public GbCartridge
{
public:
    using GbCartridge::GbCartridge;

    void powerCycle() override;

protected:
    void writeRegister(std::uint16_t address, std::uint8_t value) override;
    std::uint32_t highRomBank() const override { return m_registers.romBank; }
    bool ramEnabled() const override { return m_registers.ramOn; }
    std::uint32_t ramBank() const override { return m_registers.ramBank; }

private:
    struct Registers {
        bool ramOn = false;
        std::uint32_t romBank = 1; // 9 bits, 0 allowed
        std::uint32_t ramBank = 0; // 4 bits
    };

    Registers m_registers;
};

} // namespace virtual_reader
