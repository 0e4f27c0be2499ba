// The arrays behind cart/known_dumps.h, which the build makes from data/known_dumps.tsv. Only the
// lookup, its tests and its measurement look into them.
#pragma once

#include <cstddef>
#include <cstdint>

// The systems in the order of their numbers, which cmake/KnownDumps.cmake gives them.
constexpr const char *kKnownDumpSystems[] = {"GB", "GBC", "GBA"};

// One row. An offset instead of a pointer: a position-independent program need not touch the table
// before it runs.
struct KnownDumpRecord {
    std::uint8_t sha1[20];
    std::uint32_t crc32;
    std::uint32_t size;       // bytes
    std::uint32_t system : 8; // row of kKnownDumpSystems
    std::uint32_t title : 24; // offset in knownDumpTitles
};
static_assert(sizeof(KnownDumpRecord) == 32, "records have no gaps");

// Sorted by SHA-1. An image that stands in two rows of the file has two neighbours here, in the
// order of the file.
extern const KnownDumpRecord knownDumpRecords[];
extern const std::size_t knownDumpCount;

// The titles, UTF-8, each ended by a zero.
extern const char knownDumpTitles[];
extern const std::size_t knownDumpTitleBytes;
