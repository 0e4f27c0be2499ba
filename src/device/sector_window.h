// Reads of any shape from a disk that serves whole sectors only.
//
// An unbuffered read must have offset, length and memory address in multiples of the sector size;
// a disk (and the kernel in front of it) refuses anything else. Aligned requests go through
// unchanged, all others through an aligned buffer that covers them.
#pragma once

#include "device/drive_backend.h"

#include <cstdint>
#include <functional>

// The logical sector size of USB sticks and of the reader.
constexpr std::uint32_t kSectorSize = 512;
// Alignment of the bounce buffer: a page.
constexpr std::uint32_t kBounceAlignment = 4096;

// The run of whole sectors around a request. `skip` bytes at its start belong to nobody.
struct SectorWindow {
    std::uint64_t offset;
    std::uint32_t length;
    std::uint32_t skip;
};

bool isSectorAligned(const void *address, std::uint32_t length, std::uint32_t offset);
SectorWindow widenToSectors(std::uint32_t offset, std::uint32_t length);

// Reads `length` bytes at `offset` into memory that is aligned; sets the count.
using SectorTransfer = std::function<DriveStatus(void *destination, std::uint64_t offset,
                                                 std::uint32_t length, std::uint32_t *count)>;

// Reads `length` bytes at `*position` of an open file and moves the position behind what arrived.
// Buffered requests go through as they are, unbuffered ones as by readSectors().
DriveStatus readAtPosition(const SectorTransfer &transfer, Buffering buffering, void *destination,
                           std::uint32_t length, std::uint32_t *position, std::uint32_t *count);

// Serves one request through `transfer`, widened only if a disk would refuse it. `*count` is the
// number of bytes that arrived in `destination`.
DriveStatus readSectors(const SectorTransfer &transfer, void *destination, std::uint32_t length,
                        std::uint32_t offset, std::uint32_t *count);
