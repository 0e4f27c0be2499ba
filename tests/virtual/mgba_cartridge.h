// A cartridge of an emulator library, mGBA's, on the bus of the virtual reader: a second opinion on
// what mappers do, written by others. The library picks the mapper from the image's header.
//
// Only the cartridge's share of the bus goes to the library, 0000-7FFF and A000-BFFF; the rest of
// its memory map belongs to the console. Nothing of the console runs.
#pragma once

#include "virtual/cartridge.h"

#include <memory>
#include <string>

class MgbaCartridge : public virtual_reader::Cartridge
{
public:
    // Takes over the image. Returns: null with the reason in `*error` if the library refuses it.
    static std::unique_ptr<MgbaCartridge> create(virtual_reader::ByteVector image,
                                                 std::string *error);
    ~MgbaCartridge() override;

    std::uint8_t gbRead(std::uint16_t address) override;
    void gbWrite(std::uint16_t address, std::uint8_t value) override;
    void powerCycle() override;
    virtual_reader::ByteVector romImage() const override;
    // The library's save memory as it keeps it in a file, without a clock.
    virtual_reader::ByteVector saveImage() const override;
    bool loadSave(const virtual_reader::ByteVector &image) override;
    // Counts every write to A000-BFFF, as the library does not tell which one changed something.
    std::uint64_t saveChanges() const override { return m_upperWrites; }

    // Sets what clocks run on; they stand still in between.
    void setTime(std::int64_t seconds);

private:
    struct Core;

    explicit MgbaCartridge(std::unique_ptr<Core> core);

    std::unique_ptr<Core> m_core;
    std::uint64_t m_upperWrites = 0;
};
