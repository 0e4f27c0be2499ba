#include "worker/flash_chip_probe.h"

#include "device/device_ops.h"

#include <array>

namespace
{
constexpr std::uint32_t kQueryAddress = 0xAA; // byte-mode address of the query command
constexpr std::uint32_t kQueryCommand = 0x98;
constexpr std::uint32_t kResetAddress = 0x00;
constexpr std::uint32_t kResetCommand = 0xF0;

constexpr std::size_t kSignatureOffset = 0x20;
constexpr std::size_t kSizeCodeOffset = 0x4E; // holds n of 2^n bytes
constexpr unsigned kSmallestSizeCode = 20;    // 1 MiB
constexpr unsigned kLargestSizeCode = 27;     // 128 MiB

void writeOnce(std::uint32_t address, std::uint32_t value)
{
    deviceOps.gbWrite(&address, &value, 1);
}
} // namespace

FlashChipAnswer decodeFlashQuery(const std::uint8_t *answer)
{
    const std::uint8_t *signature = answer + kSignatureOffset;
    FlashChipAnswer chip;
    chip.isWide = signature[0] == 'Q' && signature[2] == 'R' && signature[4] == 'Y';
    const unsigned code = answer[kSizeCodeOffset];
    if (chip.isWide && code >= kSmallestSizeCode && code <= kLargestSizeCode)
        chip.sizeBytes = 1U << code;
    return chip;
}

void endFlashQuery()
{
    writeOnce(kResetAddress, kResetCommand);
}

FlashChipAnswer probeFlashChip()
{
    std::array<std::uint8_t, kFlashQuerySize> answer{};
    writeOnce(kQueryAddress, kQueryCommand);
    deviceOps.gbRead(0, answer.data(), kFlashQuerySize);
    endFlashQuery();
    return decodeFlashQuery(answer.data());
}
