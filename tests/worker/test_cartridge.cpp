#include "test_cartridge.h"

#include <algorithm>

using namespace virtual_reader;

std::uint8_t TestCartridge::gbByte(std::uint32_t address)
{
    return static_cast<std::uint8_t>(address * 7 + (address >> 8) + 3);
}

std::uint16_t TestCartridge::gbaHalfword(std::uint32_t address)
{
    return static_cast<std::uint16_t>(address * 31 + (address >> 16) + 5);
}

QByteArray TestCartridge::gbBytes(std::uint32_t address, int length)
{
    QByteArray bytes;
    for (int i = 0; i < length; ++i)
        bytes.append(static_cast<char>(gbByte(address + static_cast<std::uint32_t>(i))));
    return bytes;
}

QByteArray TestCartridge::gbaBytes(std::uint32_t address, int length)
{
    QByteArray bytes;
    for (int i = 0; i < length; ++i) {
        const std::uint16_t halfword = gbaHalfword(address + static_cast<std::uint32_t>(i / 2));
        bytes.append(static_cast<char>(halfword >> (8 * (i % 2))));
    }
    return bytes;
}

std::uint8_t TestCartridge::gbRead(std::uint16_t address)
{
    if (address != 0 || looksUntilErased < 0)
        return gbByte(address);
    if (looksUntilErased == 0)
        return 0xFF;
    --looksUntilErased;
    return 0x00;
}

// Programming is three unlock writes and the data, as AMD-style chips want it.
void TestCartridge::gbWrite(std::uint16_t address, std::uint8_t value)
{
    constexpr std::uint8_t kUnlock[] = {0xAA, 0x55, 0xA0};
    written.append(static_cast<char>(value));
    if (m_unlocked == 3) {
        programmed.append(static_cast<char>(value));
        m_unlocked = 0;
    } else {
        const bool unlocks = value == kUnlock[m_unlocked] && address <= 0xAAA;
        m_unlocked = unlocks ? m_unlocked + 1 : 0;
    }
}

bool TestCartridge::gbaSaveRead(SaveKind /*kind*/, std::uint32_t address, std::uint8_t *destination,
                                std::uint32_t length)
{
    const QByteArray bytes = save.mid(static_cast<int>(address), static_cast<int>(length));
    std::copy(bytes.begin(), bytes.end(), destination);
    return true;
}

bool TestCartridge::gbaSaveWrite(SaveKind /*kind*/, std::uint32_t address,
                                 const std::uint8_t *source, std::uint32_t length)
{
    const int count = static_cast<int>(length);
    save.replace(static_cast<int>(address), count,
                 QByteArray(reinterpret_cast<const char *>(source), count));
    return true;
}

bool TestCartridge::gbaSaveErase()
{
    save.fill('\xFF');
    return true;
}
