// The header of a Game Boy or Game Boy Color cartridge: what the cartridge says it is, and whether
// its checksums agree.
//
// `header` is the cartridge's memory from address 0 and holds at least kGbHeaderBytes bytes.
// Thread: pure functions over bytes; any thread.
// Source: Pan Docs, "The Cartridge Header".
#pragma once

#include <QString>

#include <cstdint>

constexpr std::uint32_t kGbHeaderBytes = 0x150;

struct GbHeaderInfo {
    QString title;
    QString typeName;
    std::int32_t romSize = 0; // bytes
    std::int32_t ramSize = 0; // bytes of save memory; 0 without any
    std::int32_t mbcType = 0; // row of kMappers
};

// Fills `info` from the header. Reads no byte behind 0x149 and looks at no checksum. The title is
// all 16 bytes up to the first zero, so a title of 15 letters ends in the colour flag. An unknown
// type gets a name with its number and MBC5; for unknown sizes see cart/cartridge_types.h.
// Returns: 1; 0 if the boot logo differs, and then `info` is as before.
int decodeGbHeader(const std::uint8_t *header, GbHeaderInfo *info);

// True if the checksum of title, type and sizes is right. Consoles refuse a cartridge without it.
bool gbHeaderChecksumIsRight(const std::uint8_t *header);

// True if the sum over the whole ROM (`length` bytes) is right. Consoles do not look at it, and
// some cartridges carry a wrong one. False for fewer bytes than a header has.
bool gbGlobalChecksumIsRight(const std::uint8_t *rom, std::uint32_t length);
