// Command blocks as the tests put them together by hand, field by field.
#pragma once

#include "samples.h"

#include "virtual/block_format.h"
#include "virtual/bytes.h"

#include <QTest>

#include <algorithm>
#include <cstdint>
#include <initializer_list>

// Puts the checksum of the 512 bytes at `block` into their last two.
inline void sealBlock(std::uint8_t *block)
{
    const unsigned checksum = virtual_reader::blockChecksum(block, 510);
    block[510] = static_cast<std::uint8_t>(checksum >> 8);
    block[511] = static_cast<std::uint8_t>(checksum);
}

// A sealed block with `body` from byte 3 on and `payload` from `payloadOffset` on.
inline virtual_reader::ByteVector commandBlock(std::uint8_t commandClass, std::uint8_t opcode,
                                               std::initializer_list<unsigned> body = {},
                                               const virtual_reader::ByteVector &payload = {},
                                               std::size_t payloadOffset = 0)
{
    virtual_reader::ByteVector block(512, 0);
    block[0] = 0x5A;
    block[1] = commandClass;
    block[2] = opcode;
    std::size_t at = 3;
    for (const unsigned byte : body)
        block[at++] = static_cast<std::uint8_t>(byte);
    std::copy(payload.begin(), payload.end(),
              block.begin() + static_cast<std::ptrdiff_t>(payloadOffset));
    sealBlock(block.data());
    return block;
}

inline virtual_reader::ByteVector operator+(virtual_reader::ByteVector left,
                                            const virtual_reader::ByteVector &right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

// Both blocks that put the reader on a bus.
inline virtual_reader::ByteVector selectGb()
{
    return commandBlock(0xF0, 2) + commandBlock(2, 1);
}
inline virtual_reader::ByteVector selectGba()
{
    return commandBlock(0xF0, 3) + commandBlock(3, 1);
}

// One write on the GB bus.
inline virtual_reader::ByteVector gbWriteBlock(unsigned address, unsigned value)
{
    return commandBlock(2, 13, {address & 0xFF, address >> 8, value});
}
