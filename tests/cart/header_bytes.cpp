#include "header_bytes.h"

#include "constants/boot_logos.h"

namespace
{

template <typename Logo> QByteArray bytesOfLogo(const Logo &logo)
{
    return {reinterpret_cast<const char *>(logo.data()), static_cast<int>(logo.size())};
}

// The sum of the bytes from `first` to `last`, both included.
int sumOf(const QByteArray &bytes, int first, int last)
{
    int sum = 0;
    for (int offset = first; offset <= last; ++offset)
        sum += static_cast<std::uint8_t>(bytes[offset]);
    return sum;
}

} // namespace

QByteArray makeGbHeader()
{
    QByteArray header(0x150, '\0');
    putBytes(&header, 0x104, bytesOfLogo(kGbBootLogo));
    putBytes(&header, 0x134, "TEST");
    // Each of the 25 bytes is subtracted together with 1.
    header[0x14D] = static_cast<char>(-sumOf(header, 0x134, 0x14C) - 25);
    return header;
}

QByteArray makeGbaHeader(const QByteArray &code)
{
    QByteArray header(0xC0, '\0');
    putBytes(&header, 0x04, bytesOfLogo(kGbaBootLogo));
    putBytes(&header, 0xA0, "TEST");
    putBytes(&header, 0xAC, code);
    header[0xB2] = static_cast<char>(0x96);
    header[0xBD] = static_cast<char>(-sumOf(header, 0xA0, 0xBC) - 0x19);
    return header;
}

void putBytes(QByteArray *target, int offset, const QByteArray &bytes)
{
    target->replace(offset, bytes.size(), bytes);
}

const std::uint8_t *constBytesOf(const QByteArray &bytes)
{
    return reinterpret_cast<const std::uint8_t *>(bytes.constData());
}

QByteArray withFlippedBits(QByteArray bytes, int offset, int mask)
{
    bytes[offset] = static_cast<char>(static_cast<std::uint8_t>(bytes[offset]) ^ mask);
    return bytes;
}
