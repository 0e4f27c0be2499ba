// A flash memory chip with AMD-style commands: Game Boy ROM boards carry it, and GBA FLASH saves.
//
// Programming only clears bits; erasing sets all bits of a sector or of the chip. Both take a while
// in which reads show status bits and writes are ignored: bit 7 is the inverse of the programmed
// byte's, or 0 while erasing, bit 6 toggles with every read, bit 3 says that an erase has begun,
// bit 5 that it has failed. Unless it is told to take time, time passes by polls alone: a run of
// reads at rising addresses is one poll, however long, so the transfers of a host count as they
// look to it.
//
// Left out: erase suspend, pages and write buffers, protection of single sectors.
// Source: data sheets of the Am29F040B and Am29LV160D; JESD68, "Common Flash Interface"; GBATEK,
// "GBA Cart Backup Flash ROM".
#pragma once

#include "virtual/bytes.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace virtual_reader
{

// What is printed on the chip. Addresses are bytes, as they come over an 8-bit bus.
struct FlashChipFacts {
    std::uint32_t sizeBytes;   // power of two
    std::uint32_t sectorSize;  // power of two
    std::uint32_t firstUnlock; // of the two writes before each command, and of the command
    std::uint32_t secondUnlock;
    std::uint32_t commandLines; // mask of the address lines that commands look at
    std::uint32_t queryAddress; // of the query command; 0: the chip has none
    std::uint32_t idShift;      // byte addresses of ids and query table, shifted right: their index
    std::uint8_t makerId;
    std::uint8_t deviceId;
    bool hasBanks; // 64 KiB are visible, a command switches between them
    std::uint32_t sectorEraseMicroseconds = 0; // typical time of its data sheet
};

// How this one behaves.
struct FlashChipBehaviour {
    // Polls that see an erase at work; the next one sees it done. Of a byte being programmed it is
    // always one.
    unsigned erasePolls = 2;
    // Erase and program begin, and are dropped after one poll.
    bool writeProtected = false;
    // After erasePolls bit 5 shows; only 0xF0 ends it.
    bool eraseNeverEnds = false;
    // An erase takes the time of the data sheet before erasePolls counts.
    bool takesTime = false;
    // In the query table, instead of the true one.
    std::optional<std::uint8_t> sizeCode = std::nullopt;
};

class FlashChip
{
public:
    // `contents`: at most the chip's size; what is missing is erased.
    FlashChip(const FlashChipFacts &facts, FlashChipBehaviour behaviour, ByteVector contents = {});

    // One bus cycle. Address lines beyond the chip's are ignored.
    std::uint8_t read(std::uint32_t address);
    void write(std::uint32_t address, std::uint8_t value);

    // So much time has passed outside.
    void passTime(std::uint64_t microseconds);

    // The supply fails and comes back. An erase at work is cut off: of its sectors some are erased,
    // one is all zero, as chips make it first, and the others are untouched.
    void powerCycle();

    const ByteVector &contents() const { return m_cells; }
    // Replaces all cells. Returns: false if the size is not the chip's.
    bool load(const ByteVector &contents);
    // Number of bytes changed by commands so far.
    std::uint64_t changes() const { return m_changes; }

private:
    // What the writes so far have led to. The erase states follow a second pair of unlock writes.
    enum class State {
        Read,
        HalfUnlocked,
        Unlocked,
        Autoselect,
        Query,
        AwaitByte,
        AwaitBank,
        EraseLocked,
        EraseHalfUnlocked,
        EraseUnlocked,
        SectorWindow, // further sectors may be named until the first read
        Busy
    };
    enum class Place { FirstUnlock, SecondUnlock, QueryAddress, Anywhere };
    struct Step {
        State from;
        Place place;
        std::uint8_t command;
        State to;
    };
    static const Step kSteps[];

    bool isAt(Place place, std::uint32_t address) const;
    void takeCommand(std::uint32_t address, std::uint8_t value);
    State nextState(std::uint32_t address, std::uint8_t value) const;
    void writeWhileBusy(std::uint8_t value);
    // A sector that is named twice is erased once.
    void addSector(std::uint32_t sector);
    void startErase();
    void startProgram(std::uint32_t cell, std::uint8_t value);
    void startWork(unsigned polls);
    void finishWork();
    void cutEraseOff();
    void fillSector(std::uint32_t sector, std::uint8_t value);
    void setCell(std::uint32_t cell, std::uint8_t value);
    // Counts a poll if this read begins one. Returns: true if the chip is then still at work.
    bool pollFinds(std::uint32_t address);
    std::uint8_t status();
    std::uint8_t idByte(std::uint32_t index) const;
    std::uint8_t queryByte(std::uint32_t index) const;
    std::uint32_t cellOf(std::uint32_t address) const;

    FlashChipFacts m_facts;
    FlashChipBehaviour m_behaviour;
    ByteVector m_cells;
    std::uint64_t m_changes = 0;
    State m_state = State::Read;
    std::uint32_t m_bank = 0;

    // Work of an erase or of a program command.
    std::vector<std::uint32_t> m_sectors; // to be erased; empty while programming
    std::uint32_t m_cell = 0;             // to be programmed
    std::uint8_t m_value = 0;
    unsigned m_workPolls = 0; // of the whole work
    unsigned m_pollsLeft = 0;
    std::uint64_t m_microsecondsLeft = 0; // before the polls count
    bool m_timedOut = false;
    std::uint8_t m_toggle = 0;
    std::optional<std::uint32_t> m_lastRead; // since the work began
};

} // namespace virtual_reader
