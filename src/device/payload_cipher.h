// The payload cipher: Blowfish over the first 8 payload bytes of every flash chunk, under a key
// that the reader hands out at the start of the flash job.
//
// On the wire an 8-byte block is two little-endian 32-bit halves, unlike the big-endian halves of
// the published test vectors. The key schedule takes the key bytes big-endian, as published.
//
// Thread: one process-wide state, no lock; used by the flash job's thread alone.
#pragma once

#include <cstdint>

constexpr int kBlowfishRounds = 16;
constexpr int kBlowfishSubkeys = kBlowfishRounds + 2;
constexpr int kBlowfishBoxes = 4;
constexpr int kBlowfishBoxSize = 256;
constexpr std::uint32_t kCipherBlockSize = 8;

// Unkeyed it holds the words of pi, subkeys first, then the boxes.
struct CipherState {
    std::uint32_t subkeys[kBlowfishSubkeys];
    std::uint32_t boxes[kBlowfishBoxes][kBlowfishBoxSize];
};

// One block operation on two 32-bit halves, changed in place.
void blowfishEncryptBlock(const CipherState &state, std::uint32_t *left, std::uint32_t *right);
void blowfishDecryptBlock(const CipherState &state, std::uint32_t *left, std::uint32_t *right);

// Keys the process-wide state with `length` bytes (1 or more; a length of 0 is ignored).
void cipherSetKey(const std::uint8_t *key, std::uint32_t length);
// The same with 8 bytes, the length that the reader hands out.
void cipherSetKey8(const std::uint8_t *key);

// Transforms `length` bytes in place, 8 at a time. A length that is no multiple of 8 transforms the
// whole last group, so up to 7 bytes beyond the length must be the caller's own.
void cipherEncipher(std::uint8_t *bytes, std::uint32_t length);
void cipherDecipher(std::uint8_t *bytes, std::uint32_t length);
