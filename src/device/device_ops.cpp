#include "device/device_ops.h"

#include "device/device_commands.h"
#include "device/device_link.h"

DeviceOps deviceOps;

namespace
{

constexpr std::uint8_t kReaderToGb = 2;
constexpr std::uint8_t kReaderToGba = 3;
constexpr std::uint8_t kBusStart = 1;

struct SavePair {
    DeviceOperation read;
    DeviceOperation write;
};

// By save type: SRAM, FLASH 64 KiB, FLASH 128 KiB, EEPROM 512 bytes, EEPROM 8 KiB.
constexpr SavePair kSavePairs[] = {
    {gbaSramRead, gbaSramWrite},           {gbaFlash64kRead, gbaFlash64kWrite},
    {gbaFlash128kRead, gbaFlash128kWrite}, {gbaEeprom512Read, gbaEeprom512Write},
    {gbaEeprom8kRead, gbaEeprom8kWrite},
};
constexpr std::uint32_t kSavePairCount = sizeof(kSavePairs) / sizeof(kSavePairs[0]);

std::uint32_t doNothing(std::uint32_t /*first*/, void * /*buffer*/, std::uint32_t /*length*/)
{
    return 0;
}

} // namespace

std::uint32_t selectGbMode()
{
    sendEmptyCommand(kClassReader, kReaderToGb);
    deviceOps.gbRead = gbReadRom;
    deviceOps.gbWrite = gbWriteBytes;
    deviceOps.gbSaveWrite = gbRamWrite;
    selectGbFlashOpcode(0);
    return sendEmptyCommand(kClassGb, kBusStart);
}

std::uint32_t selectGbaMode()
{
    sendEmptyCommand(kClassReader, kReaderToGba);
    deviceOps.gbaRead = gbaReadRom;
    deviceOps.gbaWrite = gbaWriteHalfwords;
    selectGbaSaveType(0);
    bindSpareNoop(1);
    return sendEmptyCommand(kClassGba, kBusStart);
}

std::uint32_t selectGbFlashOpcode(std::uint32_t flag)
{
    deviceOps.gbRomWrite = flag == 0 ? gbFlashWrite : gbFlashWriteAlt;
    return 0;
}

std::uint32_t selectGbaSaveType(std::uint32_t type)
{
    if (type < kSavePairCount) {
        deviceOps.saveRead = kSavePairs[type].read;
        deviceOps.saveWrite = kSavePairs[type].write;
    }
    return 0;
}

std::uint32_t bindSpareNoop(std::uint32_t flag)
{
    if (flag != 0)
        deviceOps.spare = doNothing;
    return 0;
}

std::uint32_t gbReadRom(std::uint32_t address, void *destination, std::uint32_t length)
{
    return readDumpFile(address, destination, length);
}

std::uint32_t gbaReadRom(std::uint32_t address, void *destination, std::uint32_t length)
{
    gbaSetReadAddress(address);
    return readDumpFile(0, destination, length);
}
