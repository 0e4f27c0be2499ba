// Machin's formula in fixed point: pi = 16 arctan(1/5) - 4 arctan(1/239).
#include "pi_fraction.h"

#include <algorithm>

namespace
{

// Word 0 is the integer part, the others are the fraction, most significant first.
using FixedPoint = std::vector<std::uint32_t>;

// Every division cuts off less than one unit of the last word; some ten thousand of them stay far
// inside two words.
constexpr std::size_t kGuardWords = 2;

void divide(FixedPoint *number, std::uint32_t divisor)
{
    std::uint64_t remainder = 0;
    for (std::uint32_t &word : *number) {
        const std::uint64_t dividend = remainder << 32 | word;
        word = static_cast<std::uint32_t>(dividend / divisor);
        remainder = dividend % divisor;
    }
}

void add(FixedPoint *sum, const FixedPoint &term)
{
    std::uint64_t carry = 0;
    for (std::size_t i = sum->size(); i-- > 0;) {
        carry += std::uint64_t{(*sum)[i]} + term[i];
        (*sum)[i] = static_cast<std::uint32_t>(carry);
        carry >>= 32;
    }
}

void subtract(FixedPoint *difference, const FixedPoint &term)
{
    std::uint64_t borrow = 0;
    for (std::size_t i = difference->size(); i-- > 0;) {
        const std::uint64_t take = term[i] + borrow;
        borrow = (*difference)[i] < take ? 1 : 0;
        (*difference)[i] = static_cast<std::uint32_t>((*difference)[i] - take);
    }
}

// factor * arctan(1 / inverse), by its power series.
FixedPoint scaledArctan(std::uint32_t factor, std::uint32_t inverse, std::size_t words)
{
    FixedPoint power(words, 0);
    power[0] = factor;
    divide(&power, inverse);
    FixedPoint sum = power;
    for (std::uint32_t odd = 3;
         std::any_of(power.begin(), power.end(), [](std::uint32_t word) { return word != 0; });
         odd += 2) {
        divide(&power, inverse * inverse);
        FixedPoint term = power;
        divide(&term, odd);
        if (odd % 4 == 3)
            subtract(&sum, term);
        else
            add(&sum, term);
    }
    return sum;
}

} // namespace

std::vector<std::uint32_t> piFractionWords(std::size_t count)
{
    const std::size_t words = 1 + count + kGuardWords;
    FixedPoint pi = scaledArctan(16, 5, words);
    subtract(&pi, scaledArctan(4, 239, words));
    return {pi.begin() + 1, pi.begin() + 1 + static_cast<std::ptrdiff_t>(count)};
}
