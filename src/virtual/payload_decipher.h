// The reader's side of the payload cipher: Blowfish with an 8-byte key, deciphering only.
//
// A block of 8 bytes is two 32-bit halves, each with its least significant byte first.
#pragma once

#include "virtual/bytes.h"

#include <array>
#include <cstdint>

namespace virtual_reader
{

constexpr std::size_t kCipherKeySize = 8;
constexpr std::size_t kCipherBlockSize = 8;

using CipherKey = std::array<std::uint8_t, kCipherKeySize>;

class PayloadDecipher
{
public:
    explicit PayloadDecipher(const CipherKey &key);

    // Deciphers the 8 bytes at `block` in place.
    void decipher(std::uint8_t *block) const;

private:
    static constexpr std::size_t kRounds = 16;
    static constexpr std::size_t kSubkeys = kRounds + 2;
    static constexpr std::size_t kBoxes = 4;
    static constexpr std::size_t kBoxSize = 256;

    std::uint32_t mix(std::uint32_t half) const;
    // One block, the subkeys taken in rising (encipher) or falling (decipher) order.
    void transform(std::uint32_t *left, std::uint32_t *right, bool falling) const;

    // All the words in the order in which the key schedule replaces them: subkeys, then boxes.
    std::array<std::uint32_t, kSubkeys + kBoxes * kBoxSize> m_words{};
};

} // namespace virtual_reader
