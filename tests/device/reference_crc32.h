// zlib's CRC-32 under another name: its own would clash with the function under test.
#pragma once

#include <QByteArray>

#include <cstdint>

std::uint32_t referenceCrc32(std::uint32_t crc, const QByteArray &bytes);
