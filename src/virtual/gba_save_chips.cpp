#include "virtual/gba_save_chips.h"

#include <algorithm>

namespace virtual_reader
{

namespace
{

constexpr std::uint32_t kKiB = 1024;
constexpr std::uint32_t kSaveSpace = 64 * kKiB;

constexpr FlashChipFacts flashFacts(std::uint32_t size, std::uint8_t maker, std::uint8_t device)
{
    return {size,
            4 * kKiB,
            0x5555,
            0x2AAA,
            0x7FFF,
            0 /* no query */,
            0 /* ids byte by byte */,
            maker,
            device,
            size > kSaveSpace,
            4400 /* 70 ms for the 16 sectors of a 39VF512 */};
}
// An SST chip and a Macronix chip.
constexpr FlashChipFacts kFlash64k = flashFacts(64 * kKiB, 0xBF, 0xD4);
constexpr FlashChipFacts kFlash128k = flashFacts(128 * kKiB, 0xC2, 0x09);

// Of an answer, before the data.
constexpr int kIgnoredBits = 4;

// Longer than any byte takes; a chip that does not answer must not hold up the reader.
constexpr int kProgramPolls = 16;

} // namespace

GbaSram::GbaSram(std::uint32_t sizeBytes) : m_cells(sizeBytes, 0) {}

std::uint8_t &GbaSram::cell(std::uint32_t address)
{
    return m_cells[address & (m_cells.size() - 1)];
}

bool GbaSram::read(SaveKind routine, std::uint32_t address, std::uint8_t *destination,
                   std::uint32_t length)
{
    if (routine != SaveKind::Sram)
        return false;
    for (std::uint32_t i = 0; i < length; ++i)
        destination[i] = cell(address + i);
    return true;
}

bool GbaSram::write(SaveKind routine, std::uint32_t address, const std::uint8_t *source,
                    std::uint32_t length)
{
    if (routine != SaveKind::Sram)
        return false;
    for (std::uint32_t i = 0; i < length; ++i) {
        m_changes += cell(address + i) != source[i];
        cell(address + i) = source[i];
    }
    return true;
}

bool GbaSram::load(const ByteVector &contents)
{
    if (contents.size() != m_cells.size())
        return false;
    m_cells = contents;
    return true;
}

GbaFlash::GbaFlash(SaveKind kind, const FlashChipBehaviour &behaviour)
    : m_kind(kind), m_chip(kind == SaveKind::Flash64k ? kFlash64k : kFlash128k, behaviour)
{
}

bool GbaFlash::read(SaveKind routine, std::uint32_t address, std::uint8_t *destination,
                    std::uint32_t length)
{
    if (routine != m_kind && routine != SaveKind::Sram)
        return false;
    for (std::uint32_t i = 0; i < length; ++i) {
        const std::uint32_t at = address + i;
        if (routine == m_kind && (i == 0 || at % kSaveSpace == 0))
            selectBank(at);
        destination[i] = m_chip.read(at % kSaveSpace);
    }
    return true;
}

bool GbaFlash::write(SaveKind routine, std::uint32_t address, const std::uint8_t *source,
                     std::uint32_t length)
{
    if (routine != m_kind)
        return false;
    for (std::uint32_t i = 0; i < length; ++i) {
        const std::uint32_t at = address + i;
        if (i == 0 || at % kSaveSpace == 0)
            selectBank(at);
        program(at % kSaveSpace, source[i]);
    }
    return true;
}

bool GbaFlash::erase()
{
    command(0x80);
    command(0x10);
    return true;
}

void GbaFlash::command(std::uint8_t code)
{
    m_chip.write(0x5555, 0xAA);
    m_chip.write(0x2AAA, 0x55);
    m_chip.write(0x5555, code);
}

void GbaFlash::selectBank(std::uint32_t address)
{
    if (m_kind != SaveKind::Flash128k)
        return;
    command(0xB0);
    m_chip.write(0, address / kSaveSpace % 2);
}

void GbaFlash::program(std::uint32_t address, std::uint8_t value)
{
    command(0xA0);
    m_chip.write(address, value);
    for (int poll = 0; poll < kProgramPolls && m_chip.read(address) != value; ++poll) {
    }
}

GbaEeprom::GbaEeprom(SaveKind kind)
    : m_kind(kind), m_addressBits(kind == SaveKind::Eeprom512 ? 6 : 14),
      m_chip(m_addressBits, kind == SaveKind::Eeprom512 ? 512 : 8 * kKiB)
{
}

bool GbaEeprom::read(SaveKind routine, std::uint32_t address, std::uint8_t *destination,
                     std::uint32_t length)
{
    if (routine != m_kind)
        return false;
    std::uint32_t block = address / kEepromBlockSize;
    for (std::uint32_t done = 0; done < length; done += kEepromBlockSize, ++block) {
        std::uint8_t bytes[kEepromBlockSize];
        readBlock(block, bytes);
        std::copy_n(bytes, std::min(kEepromBlockSize, length - done), destination + done);
    }
    return true;
}

bool GbaEeprom::write(SaveKind routine, std::uint32_t address, const std::uint8_t *source,
                      std::uint32_t length)
{
    if (routine != m_kind)
        return false;
    std::uint32_t block = address / kEepromBlockSize;
    for (std::uint32_t done = 0; done + kEepromBlockSize <= length; done += kEepromBlockSize)
        writeBlock(block++, source + done);
    return true;
}

void GbaEeprom::sendBits(std::uint64_t bits, unsigned count)
{
    while (count > 0)
        m_chip.writeBit((bits >> --count & 1) != 0);
}

void GbaEeprom::readBlock(std::uint32_t block, std::uint8_t *bytes)
{
    sendBits(0b11, 2);
    sendBits(block, m_addressBits);
    sendBits(0, 1);
    for (int i = 0; i < kIgnoredBits; ++i)
        m_chip.readBit();
    for (std::uint32_t i = 0; i < kEepromBlockSize; ++i) {
        unsigned byte = 0;
        for (int bit = 0; bit < 8; ++bit)
            byte = byte << 1 | (m_chip.readBit() ? 1U : 0U);
        bytes[i] = static_cast<std::uint8_t>(byte);
    }
}

void GbaEeprom::writeBlock(std::uint32_t block, const std::uint8_t *bytes)
{
    sendBits(0b10, 2);
    sendBits(block, m_addressBits);
    for (std::uint32_t i = 0; i < kEepromBlockSize; ++i)
        sendBits(bytes[i], 8);
    sendBits(0, 1);
    for (int poll = 0; poll < kProgramPolls && !m_chip.readBit(); ++poll) {
    }
}

} // namespace virtual_reader
