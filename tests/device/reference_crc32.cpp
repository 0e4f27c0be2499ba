#include "reference_crc32.h"

#include <zlib.h>

std::uint32_t referenceCrc32(std::uint32_t crc, const QByteArray &bytes)
{
    const auto *data = reinterpret_cast<const Bytef *>(bytes.constData());
    return static_cast<std::uint32_t>(::crc32(crc, data, static_cast<uInt>(bytes.size())));
}
