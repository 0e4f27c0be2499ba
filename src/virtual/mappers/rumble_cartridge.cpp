#include "virtual/mappers/rumble_cartridge.h"

namespace virtual_reader
{

void RumbleCartridge::writeRegister(std::uint16_t address, std::uint8_t value)
{
    const bool ranBefore = motorRuns();
    Mbc5Cartridge::writeRegister(address, value);
    if (motorRuns() && !ranBefore)
        ++m_motorStarts;
}

} // namespace virtual_reader
