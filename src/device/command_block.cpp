#include "device/command_block.h"

#include "device/checksums.h"
#include "device/device_link.h"

namespace
{

void stampBlock(std::uint8_t *block)
{
    block[kSyncOffset] = kSyncByte;
    const std::uint16_t crc = crc16Frame(block, kBlockSize);
    block[kCrcHighOffset] = static_cast<std::uint8_t>(crc >> 8);
    block[kCrcLowOffset] = static_cast<std::uint8_t>(crc & 0xFF);
}

} // namespace

std::uint32_t sendCommands(std::uint8_t *blocks, std::uint32_t length)
{
    for (std::uint32_t offset = 0; offset < length; offset += kBlockSize)
        stampBlock(blocks + offset);
    return writeCommandFile(blocks, length);
}
