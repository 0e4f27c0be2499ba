// Hexadecimal digits of pi, computed rather than copied.
#pragma once

#include <cstdint>
#include <vector>

// The first `count` 32-bit words of the fraction of pi, most significant word first.
std::vector<std::uint32_t> piFractionWords(std::size_t count);
