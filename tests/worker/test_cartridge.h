// A cartridge for both buses that shows where a byte came from and keeps what was written.
#pragma once

#include "virtual/cartridge.h"

#include <QByteArray>

class TestCartridge : public virtual_reader::Cartridge
{
public:
    // What the bus reads at `address`: different for neighbours and for banks.
    static std::uint8_t gbByte(std::uint32_t address);
    static std::uint16_t gbaHalfword(std::uint32_t address);
    static QByteArray gbBytes(std::uint32_t address, int length);
    static QByteArray gbaBytes(std::uint32_t address, int length); // address in halfwords

    std::uint8_t gbRead(std::uint16_t address) override;
    void gbWrite(std::uint16_t address, std::uint8_t value) override;
    std::uint16_t gbaRead(std::uint32_t address) override { return gbaHalfword(address); }
    bool gbaSaveRead(virtual_reader::SaveKind kind, std::uint32_t address,
                     std::uint8_t *destination, std::uint32_t length) override;
    bool gbaSaveWrite(virtual_reader::SaveKind kind, std::uint32_t address,
                      const std::uint8_t *source, std::uint32_t length) override;
    bool gbaSaveErase() override;

    // GB: address 0 reads 0xFF after this many other looks; -1: it reads as any other address.
    int looksUntilErased = -1;
    // GB: data bytes of bus writes, in order; of flash programming only the data itself.
    QByteArray written;
    QByteArray programmed;
    // GBA save memory of any kind, 128 KiB; the erase fills it with 0xFF.
    QByteArray save = QByteArray(0x20000, '\0');

private:
    int m_unlocked = 0; // steps of the programming sequence that have been seen
};
