// The fraction of pi in binary: what a Blowfish state holds before it is keyed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace virtual_reader
{

// The first `count` 32-bit words of the fraction of pi, most significant first: 0x243F6A88, ...
// Worked out from Machin's formula, pi = 16 atan(1/5) - 4 atan(1/239); 1042 words take some tens of
// milliseconds.
std::vector<std::uint32_t> piFractionWords(std::size_t count);

} // namespace virtual_reader
