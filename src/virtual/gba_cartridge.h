// Game Boy Advance cartridges: a ROM of any size and perhaps a save chip.
//
// The ROM space has 24 halfword address lines, 32 MiB. Behind the end of the ROM nothing drives the
// bus, whose data lines are the low address lines: the low 16 bits of the halfword address come
// back, counting up. Writes to the ROM space have no effect.
// Source: GBATEK, "GBA Cartridge ROM".
#pragma once

#include "virtual/cartridge.h"
#include "virtual/gba_save_chips.h"

#include <memory>

namespace virtual_reader
{

class GbaCartridge : public Cartridge
{
public:
    // `rom`: a whole number of halfwords. `saveChip`: null for none.
    explicit GbaCartridge(ByteVector rom, std::unique_ptr<GbaSaveChip> saveChip = nullptr);

    std::uint16_t gbaRead(std::uint32_t address) override;
    bool gbaSaveRead(SaveKind kind, std::uint32_t address, std::uint8_t *destination,
                     std::uint32_t length) override;
    bool gbaSaveWrite(SaveKind kind, std::uint32_t address, const std::uint8_t *source,
                      std::uint32_t length) override;
    bool gbaSaveErase() override;
    ByteVector romImage() const override { return m_rom; }
    ByteVector saveImage() const override;
    bool loadSave(const ByteVector &image) override;
    std::uint64_t saveChanges() const override;
    void passTime(std::uint64_t microseconds) override;
    void powerCycle() override;

private:
    ByteVector m_rom;
    std::unique_ptr<GbaSaveChip> m_saveChip;
};

} // namespace virtual_reader
