#include "host_side.h"

#include "device/device_commands.h"
#include "device/device_link.h"
#include "device/device_ops.h"
#include "device/payload_cipher.h"

bool connectHost(DriveBackend &drive)
{
    setDriveBackend(&drive);
    return findDevice(0, nullptr) != 0;
}

void hostSelectSave(std::uint32_t type)
{
    selectGbaMode();
    selectGbaSaveType(type);
}

HostBytes hostReadSave(std::uint32_t size)
{
    HostBytes save(size);
    deviceOps.saveRead(0, save.data(), size);
    return save;
}

void hostWriteSave(HostBytes save)
{
    deviceOps.saveWrite(0, save.data(), static_cast<std::uint32_t>(save.size()));
}

void hostEraseSave()
{
    gbaSaveErase();
}

std::uint8_t hostPollSave()
{
    std::uint8_t bytes[10] = {};
    gbaSramRead(0, bytes, sizeof bytes);
    return bytes[0];
}

void hostSelectFlash(std::uint32_t opcode)
{
    selectGbMode();
    selectGbFlashOpcode(opcode == 14 ? 0 : 1);
    std::uint8_t info[16] = {};
    queryDeviceInfo(info, sizeof info);
    cipherSetKey8(info);
}

void hostUseZeroKey()
{
    const std::uint8_t key[8] = {};
    cipherSetKey8(key);
}

void hostWriteBus(std::uint32_t address, std::uint32_t value)
{
    deviceOps.gbWrite(&address, &value, 1);
}

void hostProgram(std::uint32_t address, HostBytes bytes)
{
    deviceOps.gbRomWrite(address, bytes.data(), static_cast<std::uint32_t>(bytes.size()));
}

HostBytes hostReadBus(std::uint32_t address, std::uint32_t length)
{
    HostBytes bytes(length);
    deviceOps.gbRead(address, bytes.data(), length);
    return bytes;
}
