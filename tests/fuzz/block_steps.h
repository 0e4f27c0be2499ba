// The form of what block_fuzz reads. The first byte picks a cartridge; then steps follow, each with
// a byte that says what it is:
//
//   0x00-0xEF  a block: so many bytes from the class on, their last one repeated up to the checksum
//   kEndFile   the blocks so far are written to the command file; also at the end
//   kSpoil     the next byte is xor-ed into the last byte of the blocks so far
//   kRaw       so many bytes as the next byte says, as they are, behind the blocks so far
//   kRead      file (1 byte), offset (3) and length (2): a part of a file is read
//   kPower     the cartridge's supply fails and comes back
//
// Any other byte is a kEndFile. What is cut off counts as zeros.
#pragma once

#include <cstdint>

enum BlockStep : std::uint8_t {
    kLongestBody = 0xEF,
    kEndFile = 0xF0,
    kSpoil = 0xF1,
    kRaw = 0xF2,
    kRead = 0xF3,
    kPower = 0xF4
};

// In the order of the table in block_fuzz.cpp.
enum BlockCartridge : std::uint8_t {
    kNoCartridge,
    kRomOnly,
    kMbc1,
    kMbc1MultiCart,
    kMbc2,
    kRomRam,
    kMmm01,
    kMbc3,
    kMbc5,
    kMbc7,
    kCamera,
    kTama5,
    kHuc3,
    kHuc1,
    kFlash8,
    kFlash16,
    kFlashProtected,
    kFlashEndless,
    kGbaRom,
    kGbaSram,
    kGbaFlash64k,
    kGbaFlash128k,
    kGbaFlashProtected,
    kGbaEeprom512,
    kGbaEeprom8k,
    kCartridgeCount
};
