// Blowfish is deprecated in OpenSSL 3, but its plain functions need no provider to be loaded.
#define OPENSSL_SUPPRESS_DEPRECATED

#include "reference_blowfish.h"

#include <algorithm>

#include <openssl/blowfish.h>

namespace
{

QByteArray transform(const QByteArray &key, const QByteArray &blocks, int direction)
{
    BF_KEY schedule;
    BF_set_key(&schedule, key.size(), reinterpret_cast<const unsigned char *>(key.constData()));
    QByteArray result(blocks.size(), '\0');
    for (int offset = 0; offset < blocks.size(); offset += BF_BLOCK) {
        BF_ecb_encrypt(reinterpret_cast<const unsigned char *>(blocks.constData()) + offset,
                       reinterpret_cast<unsigned char *>(result.data()) + offset, &schedule,
                       direction);
    }
    return result;
}

} // namespace

QByteArray referenceEncipher(const QByteArray &key, const QByteArray &blocks)
{
    return transform(key, blocks, BF_ENCRYPT);
}

QByteArray referenceDecipher(const QByteArray &key, const QByteArray &blocks)
{
    return transform(key, blocks, BF_DECRYPT);
}

QByteArray reverseHalves(const QByteArray &blocks)
{
    QByteArray reversed = blocks;
    for (int offset = 0; offset < reversed.size(); offset += 4)
        std::reverse(reversed.begin() + offset, reversed.begin() + offset + 4);
    return reversed;
}
