// Asks the flash chip of a rewritable GB cartridge what it is, before it is written.
//
// Chips with the common flash interface answer a query with 'Q', 'R', 'Y'. A 16-bit chip in byte
// mode puts the answer on every other byte, from 0x20; anything else is taken for an 8-bit chip.
#pragma once

#include <cstdint>

constexpr std::uint32_t kFlashQuerySize = 128;

struct FlashChipAnswer {
    bool isWide = false;         // 16-bit chip
    std::uint32_t sizeBytes = 0; // of a wide chip; 0 when its size code is none that we know
};

// Reads the answer to a query.
// Shape: `answer` holds kFlashQuerySize bytes, from bus address 0.
FlashChipAnswer decodeFlashQuery(const std::uint8_t *answer);

// Sends the query, reads the answer and puts the chip back into read mode. What the device
// operations return is not looked at: a reader that is gone answers like an 8-bit chip, and the job
// that follows finds out.
// Needs:  GB mode selected.
// Thread: any, but no job may run meanwhile.
FlashChipAnswer probeFlashChip();

// Takes a chip back from its query table to its content; one that shows it already does not mind.
void endFlashQuery();
