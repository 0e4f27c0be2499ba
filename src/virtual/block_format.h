// The command block as the reader receives it: sync byte, class, opcode, body, checksum.
//
// Nothing here is shared with the program that builds blocks; a mistake made on one side must show
// up on the other. docs/reader-protocol.md has the layout with a worked example.
#pragma once

#include "virtual/bytes.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace virtual_reader
{

constexpr std::size_t kReaderBlockSize = 512;
constexpr std::size_t kChecksumOffset = 510; // high byte first
constexpr std::uint8_t kBlockSync = 0x5A;

constexpr std::uint8_t kClassGb = 2;
constexpr std::uint8_t kClassGba = 3;
constexpr std::uint8_t kClassReader = 0xF0;

// What the reader can be told to do.
enum class ReaderCommand {
    StartGbBus,
    GbRamWrite,
    GbBusWrite,
    GbProgram8,
    GbProgram16,
    StartGbaBus,
    GbaSetReadAddress,
    GbaSaveErase,
    GbaSaveRead,
    GbaSaveWrite,
    GbaBusWrite,
    SelectGbBus,
    SelectGbaBus,
    QueryInfo
};

// The save memories of GBA cartridges; every one has read and write commands of its own.
enum class SaveKind { None, Sram, Flash64k, Flash128k, Eeprom512, Eeprom8k };

// Where a command keeps its fields. Offsets count from the start of the block; a width of 0 means
// that the command has no such field. Fields are little-endian.
struct CommandShape {
    std::uint8_t commandClass;
    std::uint8_t opcode;
    ReaderCommand command;
    SaveKind saveKind;
    const char *name; // for the log
    std::uint8_t addressOffset;
    std::uint8_t addressWidth;
    std::uint8_t lengthOffset; // 16 bit; 0: `maximum` bytes, always
    std::uint8_t dataOffset;   // payload, or the value of a bus write
    std::uint16_t maximum;     // largest length; for reads, what the reply area holds
};

// Returns: the row of the command table; null for a pair that the reader does not know.
const CommandShape *findCommandShape(std::uint8_t commandClass, std::uint8_t opcode);

// One received block. Invalid blocks carry the reason in `refusal`, and `shape` may be null.
struct DecodedBlock {
    std::uint8_t commandClass = 0;
    std::uint8_t opcode = 0;
    const CommandShape *shape = nullptr;
    std::uint32_t address = 0;
    std::uint32_t length = 0;           // bytes of payload, or bytes asked for
    const std::uint8_t *data = nullptr; // payload within the block; not owned
    std::string refusal;                // empty: the block is well-formed
};

// CRC-16 (polynomial 0x1021, start 0, not reflected) of `size` bytes, worked out bit by bit.
std::uint16_t blockChecksum(const std::uint8_t *bytes, std::size_t size);

// Checks one block (`size` below kReaderBlockSize: a file that ends within a block) and takes its
// fields apart. `bytes` must outlive the result.
DecodedBlock decodeBlock(const std::uint8_t *bytes, std::size_t size);

} // namespace virtual_reader
