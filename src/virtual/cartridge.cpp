#include "virtual/cartridge.h"

namespace virtual_reader
{

std::uint8_t Cartridge::gbRead(std::uint16_t)
{
    return 0xFF;
}

void Cartridge::gbWrite(std::uint16_t, std::uint8_t) {}

std::uint16_t Cartridge::gbaRead(std::uint32_t address)
{
    return static_cast<std::uint16_t>(address);
}

void Cartridge::gbaWrite(std::uint32_t, std::uint16_t) {}

bool Cartridge::gbaSaveRead(SaveKind, std::uint32_t, std::uint8_t *, std::uint32_t)
{
    return false;
}

bool Cartridge::gbaSaveWrite(SaveKind, std::uint32_t, const std::uint8_t *, std::uint32_t)
{
    return false;
}

bool Cartridge::gbaSaveErase()
{
    return false;
}

void Cartridge::passTime(std::uint64_t) {}

void Cartridge::powerCycle() {}

ByteVector Cartridge::romImage() const
{
    return {};
}

ByteVector Cartridge::saveImage() const
{
    return {};
}

bool Cartridge::loadSave(const ByteVector &)
{
    return false;
}

std::uint64_t Cartridge::saveChanges() const
{
    return 0;
}

std::uint16_t NoCartridge::gbaRead(std::uint32_t)
{
    return 0xFFFF;
}

} // namespace virtual_reader
