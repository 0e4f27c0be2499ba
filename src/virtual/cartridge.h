// What stands in the reader's slot: a Game Boy or a Game Boy Advance cartridge, or nothing.
//
// The reader knows a cartridge only by its buses. A cartridge answers the buses that it has; the
// defaults here are those of one that is not wired to the bus at all. Time does not pass by itself:
// chips that are busy for a while count accesses, or what the reader says has passed.
#pragma once

#include "virtual/block_format.h"
#include "virtual/bytes.h"

#include <cstdint>

namespace virtual_reader
{

class Cartridge
{
public:
    virtual ~Cartridge() = default;

    // --- GB bus: 16 address lines, 8 data lines ---

    // One read cycle. Returns: the byte on the bus; 0xFF where nothing drives it.
    virtual std::uint8_t gbRead(std::uint16_t address);
    // One write cycle.
    virtual void gbWrite(std::uint16_t address, std::uint8_t value);

    // --- GBA bus: ROM space ---

    // One halfword at `address`, in halfwords, 24 bit. The default is the open bus: the address
    // lines and the data lines are the same wires, so the low 16 address bits come back.
    virtual std::uint16_t gbaRead(std::uint32_t address);
    virtual void gbaWrite(std::uint32_t address, std::uint16_t value);

    // --- GBA bus: save memory, through the reader's routines for each kind of chip ---

    // Reads `length` bytes from byte address `address` with the routine for `kind`.
    // Returns: false if that routine gets nothing out of this cartridge; `destination` is then left
    // as it was.
    virtual bool gbaSaveRead(SaveKind kind, std::uint32_t address, std::uint8_t *destination,
                             std::uint32_t length);
    // Writes likewise. Returns: false if the routine has no effect on this cartridge.
    virtual bool gbaSaveWrite(SaveKind kind, std::uint32_t address, const std::uint8_t *source,
                              std::uint32_t length);
    // Erases a FLASH save chip. Returns: false if there is none.
    virtual bool gbaSaveErase();

    // So much time has passed.
    virtual void passTime(std::uint64_t microseconds);

    // The supply is cut and comes back, as when the cartridge is taken out and put in again: chips
    // and mappers start afresh, what a chip was at work on is cut off. Saves stay.
    virtual void powerCycle();

    // --- what a user keeps ---

    // The ROM as it is now (flash cartridges change theirs); empty without a cartridge.
    virtual ByteVector romImage() const;
    // The save memory as it is now; empty if the cartridge has none.
    virtual ByteVector saveImage() const;
    // Replaces the save memory. Returns: false if the size is not the chip's.
    virtual bool loadSave(const ByteVector &image);
    // Number of save bytes changed through the buses so far; tells whether a save must be kept.
    virtual std::uint64_t saveChanges() const;
};

// An empty slot: every bus reads as ones.
class NoCartridge : public Cartridge
{
public:
    std::uint16_t gbaRead(std::uint32_t address) override;
};

} // namespace virtual_reader
