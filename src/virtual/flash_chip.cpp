#include "virtual/flash_chip.h"

#include <algorithm>
#include <utility>

namespace virtual_reader
{

namespace
{

constexpr std::uint8_t kReset = 0xF0;
constexpr std::uint8_t kEraseChip = 0x10;
constexpr std::uint8_t kEraseSector = 0x30;
constexpr std::uint8_t kErased = 0xFF;

constexpr std::uint8_t kDataPollingBit = 0x80;
constexpr std::uint8_t kToggleBit = 0x40;
constexpr std::uint8_t kTimeLimitBit = 0x20;
constexpr std::uint8_t kEraseBegunBit = 0x08;

constexpr unsigned kProgramPolls = 1; // that see a byte being programmed

constexpr std::uint32_t kBankSize = 64 * 1024;
constexpr std::uint32_t kTableSize = 0x100; // entries of ids and query table repeat behind it

unsigned log2Of(std::uint32_t powerOfTwo)
{
    unsigned exponent = 0;
    while (1U << exponent < powerOfTwo)
        ++exponent;
    return exponent;
}

} // namespace

const FlashChip::Step FlashChip::kSteps[] = {
    {State::Read, Place::FirstUnlock, 0xAA, State::HalfUnlocked},
    {State::Read, Place::QueryAddress, 0x98, State::Query},
    {State::HalfUnlocked, Place::SecondUnlock, 0x55, State::Unlocked},
    {State::Unlocked, Place::FirstUnlock, 0x80, State::EraseLocked},
    {State::Unlocked, Place::FirstUnlock, 0x90, State::Autoselect},
    {State::Unlocked, Place::FirstUnlock, 0xA0, State::AwaitByte},
    {State::Unlocked, Place::FirstUnlock, 0xB0, State::AwaitBank},
    {State::Autoselect, Place::FirstUnlock, 0xAA, State::HalfUnlocked},
    {State::EraseLocked, Place::FirstUnlock, 0xAA, State::EraseHalfUnlocked},
    {State::EraseHalfUnlocked, Place::SecondUnlock, 0x55, State::EraseUnlocked},
    {State::EraseUnlocked, Place::FirstUnlock, kEraseChip, State::Busy},
    {State::EraseUnlocked, Place::Anywhere, kEraseSector, State::SectorWindow},
    {State::SectorWindow, Place::Anywhere, kEraseSector, State::SectorWindow},
};

FlashChip::FlashChip(const FlashChipFacts &facts, FlashChipBehaviour behaviour, ByteVector contents)
    : m_facts(facts), m_behaviour(std::move(behaviour)), m_cells(std::move(contents))
{
    m_cells.resize(m_facts.sizeBytes, kErased);
}

bool FlashChip::load(const ByteVector &contents)
{
    if (contents.size() != m_cells.size())
        return false;
    m_cells = contents;
    return true;
}

std::uint32_t FlashChip::cellOf(std::uint32_t address) const
{
    const std::uint32_t cell =
        m_facts.hasBanks ? m_bank * kBankSize + address % kBankSize : address;
    return cell & (m_facts.sizeBytes - 1);
}

std::uint8_t FlashChip::read(std::uint32_t address)
{
    if (m_state == State::SectorWindow)
        startErase();
    if (m_state == State::Busy && pollFinds(address))
        return status();
    const std::uint32_t index = (address >> m_facts.idShift) % kTableSize;
    if (m_state == State::Autoselect)
        return idByte(index);
    if (m_state == State::Query)
        return queryByte(index);
    return m_cells[cellOf(address)];
}

void FlashChip::write(std::uint32_t address, std::uint8_t value)
{
    switch (m_state) {
    case State::Busy:
        writeWhileBusy(value);
        break;
    case State::AwaitByte:
        startProgram(cellOf(address), value);
        break;
    case State::AwaitBank:
        m_bank = address == 0 ? value : m_bank;
        m_state = State::Read;
        break;
    default:
        takeCommand(address, value);
    }
}

void FlashChip::takeCommand(std::uint32_t address, std::uint8_t value)
{
    m_state = nextState(address, value);
    if (m_state == State::SectorWindow) {
        addSector(cellOf(address) / m_facts.sectorSize);
    } else if (m_state == State::Busy) {
        for (std::uint32_t i = 0; i < m_facts.sizeBytes / m_facts.sectorSize; ++i)
            m_sectors.push_back(i);
        startErase();
    } else {
        m_sectors.clear(); // of a sector erase that was broken off
    }
}

void FlashChip::addSector(std::uint32_t sector)
{
    if (std::find(m_sectors.begin(), m_sectors.end(), sector) == m_sectors.end())
        m_sectors.push_back(sector);
}

bool FlashChip::isAt(Place place, std::uint32_t address) const
{
    const std::uint32_t decoded = address & m_facts.commandLines;
    switch (place) {
    case Place::FirstUnlock:
        return decoded == m_facts.firstUnlock;
    case Place::SecondUnlock:
        return decoded == m_facts.secondUnlock;
    case Place::QueryAddress:
        return m_facts.queryAddress != 0 && decoded == m_facts.queryAddress;
    case Place::Anywhere:
        return true;
    }
    return false;
}

FlashChip::State FlashChip::nextState(std::uint32_t address, std::uint8_t value) const
{
    if (value == kReset)
        return State::Read;
    for (const Step &step : kSteps) {
        if (step.from == m_state && step.command == value && isAt(step.place, address))
            return step.to == State::AwaitBank && !m_facts.hasBanks ? State::Read : step.to;
    }
    // A write that fits no sequence breaks it off; the tables stay on show.
    return m_state == State::Autoselect || m_state == State::Query ? m_state : State::Read;
}

void FlashChip::writeWhileBusy(std::uint8_t value)
{
    if (value == kReset && m_timedOut)
        cutEraseOff();
}

void FlashChip::startErase()
{
    if (m_behaviour.writeProtected) {
        m_sectors.clear();
        m_cell = 0;
        m_value = kErased; // leaves any byte as it is
        startWork(1);
        return;
    }
    if (m_behaviour.takesTime)
        m_microsecondsLeft = std::uint64_t{m_facts.sectorEraseMicroseconds} * m_sectors.size();
    startWork(m_behaviour.erasePolls);
}

void FlashChip::passTime(std::uint64_t microseconds)
{
    m_microsecondsLeft -= std::min(m_microsecondsLeft, microseconds);
}

void FlashChip::startProgram(std::uint32_t cell, std::uint8_t value)
{
    m_cell = cell;
    m_value = m_behaviour.writeProtected ? kErased : value;
    startWork(kProgramPolls);
}

void FlashChip::startWork(unsigned polls)
{
    m_state = State::Busy;
    m_workPolls = polls;
    m_pollsLeft = polls;
    m_timedOut = false;
    m_lastRead.reset();
    if (polls == 0 && m_microsecondsLeft == 0 &&
        !(m_behaviour.eraseNeverEnds && !m_sectors.empty()))
        finishWork();
}

void FlashChip::finishWork()
{
    if (m_sectors.empty())
        setCell(m_cell, m_cells[m_cell] & m_value);
    for (const std::uint32_t sector : m_sectors)
        fillSector(sector, kErased);
    m_sectors.clear();
    m_state = State::Read;
}

void FlashChip::cutEraseOff()
{
    const std::size_t pollsDone = m_behaviour.eraseNeverEnds ? 0 : m_workPolls - m_pollsLeft;
    const std::size_t erased = m_sectors.size() * pollsDone / std::max(m_workPolls, 1U);
    for (std::size_t i = 0; i < m_sectors.size() && i <= erased; ++i)
        fillSector(m_sectors[i], i < erased ? kErased : std::uint8_t{0});
    m_sectors.clear();
    m_state = State::Read;
}

void FlashChip::powerCycle()
{
    if (m_state == State::Busy)
        cutEraseOff();
    m_microsecondsLeft = 0;
    m_sectors.clear();
    m_state = State::Read;
    m_bank = 0;
}

void FlashChip::fillSector(std::uint32_t sector, std::uint8_t value)
{
    for (std::uint32_t i = 0; i < m_facts.sectorSize; ++i)
        setCell(sector * m_facts.sectorSize + i, value);
}

void FlashChip::setCell(std::uint32_t cell, std::uint8_t value)
{
    if (m_cells[cell] == value)
        return;
    m_cells[cell] = value;
    ++m_changes;
}

bool FlashChip::pollFinds(std::uint32_t address)
{
    const bool sameRun = m_lastRead.has_value() && address == *m_lastRead + 1;
    m_lastRead = address;
    if (sameRun || m_microsecondsLeft != 0)
        return true;
    if (m_pollsLeft > 0) {
        --m_pollsLeft;
        return true;
    }
    m_timedOut = m_behaviour.eraseNeverEnds && !m_sectors.empty();
    if (!m_timedOut)
        finishWork();
    return m_timedOut;
}

std::uint8_t FlashChip::status()
{
    m_toggle ^= kToggleBit;
    if (m_sectors.empty())
        return static_cast<std::uint8_t>((~m_value & kDataPollingBit) | m_toggle);
    return static_cast<std::uint8_t>(kEraseBegunBit | m_toggle | (m_timedOut ? kTimeLimitBit : 0));
}

std::uint8_t FlashChip::idByte(std::uint32_t index) const
{
    const std::uint8_t ids[] = {m_facts.makerId, m_facts.deviceId,
                                std::uint8_t{m_behaviour.writeProtected}};
    return index < sizeof ids ? ids[index] : std::uint8_t{0};
}

std::uint8_t FlashChip::queryByte(std::uint32_t index) const
{
    const unsigned sizeCode = m_behaviour.sizeCode.value_or(log2Of(m_facts.sizeBytes));
    const std::uint32_t lastBlock = m_facts.sizeBytes / m_facts.sectorSize - 1;
    const std::uint32_t blockUnits = m_facts.sectorSize / 256;
    struct Entry {
        std::uint32_t index;
        std::uint32_t value;
    };
    const Entry entries[] = {
        {0x10, 'Q'},        {0x11, 'R'},
        {0x12, 'Y'},        {0x13, 2}, // AMD command set
        {0x15, 0x40},                  // its extended table
        {0x1F, 4},                     // 2^4 us for a byte
        {0x21, 10},                    // 2^10 ms for a sector
        {0x23, 5},          {0x25, 4}, // at most 2^5 and 2^4 times as much
        {0x27, sizeCode},   {0x28, m_facts.idShift == 0 ? 0U : 2U}, // x8, or x8/x16
        {0x2C, 1},                                                  // one region of sectors
        {0x2D, lastBlock},  {0x2E, lastBlock >> 8},
        {0x2F, blockUnits}, {0x30, blockUnits >> 8},
        {0x40, 'P'},        {0x41, 'R'},
        {0x42, 'I'},
    };
    const auto *entry = std::find_if(std::begin(entries), std::end(entries),
                                     [index](const Entry &row) { return row.index == index; });
    return entry == std::end(entries) ? std::uint8_t{0} : static_cast<std::uint8_t>(entry->value);
}

} // namespace virtual_reader
