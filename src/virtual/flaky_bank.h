// A bank of ROM behind a bad contact: it is read right the first time and wrong the next, by turns,
// as dirty pins do to a dump that looks good.
#pragma once

#include "virtual/bytes.h"

#include <cstdint>

namespace virtual_reader
{

class FlakyBank
{
public:
    // `bank`: counted from 0, of 16 KiB.
    explicit FlakyBank(std::uint32_t bank) : m_bank(bank) {}

    // What the bus shows of `value`, which stands at `offset` of the ROM. A pass begins with the
    // bank's first byte; in every second one a bit of one byte is turned over.
    std::uint8_t seen(std::uint32_t offset, std::uint8_t value)
    {
        if (offset / kBankBytes != m_bank)
            return value;
        const std::uint32_t place = offset % kBankBytes;
        if (place == 0)
            ++m_passes;
        return place == kWeakByte && isWrongPass() ? value ^ std::uint8_t{1} : value;
    }

private:
    static constexpr std::uint32_t kBankBytes = 16 * 1024;
    static constexpr std::uint32_t kWeakByte = 0x2345; // none that a header has

    bool isWrongPass() const { return m_passes != 0 && m_passes % 2 == 0; }

    std::uint32_t m_bank;
    unsigned m_passes = 0;
};

} // namespace virtual_reader
