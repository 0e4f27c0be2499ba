// Game Boy cartridges: ROM and RAM alone, and behind the mappers MBC1 and MBC5.
//
// Addresses that a chip has no lines for wrap at its size, as they do on the boards. RAM that is
// switched off or missing reads 0xFF and ignores writes. Fresh RAM is all zero.
// Source: Pan Docs, "MBCs"; Game Boy: Complete Technical Reference, "MBC1", "MBC5".
#pragma once

#include "virtual/cartridge.h"

#include <cstdint>

constexpr std::uint32_t kGbRomBankSize = 16 * 1024;
constexpr std::uint32_t kGbRamBankSize = 8 * 1024;

// ROM only, or ROM with RAM that is always on; also the base of cartridges with a mapper.
class GbCartridge : public Cartridge
{
public:
    // `rom`: at least 32 KiB. `ramSize`: bytes, 0 for none. Both must be powers of two.
    GbCartridge(ByteVector rom, std::uint32_t ramSize);

    std::uint8_t gbRead(std::uint16_t address) override;
    void gbWrite(std::uint16_t address, std::uint8_t value) override;
    ByteVector romImage() const override { return m_rom; }
    ByteVector saveImage() const override { return m_ram; }
    bool loadSave(const ByteVector &image) override;
    std::uint64_t saveChanges() const override { return m_saveChanges; }

protected:
    // A write below 0x8000.
    virtual void writeRegister(std::uint16_t address, std::uint8_t value);
    // Bank of 16 KiB at 0000-3FFF and at 4000-7FFF, before it wraps.
    virtual std::uint32_t lowRomBank() const { return 0; }
    virtual std::uint32_t highRomBank() const { return 1; }
    virtual bool ramEnabled() const { return true; }
    // Bank of 8 KiB at A000-BFFF, before it wraps.
    virtual std::uint32_t ramBank() const { return 0; }

private:
    // The RAM cell at `address`; null outside A000-BFFF, and for RAM that is off or missing.
    std::uint8_t *ramCell(std::uint16_t address);

    ByteVector m_rom;
    ByteVector m_ram;
    std::uint64_t m_saveChanges = 0;
};

// Up to 2 MiB and 32 KiB.
class Mbc1Cartridge : public GbCartridge
{
public:
    using GbCartridge::GbCartridge;

protected:
    void writeRegister(std::uint16_t address, std::uint8_t value) override;
    std::uint32_t lowRomBank() const override;
    std::uint32_t highRomBank() const override;
    bool ramEnabled() const override { return m_ramOn; }
    std::uint32_t ramBank() const override;

private:
    bool m_ramOn = false;
    std::uint8_t m_bank1 = 1; // 5 bits, never 0
    std::uint8_t m_bank2 = 0; // 2 bits
    bool m_mode = false;      // BANK2 also reaches 0000-3FFF and the RAM
};

// Up to 8 MiB and 128 KiB.
class Mbc5Cartridge : public GbCartridge
{
public:
    using GbCartridge::GbCartridge;

protected:
    void writeRegister(std::uint16_t address, std::uint8_t value) override;
    std::uint32_t highRomBank() const override { return m_romBank; }
    bool ramEnabled() const override { return m_ramOn; }
    std::uint32_t ramBank() const override { return m_ramBank; }

private:
    bool m_ramOn = false;
    std::uint32_t m_romBank = 1; // 9 bits, 0 allowed
    std::uint32_t m_ramBank = 0; // 4 bits
};
