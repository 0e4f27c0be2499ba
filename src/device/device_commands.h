// Every command that the host sends to the reader. A builder fills command blocks, writes them to
// the command file in one go and, for reading commands, fetches the answer from a device file.
//
// The natives and the report reach most builders through DeviceOps, never by name. Builders have
// the shape (first argument, buffer, length): what the arguments mean is said at each one. A buffer
// belongs to the caller and holds `length` bytes.
//
// Results: where nothing else is said, what sendCommands() returned: bytes written to the command
// file, 0 if it could not be created, 0xFFFFFFFF if writing failed. There is no acknowledgement: a
// command counts as done once it is written.
// Units: addresses are copied into the command unchanged; see docs/reader-protocol.md for what the
// reader takes them for.
// Thread: whoever runs the job.
#pragma once

#include <cstdint>

// Command classes and the opcodes that no builder of this header covers.
constexpr std::uint8_t kClassGb = 2;
constexpr std::uint8_t kClassGba = 3;
constexpr std::uint8_t kClassReader = 0xF0;

// Writes one block with an empty body.
std::uint32_t sendEmptyCommand(std::uint8_t commandClass, std::uint8_t opcode);

// --- GB bus --------------------------------------------------------------------------------------

// One bus write per pair of address (low 16 bits) and value (low 8 bits), all in one run.
std::uint32_t gbWriteBytes(const std::uint32_t *addresses, const std::uint32_t *values,
                           std::uint32_t count);

// Writes save memory from bus address `address`, 480 bytes a block.
std::uint32_t gbRamWrite(std::uint32_t address, void *source, std::uint32_t length);

// Program flash from bus address `address`, 480 bytes a block, the first 8 bytes of each block
// enciphered. While the call runs those bytes of `source` are changed; afterwards `source` is as it
// was. When the last block carries fewer than 8 bytes, up to 7 bytes behind `source` are touched
// and restored as well: the caller's buffer must extend that far.
std::uint32_t gbFlashWrite(std::uint32_t address, void *source, std::uint32_t length);    // 14
std::uint32_t gbFlashWriteAlt(std::uint32_t address, void *source, std::uint32_t length); // 15

// --- GBA bus -------------------------------------------------------------------------------------

// As gbWriteBytes(), with 32-bit addresses and 16-bit values.
std::uint32_t gbaWriteHalfwords(const std::uint32_t *addresses, const std::uint32_t *values,
                                std::uint32_t count);

// Sets where the next read of DUMP.ROM begins (low 24 bits of `address`).
std::uint32_t gbaSetReadAddress(std::uint32_t address);

// Starts the erase of a FLASH save chip; returns as soon as the command is written.
std::uint32_t gbaSaveErase();

// Read save memory, one command and one reply for every 4096 bytes.
// Returns: length, whatever the reads returned; 0 for a length of 0.
std::uint32_t gbaSramRead(std::uint32_t address, void *destination, std::uint32_t length);
std::uint32_t gbaFlash64kRead(std::uint32_t address, void *destination, std::uint32_t length);
std::uint32_t gbaFlash128kRead(std::uint32_t address, void *destination, std::uint32_t length);

// Write save memory, 256 bytes a block, all in one run.
std::uint32_t gbaSramWrite(std::uint32_t address, void *source, std::uint32_t length);
std::uint32_t gbaFlash64kWrite(std::uint32_t address, void *source, std::uint32_t length);
std::uint32_t gbaFlash128kWrite(std::uint32_t address, void *source, std::uint32_t length);

// Read EEPROM with one command for the whole length.
// Returns: bytes read; 0xFFFFFFFF if the reply file cannot be read.
std::uint32_t gbaEeprom512Read(std::uint32_t address, void *destination, std::uint32_t length);
std::uint32_t gbaEeprom8kRead(std::uint32_t address, void *destination, std::uint32_t length);

// Writes the first 512 bytes of `source`, whatever `length` says; `address` is not used.
// Returns: result of the second half's write; 0 if length < 512.
std::uint32_t gbaEeprom512Write(std::uint32_t address, void *source, std::uint32_t length);

// Writes 512 bytes of an 8 KiB EEPROM as two commands of 256 bytes.
// Returns: result of the second half's write.
std::uint32_t gbaEepromWriteBlock(std::uint32_t address, const void *source);

// Writes an 8 KiB EEPROM in pieces of 512 bytes. A last piece that is shorter still sends 512
// bytes: `source` must hold `length` rounded up to 512.
// Returns: length; 0 if length < 512.
std::uint32_t gbaEeprom8kWrite(std::uint32_t address, void *source, std::uint32_t length);

// --- reader --------------------------------------------------------------------------------------

// Asks the reader for its information block; the first 8 bytes are the session's cipher key.
// Returns: 1 if the reply read returned non-zero; 0 otherwise or if the command was not written.
std::uint32_t queryDeviceInfo(void *destination, std::uint32_t length);
