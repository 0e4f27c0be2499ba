// The built-in table of known good ROM images: is this dump, byte for byte, one that others made of
// the same game before?
//
// The rows are made from data/known_dumps.tsv at build time.
// Thread: constant data and a pure function; any thread.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

using Sha1Digest = std::array<std::uint8_t, 20>;

// One image. All pointers lead into the table and stay good.
struct KnownDump {
    const char *system; // "GB", "GBC" or "GBA"
    const char *title;  // UTF-8: "Tetris 2 (USA)"
    // A second title under which the table has the same bytes, or nullptr.
    const char *otherTitle;
    std::uint32_t size;  // bytes
    std::uint32_t crc32; // of the whole image
    const std::uint8_t *sha1;
    // The catalogue itself doubts the image: it says "bad dump?" in the title.
    bool isDoubted;
};

// The image of `size` bytes with this SHA-1. A binary search: well under a microsecond.
// Returns: nothing if the table has no such image.
std::optional<KnownDump> findKnownDump(std::uint32_t size, const Sha1Digest &sha1);
