// The reader's decipher against an independent Blowfish.
#define OPENSSL_API_COMPAT 0x10100000L // the plain block function is deprecated since 3.0
#include "test_class.h"
#include "virtual/image_generator.h"
#include "virtual/payload_decipher.h"

#include <openssl/blowfish.h>

#include <QtTest>

#include <algorithm>

using namespace virtual_reader;

namespace
{

CipherKey keyFrom(const ByteVector &bytes)
{
    CipherKey key{};
    std::copy_n(bytes.begin(), key.size(), key.begin());
    return key;
}

// Enciphers as a host does: two halves, least significant byte first.
void encipher(const CipherKey &key, std::uint8_t *block)
{
    BF_KEY schedule;
    BF_set_key(&schedule, static_cast<int>(key.size()), key.data());
    BF_LONG halves[2] = {littleEndian(block, 4), littleEndian(block + 4, 4)};
    BF_encrypt(halves, &schedule);
    putLittleEndian(block, halves[0], 4);
    putLittleEndian(block + 4, halves[1], 4);
}

} // namespace

class PayloadDecipherTest : public QObject
{
    Q_OBJECT

private slots:
    void publishedVectorWithSwappedHalves();
    void undoesAnIndependentEncipher_data();
    void undoesAnIndependentEncipher();
};

// Key and plain text all zero give 4EF99745 6198DD78.
void PayloadDecipherTest::publishedVectorWithSwappedHalves()
{
    std::uint8_t block[8] = {0x45, 0x97, 0xF9, 0x4E, 0x78, 0xDD, 0x98, 0x61};
    PayloadDecipher(CipherKey{}).decipher(block);
    QVERIFY(std::all_of(std::begin(block), std::end(block), [](auto byte) { return byte == 0; }));
}

void PayloadDecipherTest::undoesAnIndependentEncipher_data()
{
    QTest::addColumn<quint64>("seed");
    for (quint64 seed = 1; seed <= 20; ++seed)
        QTest::newRow(QByteArray::number(seed).constData()) << seed;
}

void PayloadDecipherTest::undoesAnIndependentEncipher()
{
    QFETCH(quint64, seed);
    const CipherKey key = keyFrom(makeNoise(8, seed));
    const PayloadDecipher decipher(key);
    const ByteVector plain = makeNoise(64, seed + 1000);
    ByteVector bytes = plain;
    for (std::size_t offset = 0; offset < bytes.size(); offset += 8) {
        encipher(key, bytes.data() + offset);
        QVERIFY(!std::equal(bytes.begin() + static_cast<std::ptrdiff_t>(offset),
                            bytes.begin() + static_cast<std::ptrdiff_t>(offset + 8),
                            plain.begin() + static_cast<std::ptrdiff_t>(offset)));
        decipher.decipher(bytes.data() + offset);
    }
    QVERIFY(bytes == plain);
}

GBDRIVER_TEST(PayloadDecipherTest, none)
#include "payload_decipher_test.moc"
