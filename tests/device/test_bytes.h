// Byte helpers that the tests of the device link share.
#pragma once

#include <QByteArray>

#include <cstdint>

// `length` bytes that look random, the same ones for the same `seed`.
QByteArray patternBytes(int length, std::uint32_t seed);

inline std::uint8_t *bytesOf(QByteArray &array)
{
    return reinterpret_cast<std::uint8_t *>(array.data());
}

inline const std::uint8_t *constBytesOf(const QByteArray &array)
{
    return reinterpret_cast<const std::uint8_t *>(array.constData());
}
