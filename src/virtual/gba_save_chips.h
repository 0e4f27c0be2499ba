// The save chips of GBA cartridges, each with the reader's routines that know how to talk to it.
//
// The reader has a routine for each kind of chip. One that is made for another kind gets nothing
// out of a chip and changes nothing; only the SRAM read, which is nothing but bus cycles, also
// shows FLASH: its selected bank, or its status while it is erased.
#pragma once

#include "virtual/block_format.h"
#include "virtual/bytes.h"
#include "virtual/eeprom_chip.h"
#include "virtual/flash_chip.h"

#include <cstdint>

namespace virtual_reader
{

class GbaSaveChip
{
public:
    virtual ~GbaSaveChip() = default;

    // See Cartridge::gbaSaveRead(), gbaSaveWrite() and gbaSaveErase().
    virtual bool read(SaveKind routine, std::uint32_t address, std::uint8_t *destination,
                      std::uint32_t length) = 0;
    virtual bool write(SaveKind routine, std::uint32_t address, const std::uint8_t *source,
                       std::uint32_t length) = 0;
    virtual bool erase() { return false; }
    virtual void passTime(std::uint64_t /*microseconds*/) {}
    virtual void powerCycle() {}

    virtual const ByteVector &contents() const = 0;
    // Returns: false if the size is not the chip's.
    virtual bool load(const ByteVector &contents) = 0;
    // Number of bytes changed through the bus so far.
    virtual std::uint64_t changes() const = 0;
};

// SRAM or FRAM of 32 or 64 KiB. The save space has 64 KiB, in which the smaller chip repeats. Fresh
// cells are zero.
class GbaSram : public GbaSaveChip
{
public:
    explicit GbaSram(std::uint32_t sizeBytes);

    bool read(SaveKind routine, std::uint32_t address, std::uint8_t *destination,
              std::uint32_t length) override;
    bool write(SaveKind routine, std::uint32_t address, const std::uint8_t *source,
               std::uint32_t length) override;
    const ByteVector &contents() const override { return m_cells; }
    bool load(const ByteVector &contents) override;
    std::uint64_t changes() const override { return m_changes; }

private:
    std::uint8_t &cell(std::uint32_t address);

    ByteVector m_cells;
    std::uint64_t m_changes = 0;
};

// FLASH of 64 KiB, or of 128 KiB in two banks. Its routines send the chip's commands and wait for
// each byte; the erase routine does not wait.
class GbaFlash : public GbaSaveChip
{
public:
    // `kind`: Flash64k or Flash128k.
    GbaFlash(SaveKind kind, const FlashChipBehaviour &behaviour);

    bool read(SaveKind routine, std::uint32_t address, std::uint8_t *destination,
              std::uint32_t length) override;
    bool write(SaveKind routine, std::uint32_t address, const std::uint8_t *source,
               std::uint32_t length) override;
    bool erase() override;
    void passTime(std::uint64_t microseconds) override { m_chip.passTime(microseconds); }
    void powerCycle() override { m_chip.powerCycle(); }
    const ByteVector &contents() const override { return m_chip.contents(); }
    bool load(const ByteVector &contents) override { return m_chip.load(contents); }
    std::uint64_t changes() const override { return m_chip.changes(); }

private:
    void command(std::uint8_t code);
    void selectBank(std::uint32_t address);
    void program(std::uint32_t address, std::uint8_t value);

    SaveKind m_kind;
    FlashChip m_chip;
};

// EEPROM of 512 bytes or 8 KiB. Its routines frame the requests, one for each block of 8 bytes.
// Addresses count bytes; a transfer begins with the block that holds its first one, and of a write
// only whole blocks are sent.
class GbaEeprom : public GbaSaveChip
{
public:
    // `kind`: Eeprom512 or Eeprom8k.
    explicit GbaEeprom(SaveKind kind);

    bool read(SaveKind routine, std::uint32_t address, std::uint8_t *destination,
              std::uint32_t length) override;
    bool write(SaveKind routine, std::uint32_t address, const std::uint8_t *source,
               std::uint32_t length) override;
    const ByteVector &contents() const override { return m_chip.contents(); }
    bool load(const ByteVector &contents) override { return m_chip.load(contents); }
    std::uint64_t changes() const override { return m_chip.changes(); }

private:
    void sendBits(std::uint64_t bits, unsigned count);
    void readBlock(std::uint32_t block, std::uint8_t *bytes);
    void writeBlock(std::uint32_t block, const std::uint8_t *bytes);

    SaveKind m_kind;
    unsigned m_addressBits;
    EepromChip m_chip;
};

} // namespace virtual_reader
