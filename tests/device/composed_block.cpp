#include "composed_block.h"

#include <algorithm>

std::uint16_t bitwiseCrc16(const QByteArray &bytes)
{
    std::uint32_t crc = 0;
    for (const char byte : bytes) {
        for (int bit = 7; bit >= 0; --bit) {
            const bool in = (static_cast<unsigned>(static_cast<unsigned char>(byte)) >> bit & 1U);
            const bool out = (crc & 0x8000U) != 0;
            crc = (crc << 1) & 0xFFFFU;
            if (in != out)
                crc ^= 0x1021U;
        }
    }
    return static_cast<std::uint16_t>(crc);
}

QByteArray composeBlock(int commandClass, int opcode, const QList<BlockField> &fields,
                        int payloadOffset, const QByteArray &payload)
{
    QByteArray block(512, '\0');
    block[0] = 'Z';
    block[1] = static_cast<char>(commandClass);
    block[2] = static_cast<char>(opcode);
    for (const BlockField &field : fields) {
        for (int i = 0; i < field.bytes; ++i)
            block[field.offset + i] = static_cast<char>(field.value >> (8 * i));
    }
    block.replace(payloadOffset, payload.size(), payload);
    const std::uint16_t crc = bitwiseCrc16(block.left(510));
    block[510] = static_cast<char>(crc >> 8);
    block[511] = static_cast<char>(crc & 0xFF);
    return block;
}

QByteArray firstDifference(const QByteArray &actual, const QByteArray &expected)
{
    if (actual == expected)
        return {};
    if (actual.size() != expected.size())
        return "size " + QByteArray::number(actual.size()) + " instead of " +
               QByteArray::number(expected.size());
    const auto place = std::mismatch(actual.begin(), actual.end(), expected.begin());
    const auto index = static_cast<int>(place.first - actual.begin());
    return "block " + QByteArray::number(index / 512) + " byte " + QByteArray::number(index % 512) +
           ": 0x" + QByteArray(1, *place.first).toHex() + " instead of 0x" +
           QByteArray(1, *place.second).toHex();
}
