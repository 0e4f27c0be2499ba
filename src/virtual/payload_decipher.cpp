#include "virtual/payload_decipher.h"

#include "constants/pi_words.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace virtual_reader
{

PayloadDecipher::PayloadDecipher(const CipherKey &key)
{
    static_assert(kPiWordCount == kSubkeys + kBoxes * kBoxSize);
    std::copy(std::begin(kPiWords), std::end(kPiWords), m_words.begin());

    for (std::size_t i = 0; i < kSubkeys * 4; ++i) {
        const std::uint32_t keyByte = key[i % kCipherKeySize];
        m_words[i / 4] ^= keyByte << (24 - 8 * (i % 4));
    }
    std::uint32_t left = 0;
    std::uint32_t right = 0;
    for (std::size_t i = 0; i < m_words.size(); i += 2) {
        transform(&left, &right, false);
        m_words[i] = left;
        m_words[i + 1] = right;
    }
}

std::uint32_t PayloadDecipher::mix(std::uint32_t half) const
{
    const std::uint32_t *box = m_words.data() + kSubkeys;
    std::uint32_t result = box[half >> 24] + box[kBoxSize + (half >> 16 & 0xFF)];
    result ^= box[2 * kBoxSize + (half >> 8 & 0xFF)];
    return result + box[3 * kBoxSize + (half & 0xFF)];
}

void PayloadDecipher::transform(std::uint32_t *left, std::uint32_t *right, bool falling) const
{
    const auto subkey = [&](std::size_t i) { return m_words[falling ? kSubkeys - 1 - i : i]; };
    for (std::size_t round = 0; round < kRounds; ++round) {
        *left ^= subkey(round);
        *right ^= mix(*left);
        std::swap(*left, *right);
    }
    std::swap(*left, *right);
    *right ^= subkey(kRounds);
    *left ^= subkey(kRounds + 1);
}

void PayloadDecipher::decipher(std::uint8_t *block) const
{
    std::uint32_t left = littleEndian(block, 4);
    std::uint32_t right = littleEndian(block + 4, 4);
    transform(&left, &right, true);
    putLittleEndian(block, left, 4);
    putLittleEndian(block + 4, right, 4);
}

} // namespace virtual_reader
