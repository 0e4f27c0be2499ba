// Checksums of the reader's protocol: the CRC-16 that seals a command block and a CRC-32 for data.
// Pure functions; any thread.
#pragma once

#include <cstdint>

// CRC-16/XMODEM: polynomial 0x1021, initial value 0, no reflection, no final XOR. Chains: pass the
// result of the bytes so far as `crc`.
std::uint16_t crc16Update(std::uint16_t crc, const std::uint8_t *bytes, std::uint32_t length);

// CRC-16 of a frame that ends in its own two checksum bytes: covers the first length - 2 bytes.
// Returns 0, without reading, for a length of 2 or less.
std::uint16_t crc16Frame(const std::uint8_t *bytes, std::uint32_t length);

// The usual reflected CRC-32 (polynomial 0xEDB88320). The running value is inverted on entry and on
// exit, so calls chain from 0; a length of 0 returns `crc` unchanged.
std::uint32_t crc32Update(std::uint32_t crc, const std::uint8_t *bytes, std::uint32_t length);

// CRC-32 of `length` bytes; 0 for a length of 0.
std::uint32_t crc32(const std::uint8_t *bytes, std::uint32_t length);
