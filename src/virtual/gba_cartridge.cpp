#include "virtual/gba_cartridge.h"

#include <utility>

namespace virtual_reader
{

GbaCartridge::GbaCartridge(ByteVector rom, std::unique_ptr<GbaSaveChip> saveChip)
    : m_rom(std::move(rom)), m_saveChip(std::move(saveChip))
{
}

std::uint16_t GbaCartridge::gbaRead(std::uint32_t address)
{
    const std::size_t offset = std::size_t{address} * 2;
    if (offset >= m_rom.size())
        return Cartridge::gbaRead(address);
    return static_cast<std::uint16_t>(littleEndian(m_rom.data() + offset, 2));
}

bool GbaCartridge::gbaSaveRead(SaveKind kind, std::uint32_t address, std::uint8_t *destination,
                               std::uint32_t length)
{
    return m_saveChip != nullptr && m_saveChip->read(kind, address, destination, length);
}

bool GbaCartridge::gbaSaveWrite(SaveKind kind, std::uint32_t address, const std::uint8_t *source,
                                std::uint32_t length)
{
    return m_saveChip != nullptr && m_saveChip->write(kind, address, source, length);
}

bool GbaCartridge::gbaSaveErase()
{
    return m_saveChip != nullptr && m_saveChip->erase();
}

ByteVector GbaCartridge::saveImage() const
{
    return m_saveChip == nullptr ? ByteVector() : m_saveChip->contents();
}

bool GbaCartridge::loadSave(const ByteVector &image)
{
    return m_saveChip != nullptr && m_saveChip->load(image);
}

std::uint64_t GbaCartridge::saveChanges() const
{
    return m_saveChip == nullptr ? 0 : m_saveChip->changes();
}

void GbaCartridge::passTime(std::uint64_t microseconds)
{
    if (m_saveChip != nullptr)
        m_saveChip->passTime(microseconds);
}

void GbaCartridge::powerCycle()
{
    if (m_saveChip != nullptr)
        m_saveChip->powerCycle();
}

} // namespace virtual_reader
