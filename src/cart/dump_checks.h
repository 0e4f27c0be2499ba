// What the content of a dump says about itself: is it what a cartridge holds, and does it end where
// the file ends?
//
// A header that agrees proves little about the rest; what can be found wrong here is proof of a bad
// contact, a wrong size or a wrong mapper. Padding with FF or 00 is normal and not looked at.
// `bytes` is a whole ROM image or a whole save and holds `size` bytes; it may be null if size is 0.
// Thread: pure functions over bytes; any thread.
// Source: Pan Docs, "The Cartridge Header"; GBATEK, "GBA Cartridge Header" and "GBA Unpredictable
// Things" for reads where no ROM answers.
#pragma once

#include <cstdint>
#include <optional>

enum class DumpSystem { Unknown, Gb, Gba };

// What stands behind the content.
enum class DumpTail {
    None,
    Mirrored, // the content again and again: the ROM chip is smaller than what was read
    OpenBus   // the bus answered with the address: no ROM chip is selected there, or none at all
};

struct DumpChecks {
    DumpSystem system = DumpSystem::Unknown;
    bool logoIsRight = false;
    bool headerChecksumIsRight = false;
    // GB: the checksum over the content. A GBA ROM has none.
    std::optional<bool> globalChecksumIsRight;
    // GB: the size in bytes that the header names. Nothing if the logo is wrong or the size code
    // unknown; a GBA header names none.
    std::optional<std::uint32_t> headerSize;
    bool allBytesEqual = false;    // as read without a cartridge or from a dead chip
    std::uint32_t contentSize = 0; // bytes; smaller than the dump if there is a tail
    DumpTail tail = DumpTail::None;
};

// Checks a ROM image of any size. `system` is what the cartridge was read as; Unknown takes the one
// whose boot logo the image has, and leaves the header unchecked if it has none.
//
// Mirrored: behind its first `contentSize` bytes, the smallest possible power of two, the image
// repeats these to its end. A GB image whose global checksum is right over all of it is believed to
// hold the same twice. OpenBus, not on the GB: each halfword to the end is the low half of its own
// address in halfwords; contentSize is rounded up to 512 bytes, because FF in the last halfword of
// 128 KiB looks the same.
// All bytes equal: no tail.
DumpChecks checkDump(const std::uint8_t *bytes, std::uint32_t size,
                     DumpSystem system = DumpSystem::Unknown);

// True if all bytes have one value; false for a size of 0.
bool allBytesEqual(const std::uint8_t *bytes, std::uint32_t size);

// The smallest power of two such that the rest only repeats that many first bytes. A save that was
// read from a smaller chip gives the chip's size, but so does one of a game that keeps two equal
// copies.
// Returns: size, if nothing is repeated, all bytes are equal, or the rest is shorter than 256 bytes
//          and so may be the same by chance.
std::uint32_t repeatedContentSize(const std::uint8_t *bytes, std::uint32_t size);
