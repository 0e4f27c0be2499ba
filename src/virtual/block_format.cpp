#include "virtual/block_format.h"

#include "virtual/reader_files.h"

#include <cstdio>

namespace virtual_reader
{

namespace
{

constexpr std::uint16_t kGbPayload = 480;
constexpr std::uint16_t kGbaPayload = 256;
constexpr std::uint16_t kReplyLimit = kReplyAreaSize;

using C = ReaderCommand;
using S = SaveKind;

// Sorted by class, then opcode. Columns: see CommandShape.
const CommandShape kCommands[] = {
    {kClassGb, 1, C::StartGbBus, S::None, "gb-start", 0, 0, 0, 0, 0},
    {kClassGb, 12, C::GbRamWrite, S::None, "gb-ram-write", 3, 2, 5, 7, kGbPayload},
    {kClassGb, 13, C::GbBusWrite, S::None, "gb-write", 3, 2, 0, 5, 1},
    {kClassGb, 14, C::GbProgram8, S::None, "gb-program-8", 3, 2, 5, 7, kGbPayload},
    {kClassGb, 15, C::GbProgram16, S::None, "gb-program-16", 3, 2, 5, 7, kGbPayload},
    {kClassGba, 1, C::StartGbaBus, S::None, "gba-start", 0, 0, 0, 0, 0},
    {kClassGba, 6, C::GbaSetReadAddress, S::None, "gba-read-address", 4, 3, 0, 0, 0},
    {kClassGba, 7, C::GbaSaveErase, S::None, "gba-save-erase", 0, 0, 0, 0, 0},
    {kClassGba, 8, C::GbaSaveRead, S::Flash64k, "gba-flash64k-read", 4, 3, 8, 0, kReplyLimit},
    {kClassGba, 9, C::GbaSaveRead, S::Flash128k, "gba-flash128k-read", 4, 3, 8, 0, kReplyLimit},
    {kClassGba, 10, C::GbaSaveWrite, S::Flash64k, "gba-flash64k-write", 4, 2, 8, 12, kGbaPayload},
    {kClassGba, 11, C::GbaSaveWrite, S::Flash128k, "gba-flash128k-write", 4, 3, 8, 12, kGbaPayload},
    {kClassGba, 12, C::GbaSaveRead, S::Eeprom512, "gba-eeprom512-read", 4, 2, 8, 0, kReplyLimit},
    {kClassGba, 13, C::GbaSaveRead, S::Eeprom8k, "gba-eeprom8k-read", 4, 2, 8, 0, kReplyLimit},
    {kClassGba, 14, C::GbaSaveWrite, S::Eeprom512, "gba-eeprom512-write", 4, 4, 0, 12, kGbaPayload},
    {kClassGba, 15, C::GbaSaveWrite, S::Eeprom8k, "gba-eeprom8k-write", 4, 2, 0, 12, kGbaPayload},
    {kClassGba, 16, C::GbaSaveWrite, S::Sram, "gba-sram-write", 4, 2, 8, 12, kGbaPayload},
    {kClassGba, 17, C::GbaSaveRead, S::Sram, "gba-sram-read", 4, 3, 8, 0, kReplyLimit},
    {kClassGba, 19, C::GbaBusWrite, S::None, "gba-write", 4, 4, 0, 8, 2},
    {kClassReader, 2, C::SelectGbBus, S::None, "select-gb", 0, 0, 0, 0, 0},
    {kClassReader, 3, C::SelectGbaBus, S::None, "select-gba", 0, 0, 0, 0, 0},
    {kClassReader, 4, C::QueryInfo, S::None, "query-info", 0, 0, 0, 0, 0},
};

std::string text(const char *format, unsigned first, unsigned second)
{
    char buffer[96];
    std::snprintf(buffer, sizeof buffer, format, first, second);
    return buffer;
}

std::string frameFault(const std::uint8_t *bytes, std::size_t size)
{
    if (size < kReaderBlockSize)
        return text("block of %u bytes instead of %u", static_cast<unsigned>(size),
                    static_cast<unsigned>(kReaderBlockSize));
    if (bytes[0] != kBlockSync)
        return text("sync byte 0x%02X instead of 0x%02X", bytes[0], kBlockSync);
    const unsigned expected = blockChecksum(bytes, kChecksumOffset);
    const unsigned found = bytes[kChecksumOffset] * 256U + bytes[kChecksumOffset + 1];
    if (found != expected)
        return text("checksum 0x%04X instead of 0x%04X", found, expected);
    return {};
}

void decodeFields(const std::uint8_t *bytes, DecodedBlock *block)
{
    const CommandShape &shape = *block->shape;
    block->address = littleEndian(bytes + shape.addressOffset, shape.addressWidth);
    block->length = shape.maximum;
    block->data = bytes + shape.dataOffset;
    if (shape.lengthOffset == 0)
        return;
    block->length = littleEndian(bytes + shape.lengthOffset, 2);
    if (block->length == 0 || block->length > shape.maximum)
        block->refusal = text("length %u, allowed are 1 to %u", block->length, shape.maximum);
}

} // namespace

const CommandShape *findCommandShape(std::uint8_t commandClass, std::uint8_t opcode)
{
    for (const CommandShape &shape : kCommands) {
        if (shape.commandClass == commandClass && shape.opcode == opcode)
            return &shape;
    }
    return nullptr;
}

std::uint16_t blockChecksum(const std::uint8_t *bytes, std::size_t size)
{
    std::uint32_t remainder = 0;
    for (std::size_t i = 0; i < size; ++i) {
        remainder ^= static_cast<std::uint32_t>(bytes[i]) << 8;
        for (int bit = 0; bit < 8; ++bit)
            remainder = (remainder << 1) ^ ((remainder & 0x8000U) != 0 ? 0x11021U : 0U);
    }
    return static_cast<std::uint16_t>(remainder);
}

DecodedBlock decodeBlock(const std::uint8_t *bytes, std::size_t size)
{
    DecodedBlock block;
    block.commandClass = size > 1 ? bytes[1] : std::uint8_t{0};
    block.opcode = size > 2 ? bytes[2] : std::uint8_t{0};
    block.refusal = frameFault(bytes, size);
    if (!block.refusal.empty())
        return block;
    block.shape = findCommandShape(block.commandClass, block.opcode);
    if (block.shape == nullptr) {
        block.refusal =
            text("unknown command: class 0x%02X, opcode %u", block.commandClass, block.opcode);
        return block;
    }
    decodeFields(bytes, &block);
    return block;
}

} // namespace virtual_reader
