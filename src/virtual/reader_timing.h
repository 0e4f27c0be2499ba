// How long a real reader would take: a model of the time that its drive and the chips behind it
// need. What it says of a job is an estimate; docs/virtual-reader.md has the sources of the
// figures.
#pragma once

#include "virtual/operation_record.h"

#include <cstdint>
#include <string>

namespace virtual_reader
{

struct ReaderTiming {
    std::uint32_t bytesPerSecond = 0; // 0: everything is done at once
    // Of each transfer over USB, whatever its length.
    std::uint32_t transferMicroseconds = 0;

    bool isOn() const { return bytesPerSecond != 0; }
};

// A full-speed USB drive. Its bus has a frame a millisecond, of which at best 19 carry 64 bytes of
// data each (USB 2.0, 5.8.4: 1,216,000 bytes per second); with what wraps each transfer about
// 900,000 are left. Request and status of a transfer take a frame each (USB Mass Storage, Bulk-Only
// Transport).
constexpr ReaderTiming kFullSpeedTiming = {900000, 2000};

// Reads "full-speed", or "BYTES:MICROSECONDS" as in ReaderTiming.
// Returns: false for anything else.
bool parseTiming(const std::string &text, ReaderTiming *timing);

// Microseconds that the operation takes, those of the chips that it waits for among them: a program
// command waits for every byte, an EEPROM's for every block. An erase goes on behind its command;
// its time is the chip's. `oldLength`: bytes of the command file before; another length costs two
// transfers more, of the file's directory entry and of the FAT. 0 if the model is off.
std::uint64_t durationOf(const Operation &operation, const ReaderTiming &timing,
                         std::uint32_t oldLength);

} // namespace virtual_reader
