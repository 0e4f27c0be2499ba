// Cartridge headers made to order, for the tests of the decoders.
#pragma once

#include <QByteArray>

#include <cstdint>

// A Game Boy header: logo, title "TEST", ROM only, 32 KiB, no RAM, right header checksum.
QByteArray makeGbHeader();

// A Game Boy Advance header: logo, title "TEST", `code` (four bytes) and right complement check.
QByteArray makeGbaHeader(const QByteArray &code);

// Puts `bytes` at `offset`; `target` keeps its length.
void putBytes(QByteArray *target, int offset, const QByteArray &bytes);

const std::uint8_t *constBytesOf(const QByteArray &bytes);

// `bytes` with the bits of `mask` at `offset` turned over.
QByteArray withFlippedBits(QByteArray bytes, int offset, int mask);
