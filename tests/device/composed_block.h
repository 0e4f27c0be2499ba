// Command blocks written down a second time, straight from the protocol's tables, to compare the
// builders' output with. Uses nothing of the code under test.
#pragma once

#include <QByteArray>
#include <QList>

#include <cstdint>

// One field of a block: where it stands, its value, how many little-endian bytes.
struct BlockField {
    int offset;
    std::uint32_t value;
    int bytes;
};

// CRC-16 with polynomial 0x1021 and initial value 0, bit by bit.
std::uint16_t bitwiseCrc16(const QByteArray &bytes);

// A sealed 512-byte block: sync byte, class, opcode, the fields, `payload` at `payloadOffset`,
// zeros, checksum.
QByteArray composeBlock(int commandClass, int opcode, const QList<BlockField> &fields = {},
                        int payloadOffset = 12, const QByteArray &payload = QByteArray());

// Compares two runs of blocks. Returns: empty if equal, else where they first differ, for people.
QByteArray firstDifference(const QByteArray &actual, const QByteArray &expected);
