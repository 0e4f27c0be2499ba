// Where cartridges with a clock get the time from. Whoever builds the cartridge passes it in, so
// that nothing depends on the hour at which it runs.
#pragma once

#include <cstdint>
#include <functional>
#include <utility>

namespace virtual_reader
{

// Returns: seconds since a moment of its own choice; must never step back. An empty one stands
// still.
using ClockSource = std::function<std::uint64_t()>;

// Measures what passed between two looks at a source.
class ElapsedTime
{
public:
    explicit ElapsedTime(ClockSource source) : m_source(std::move(source)) { take(); }

    // Returns: seconds since the last call or since construction.
    std::uint64_t take()
    {
        const std::uint64_t now = m_source ? m_source() : 0;
        const std::uint64_t passed = now - m_last;
        m_last = now;
        return passed;
    }

private:
    ClockSource m_source;
    std::uint64_t m_last = 0;
};

} // namespace virtual_reader
