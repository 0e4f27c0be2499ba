// The header of a Game Boy Advance cartridge: which game it is, looked up in the game table, and
// what the header says itself.
//
// `header` is the cartridge's ROM from address 0 and holds at least kGbaHeaderBytes bytes.
// Thread: pure functions over bytes; any thread.
// Source: GBATEK, "GBA Cartridge Header".
#pragma once

#include <QString>

#include <cstdint>

constexpr std::uint32_t kGbaHeaderBytes = 0xC0;

// What the game table knows about a game. Texts are decoded with the system's 8-bit codec: where
// that is not UTF-8, an accented letter of a title comes out as two other characters.
struct GbaHeaderInfo {
    QString title;
    QString year;
    QString publisher;
    QString codes;             // one or two product codes
    std::int32_t romSize = 0;  // bytes
    std::int32_t saveSize = 0; // bytes; 0 without save memory and where its kind is not known
    std::int32_t saveType = 0; // kSaveSram, kSaveFlash or kSaveEeprom
};

// Fills `info` with the game whose product codes contain the header's game code (see findGame).
// Returns: romSize of the game. 0 if the boot logo differs; what info->romSize holds already if the
//          table does not know the game. `info` is as before in both cases, so a caller that
//          presets romSize to 0 gets 0 for both; gbaLogoMatches() tells them apart.
int decodeGbaHeader(const std::uint8_t *header, GbaHeaderInfo *info);

// True if all bytes of the boot logo are right: this is a GBA cartridge.
bool gbaLogoMatches(const std::uint8_t *header);

// True if the complement check, which covers title, game code and version, is right. Consoles
// refuse a cartridge without it.
bool gbaComplementIsRight(const std::uint8_t *header);

// The title (12 bytes at most) and the game code (4 at most) in the header itself, as Latin-1 up to
// the first zero.
QString gbaHeaderTitle(const std::uint8_t *header);
QString gbaHeaderCode(const std::uint8_t *header);
