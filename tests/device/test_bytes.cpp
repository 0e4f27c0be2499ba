#include "test_bytes.h"

#include <random>

QByteArray patternBytes(int length, std::uint32_t seed)
{
    std::mt19937 generator(seed);
    QByteArray bytes(length, '\0');
    for (char &byte : bytes)
        byte = static_cast<char>(generator() >> 24);
    return bytes;
}
