// The command block: 512 bytes, the unit in which every request travels to the reader. A request is
// a run of blocks written to the command file in one go; each block carries its own checksum.
// docs/reader-protocol.md describes the format with a worked example.
#pragma once

#include <cstdint>

constexpr std::uint32_t kBlockSize = 512;
constexpr std::uint8_t kSyncByte = 0x5A; // 'Z'

// Byte offsets common to all blocks. Fields in the body are little-endian, the checksum is
// big-endian.
constexpr std::uint32_t kSyncOffset = 0;
constexpr std::uint32_t kClassOffset = 1;
constexpr std::uint32_t kOpcodeOffset = 2;
constexpr std::uint32_t kCrcHighOffset = 510; // over bytes 0..509
constexpr std::uint32_t kCrcLowOffset = 511;

// Stamps sync byte and checksum into every block of the run (`length` bytes, a multiple of 512;
// the blocks are changed) and writes the run to the command file. A length of 0 leaves an empty
// command file.
// Returns: bytes written; 0 if the command file cannot be created; 0xFFFFFFFF if writing failed.
// Thread: whoever runs the job.
std::uint32_t sendCommands(std::uint8_t *blocks, std::uint32_t length);
