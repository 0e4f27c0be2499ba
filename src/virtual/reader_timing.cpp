#include "virtual/reader_timing.h"

#include "virtual/option_values.h"

#include <limits>

namespace virtual_reader
{

namespace
{

constexpr std::uint64_t kMicrosecondsInSecond = 1000000;
constexpr std::uint32_t kDirectoryTransfers = 2; // directory entry and FAT

// Typical times of the data sheets. A byte of an Am29F040B or Am29LV160D takes 7 to 9
// microseconds, with its four bus cycles about 10; of a 39VF512 14, with its cycles about 20. An
// EEPROM takes up to 6.5 ms for its 8 bytes (GBATEK, "GBA Cart Backup EEPROM").
constexpr std::uint64_t kFlashByte = 10;
constexpr std::uint64_t kSaveFlashByte = 20;
constexpr std::uint64_t kEepromBlock = 6500;
constexpr std::uint32_t kEepromBlockBytes = 8;

std::uint64_t chipTimeOf(const BlockRecord &block)
{
    const CommandShape *shape = findCommandShape(block.commandClass, block.opcode);
    if (shape == nullptr || block.refused())
        return 0;
    if (shape->command == ReaderCommand::GbProgram8 || shape->command == ReaderCommand::GbProgram16)
        return block.length * kFlashByte;
    if (shape->command != ReaderCommand::GbaSaveWrite)
        return 0;
    switch (shape->saveKind) {
    case SaveKind::Flash64k:
    case SaveKind::Flash128k:
        return block.length * kSaveFlashByte;
    case SaveKind::Eeprom512:
    case SaveKind::Eeprom8k:
        return block.length / kEepromBlockBytes * kEepromBlock;
    case SaveKind::None:
    case SaveKind::Sram:
        return 0;
    }
    return 0;
}

} // namespace

bool parseTiming(const std::string &text, ReaderTiming *timing)
{
    if (text == "full-speed") {
        *timing = kFullSpeedTiming;
        return true;
    }
    const std::size_t colon = text.find(':');
    std::uint64_t microseconds = 0;
    std::string rest;
    if (colon == std::string::npos || !parseCount(text.substr(0, colon), &timing->bytesPerSecond) ||
        !parseNumber(text.substr(colon + 1), &microseconds, &rest) || !rest.empty() ||
        microseconds > std::numeric_limits<std::uint32_t>::max())
        return false;
    timing->transferMicroseconds = static_cast<std::uint32_t>(microseconds);
    return true;
}

std::uint64_t durationOf(const Operation &operation, const ReaderTiming &timing,
                         std::uint32_t oldLength)
{
    if (!timing.isOn())
        return 0;
    const bool isRun = operation.kind == Operation::Kind::CommandRun;
    const std::uint64_t bytes = isRun ? operation.length : operation.count;
    const std::uint32_t transfers =
        isRun && operation.length != oldLength ? 1 + kDirectoryTransfers : 1;
    std::uint64_t duration = std::uint64_t{transfers} * timing.transferMicroseconds +
                             bytes * kMicrosecondsInSecond / timing.bytesPerSecond;
    for (const BlockRecord &block : operation.blocks)
        duration += chipTimeOf(block);
    return duration;
}

} // namespace virtual_reader
