// The built-in table of Game Boy Advance games. It knows what a GBA header does not say: full
// title, year, publisher, ROM size and the kind of save memory.
//
// The rows are made from data/gba_games.tsv at build time. Their order has meaning: where a game
// code stands in several rows, the first one wins.
// Thread: constant data and a pure function; any thread.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

// One game. Every field is text, ends in a zero and is padded with zeros. Titles and publishers are
// UTF-8.
struct GbaGameRecord {
    char title[140];    // "Advance Wars (Euro)"
    char year[10];      // "2001"; "200?" where it is uncertain
    char publisher[30]; // "Nintendo"
    char codes[40];     // one or two product codes: "AGB-BQJE-USA, AGB-BQJP"
    char romSize[10];   // bytes, decimal: "8388608"
    char saveKey[20];   // "gba_sram", "gba_eeprom_4k", ...; empty if there is no save memory or its
                        // kind is not known
};
static_assert(sizeof(GbaGameRecord) == 250, "records have no gaps");

constexpr std::size_t kGameCount = 2499;

extern const std::array<GbaGameRecord, kGameCount> gameDatabase;

// The first row in whose product codes `key`, usually a game code of four letters, occurs anywhere.
// Capital and small letters differ; an empty key occurs in every row.
// Returns: nullptr if there is no such row.
const GbaGameRecord *findGame(std::string_view key);
