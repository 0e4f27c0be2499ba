#include "device/sector_window.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace
{

struct AlignedDelete {
    void operator()(std::uint8_t *bytes) const
    {
        ::operator delete(bytes, std::align_val_t(kBounceAlignment));
    }
};

using AlignedBuffer = std::unique_ptr<std::uint8_t, AlignedDelete>;

AlignedBuffer makeAlignedBuffer(std::uint32_t length)
{
    return AlignedBuffer(
        static_cast<std::uint8_t *>(::operator new(length, std::align_val_t(kBounceAlignment))));
}

} // namespace

bool isSectorAligned(const void *address, std::uint32_t length, std::uint32_t offset)
{
    const auto bits = reinterpret_cast<std::uintptr_t>(address) | length | offset;
    return bits % kSectorSize == 0;
}

SectorWindow widenToSectors(std::uint32_t offset, std::uint32_t length)
{
    const std::uint32_t skip = offset % kSectorSize;
    const std::uint64_t end = std::uint64_t{offset} + length;
    const std::uint64_t alignedEnd = (end + kSectorSize - 1) / kSectorSize * kSectorSize;
    const std::uint64_t start = offset - skip;
    return {start, static_cast<std::uint32_t>(alignedEnd - start), skip};
}

DriveStatus readAtPosition(const SectorTransfer &transfer, Buffering buffering, void *destination,
                           std::uint32_t length, std::uint32_t *position, std::uint32_t *count)
{
    *count = 0;
    const DriveStatus status = buffering == Buffering::Buffered
                                   ? transfer(destination, *position, length, count)
                                   : readSectors(transfer, destination, length, *position, count);
    *position += *count;
    return status;
}

DriveStatus readSectors(const SectorTransfer &transfer, void *destination, std::uint32_t length,
                        std::uint32_t offset, std::uint32_t *count)
{
    if (isSectorAligned(destination, length, offset))
        return transfer(destination, offset, length, count);

    const SectorWindow window = widenToSectors(offset, length);
    const AlignedBuffer bounce = makeAlignedBuffer(window.length);
    std::uint32_t arrived = 0;
    const DriveStatus status = transfer(bounce.get(), window.offset, window.length, &arrived);
    *count = arrived > window.skip ? std::min(length, arrived - window.skip) : 0;
    std::memcpy(destination, bounce.get() + window.skip, *count);
    return status;
}
