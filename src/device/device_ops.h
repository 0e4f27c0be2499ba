// The cartridge access table: nine slots through which natives, report and flash probe reach the
// device commands without knowing which cartridge kind is inserted. Selecting a bus mode, a flash
// opcode or a save type only rebinds slots.
//
// Thread: process-wide and unlocked, like the device link.
#pragma once

#include <cstdint>

// (first argument, buffer, length or count) -> count. What each means is the bound command's
// business, see device_commands.h.
using DeviceOperation = std::uint32_t (*)(std::uint32_t first, void *buffer, std::uint32_t length);
// Pairwise bus writes take addresses instead of a single first argument.
using DevicePairOperation = std::uint32_t (*)(const std::uint32_t *addresses,
                                              const std::uint32_t *values, std::uint32_t count);

// All slots are null until a mode is selected; calling one before that is a null call.
struct DeviceOps {
    DeviceOperation gbRead = nullptr;
    DevicePairOperation gbWrite = nullptr;
    DeviceOperation gbRomWrite = nullptr;
    DeviceOperation gbSaveWrite = nullptr;
    DeviceOperation gbaRead = nullptr;
    DevicePairOperation gbaWrite = nullptr;
    DeviceOperation saveRead = nullptr;
    DeviceOperation saveWrite = nullptr;
    DeviceOperation spare = nullptr;
};

extern DeviceOps deviceOps;

// Puts the reader on the GB or the GBA bus and binds that bus's slots; the other bus's slots stay.
// GB always starts with flash opcode 14, GBA with the SRAM save commands.
// Returns: count of the second block's write; 0 if the command file could not be written.
std::uint32_t selectGbMode();
std::uint32_t selectGbaMode();

// Binds gbRomWrite: flag 0 to opcode 14, any other value to opcode 15. Returns: 0.
std::uint32_t selectGbFlashOpcode(std::uint32_t flag);

// Binds saveRead and saveWrite: 0 SRAM, 1 FLASH 64 KiB, 2 FLASH 128 KiB, 3 EEPROM 512 bytes,
// 4 EEPROM 8 KiB; any other type changes nothing. Returns: 0.
std::uint32_t selectGbaSaveType(std::uint32_t type);

// Binds spare to an operation that does nothing and returns 0, if `flag` is not 0. Returns: 0.
std::uint32_t bindSpareNoop(std::uint32_t flag);

// Reads `length` bytes at GB bus address `address`; DUMP.ROM mirrors the bus, no command is sent.
// Returns: bytes read; 0xFFFFFFFF if the file cannot be read.
std::uint32_t gbReadRom(std::uint32_t address, void *destination, std::uint32_t length);

// Sets the GBA read address, then reads `length` bytes from the start of DUMP.ROM. Result as above.
std::uint32_t gbaReadRom(std::uint32_t address, void *destination, std::uint32_t length);
