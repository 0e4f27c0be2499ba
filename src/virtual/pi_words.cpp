#include "virtual/pi_words.h"

namespace virtual_reader
{

namespace
{

// A fixed-point number: word 0 is the integer part, every further word 32 bits of the fraction.
using FixedPoint = std::vector<std::uint32_t>;

// Divisions cut off below the last word. Two words of 32 bits beyond those asked for outweigh the
// some ten thousand roundings of both series.
constexpr std::size_t kGuardWords = 2;

// Divides the words from `first` on; the ones before are zero. Returns: index of the first word of
// the quotient that is not zero, or the size.
std::size_t divide(const FixedPoint &dividend, std::uint32_t divisor, std::size_t first,
                   FixedPoint *quotient)
{
    std::uint64_t remainder = 0;
    for (std::size_t i = first; i < dividend.size(); ++i) {
        const std::uint64_t part = (remainder << 32) | dividend[i];
        (*quotient)[i] = static_cast<std::uint32_t>(part / divisor);
        remainder = part % divisor;
    }
    while (first < quotient->size() && (*quotient)[first] == 0)
        ++first;
    return first;
}

// Adds or subtracts the words from `first` on and carries into the ones before.
void accumulate(FixedPoint *sum, const FixedPoint &term, std::size_t first, bool subtract)
{
    std::uint64_t carry = subtract ? 1 : 0;
    for (std::size_t i = sum->size(); i-- > 0;) {
        std::uint32_t word = i < first ? 0 : term[i];
        if (subtract)
            word = ~word;
        carry += static_cast<std::uint64_t>((*sum)[i]) + word;
        (*sum)[i] = static_cast<std::uint32_t>(carry);
        carry >>= 32;
        if (i < first && carry == (subtract ? 1U : 0U))
            return;
    }
}

// Adds factor * atan(1 / x), by the series of odd powers, to `sum`; with `negative` subtracts it.
void addArcTangent(FixedPoint *sum, std::uint32_t factor, std::uint32_t x, bool negative)
{
    FixedPoint power(sum->size(), 0);
    FixedPoint term(sum->size(), 0);
    power[0] = factor;
    std::size_t first = divide(power, x, 0, &power);
    for (std::uint32_t odd = 1; first < power.size(); odd += 2) {
        divide(power, odd, first, &term);
        accumulate(sum, term, first, negative != (odd % 4 == 3));
        first = divide(power, x * x, first, &power);
    }
}

} // namespace

std::vector<std::uint32_t> piFractionWords(std::size_t count)
{
    FixedPoint pi(1 + count + kGuardWords, 0);
    addArcTangent(&pi, 16, 5, false);
    addArcTangent(&pi, 4, 239, true);
    const auto begin = pi.begin() + 1;
    return {begin, begin + static_cast<std::ptrdiff_t>(count)};
}

} // namespace virtual_reader
