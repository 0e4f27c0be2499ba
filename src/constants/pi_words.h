// The hexadecimal digits of the fraction of pi, eight to a word, in order: what a Blowfish state
// holds before it is keyed.
// Source: B. Schneier, "Description of a New Variable-Length Key, 64-Bit Block Cipher (Blowfish)",
// 1993.
#pragma once

#include <cstddef>
#include <cstdint>

constexpr std::size_t kPiWordCount = 1042; // 18 subkeys and four boxes of 256
extern const std::uint32_t kPiWords[kPiWordCount];
