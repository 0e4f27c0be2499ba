// The payload cipher against the digits of pi, the published vectors and OpenSSL.
#include "device/payload_cipher.h"

#include "constants/pi_words.h"

#include "pi_fraction.h"
#include "reference_blowfish.h"
#include "test_bytes.h"
#include "test_class.h"

#include <QtEndian>
#include <QtTest>

namespace
{

using Transform = void (*)(std::uint8_t *, std::uint32_t);

void setKey(const QByteArray &key)
{
    cipherSetKey(constBytesOf(key), static_cast<std::uint32_t>(key.size()));
}

QByteArray transformed(Transform transform, QByteArray bytes)
{
    transform(bytesOf(bytes), static_cast<std::uint32_t>(bytes.size()));
    return bytes;
}

CipherState initialState()
{
    CipherState state = {};
    const std::uint32_t *word = kPiWords;
    for (std::uint32_t &subkey : state.subkeys)
        subkey = *word++;
    for (auto &box : state.boxes) {
        for (std::uint32_t &entry : box)
            entry = *word++;
    }
    return state;
}

// The published key schedule for a key of 8 bytes.
CipherState keyedState(const QByteArray &key)
{
    CipherState state = initialState();
    for (int i = 0; i < kBlowfishSubkeys; ++i)
        state.subkeys[i] ^= qFromBigEndian<quint32>(key.constData() + (i % 2) * 4);
    std::uint32_t left = 0;
    std::uint32_t right = 0;
    for (int i = 0; i < kBlowfishSubkeys; i += 2) {
        blowfishEncryptBlock(state, &left, &right);
        state.subkeys[i] = left;
        state.subkeys[i + 1] = right;
    }
    for (int i = 0; i < kBlowfishBoxes * kBlowfishBoxSize; i += 2) {
        blowfishEncryptBlock(state, &left, &right);
        state.boxes[i / kBlowfishBoxSize][i % kBlowfishBoxSize] = left;
        state.boxes[i / kBlowfishBoxSize][i % kBlowfishBoxSize + 1] = right;
    }
    return state;
}

} // namespace

class PayloadCipherTest : public QObject
{
    Q_OBJECT

private slots:
    void unkeyedStateHoldsTheInitialValues(); // must run first: keys last for the process
    void initialValuesAreTheDigitsOfPi();
    void publishedVectors_data();
    void publishedVectors();
    void eightByteKeysMatchOpenSsl();
    void everyKeyLengthMatchesOpenSsl();
    void keyOfEightIsTheSameThroughBothFunctions();
    void emptyKeyIsIgnored();
    void keyingStartsAfresh();
    void decipherUndoesEncipher();
    void encipherUndoesDecipher();
    void touchesWholeGroupsOnly_data();
    void touchesWholeGroupsOnly();
    void equalGroupsEncipherEqually();
};

void PayloadCipherTest::unkeyedStateHoldsTheInitialValues()
{
    const CipherState initial = initialState();
    std::uint32_t left = 0x03020100;
    std::uint32_t right = 0x07060504;
    blowfishEncryptBlock(initial, &left, &right);
    QByteArray expected(8, '\0');
    qToLittleEndian<quint32>(left, expected.data());
    qToLittleEndian<quint32>(right, expected.data() + 4);
    QCOMPARE(transformed(cipherEncipher, QByteArray::fromHex("0001020304050607")).toHex(),
             expected.toHex());
}

void PayloadCipherTest::initialValuesAreTheDigitsOfPi()
{
    const std::vector<std::uint32_t> pi = piFractionWords(kPiWordCount);
    QCOMPARE(pi[0], 0x243F6A88U);
    for (std::size_t i = 0; i < kPiWordCount; ++i)
        QVERIFY2(kPiWords[i] == pi[i], qPrintable(QString("word %1").arg(i)));
}

void PayloadCipherTest::publishedVectors_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("plain");
    QTest::addColumn<QByteArray>("enciphered");
    // A choice from E. Young's test vectors, published with the cipher.
    const char *const rows[][3] = {
        {"0000000000000000", "0000000000000000", "4EF997456198DD78"},
        {"FFFFFFFFFFFFFFFF", "FFFFFFFFFFFFFFFF", "51866FD5B85ECB8A"},
        {"3000000000000000", "1000000000000001", "7D856F9A613063F2"},
        {"1111111111111111", "1111111111111111", "2466DD878B963C9D"},
        {"0123456789ABCDEF", "1111111111111111", "61F9C3802281B096"},
        {"1111111111111111", "0123456789ABCDEF", "7D0CC630AFDA1EC7"},
        {"FEDCBA9876543210", "0123456789ABCDEF", "0ACEAB0FC6A0A28D"},
        {"7CA110454A1A6E57", "01A1D6D039776742", "59C68245EB05282B"},
        {"0131D9619DC1376E", "5CD54CA83DEF57DA", "B1B8CC0B250F09A0"},
        {"FFFFFFFFFFFFFFFF", "0000000000000000", "F21E9A77B71C49BC"},
        {"0123456789ABCDEF", "0000000000000000", "245946885754369A"},
        {"FEDCBA9876543210", "FFFFFFFFFFFFFFFF", "6B5C5A9C5D9E0A5A"},
    };
    for (const auto &row : rows) {
        QTest::addRow("%s %s", row[0], row[1])
            << QByteArray::fromHex(row[0]) << QByteArray::fromHex(row[1])
            << QByteArray::fromHex(row[2]);
    }
}

void PayloadCipherTest::publishedVectors()
{
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, plain);
    QFETCH(QByteArray, enciphered);
    const CipherState state = keyedState(key);
    std::uint32_t left = qFromBigEndian<quint32>(plain.constData());
    std::uint32_t right = qFromBigEndian<quint32>(plain.constData() + 4);
    blowfishEncryptBlock(state, &left, &right);
    QCOMPARE(left, qFromBigEndian<quint32>(enciphered.constData()));
    QCOMPARE(right, qFromBigEndian<quint32>(enciphered.constData() + 4));
    blowfishDecryptBlock(state, &left, &right);
    QCOMPARE(left, qFromBigEndian<quint32>(plain.constData()));
    QCOMPARE(right, qFromBigEndian<quint32>(plain.constData() + 4));

    setKey(key);
    QCOMPARE(transformed(cipherEncipher, reverseHalves(plain)), reverseHalves(enciphered));
    QCOMPARE(transformed(cipherDecipher, reverseHalves(enciphered)), reverseHalves(plain));
}

void PayloadCipherTest::eightByteKeysMatchOpenSsl()
{
    for (std::uint32_t seed = 0; seed < 24; ++seed) {
        const QByteArray key = seed == 0 ? QByteArray(8, '\0') : patternBytes(8, seed);
        const QByteArray plain = patternBytes(64, seed + 1000);
        const QByteArray expected = reverseHalves(referenceEncipher(key, reverseHalves(plain)));
        cipherSetKey8(constBytesOf(key));
        QCOMPARE(transformed(cipherEncipher, plain).toHex(), expected.toHex());
        QCOMPARE(transformed(cipherDecipher, plain).toHex(),
                 reverseHalves(referenceDecipher(key, reverseHalves(plain))).toHex());
    }
}

void PayloadCipherTest::everyKeyLengthMatchesOpenSsl()
{
    const QByteArray plain = patternBytes(16, 77);
    for (int length = 1; length <= 72; ++length) { // 72: all 18 subkeys take different key bytes
        const QByteArray key = patternBytes(length, static_cast<std::uint32_t>(length) + 500);
        setKey(key);
        QCOMPARE(transformed(cipherEncipher, plain).toHex(),
                 reverseHalves(referenceEncipher(key, reverseHalves(plain))).toHex());
    }
}

void PayloadCipherTest::keyOfEightIsTheSameThroughBothFunctions()
{
    const QByteArray key = patternBytes(16, 8); // bytes behind the eighth must not matter
    cipherSetKey8(constBytesOf(key));
    const QByteArray first = transformed(cipherEncipher, QByteArray(8, 'x'));
    setKey(key.left(8));
    QCOMPARE(transformed(cipherEncipher, QByteArray(8, 'x')), first);
}

void PayloadCipherTest::emptyKeyIsIgnored()
{
    setKey("some key");
    const QByteArray before = transformed(cipherEncipher, QByteArray(8, 'x'));
    cipherSetKey(nullptr, 0);
    QCOMPARE(transformed(cipherEncipher, QByteArray(8, 'x')), before);
}

void PayloadCipherTest::keyingStartsAfresh()
{
    setKey("first");
    const QByteArray first = transformed(cipherEncipher, QByteArray(8, 'x'));
    setKey("second");
    QVERIFY(transformed(cipherEncipher, QByteArray(8, 'x')) != first);
    setKey("first");
    QCOMPARE(transformed(cipherEncipher, QByteArray(8, 'x')), first);
}

void PayloadCipherTest::decipherUndoesEncipher()
{
    for (std::uint32_t seed = 1; seed <= 50; ++seed) {
        setKey(patternBytes(8, seed));
        const QByteArray plain = patternBytes(480, seed + 50);
        const QByteArray enciphered = transformed(cipherEncipher, plain);
        QVERIFY(enciphered != plain);
        QCOMPARE(transformed(cipherDecipher, enciphered), plain);
    }
}

void PayloadCipherTest::encipherUndoesDecipher()
{
    setKey("12345678");
    const QByteArray bytes = patternBytes(480, 60);
    QCOMPARE(transformed(cipherEncipher, transformed(cipherDecipher, bytes)), bytes);
}

void PayloadCipherTest::touchesWholeGroupsOnly_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("touched");
    const int rows[][2] = {{0, 0}, {1, 8}, {7, 8}, {8, 8}, {9, 16}, {16, 16}, {17, 24}, {480, 480}};
    for (const auto &row : rows)
        QTest::addRow("%d", row[0]) << row[0] << row[1];
}

void PayloadCipherTest::touchesWholeGroupsOnly()
{
    QFETCH(int, length);
    QFETCH(int, touched);
    constexpr int kGuard = 32;
    const QByteArray key = patternBytes(8, 12);
    setKey(key);
    const QByteArray before = patternBytes(kGuard + touched + kGuard, 13);
    QByteArray bytes = before;
    const QByteArray expected =
        reverseHalves(referenceEncipher(key, reverseHalves(before.mid(kGuard, touched))));
    cipherEncipher(bytesOf(bytes) + kGuard, static_cast<std::uint32_t>(length));
    QCOMPARE(bytes.left(kGuard), before.left(kGuard));
    QCOMPARE(bytes.mid(kGuard, touched), expected);
    QCOMPARE(bytes.mid(kGuard + touched), before.mid(kGuard + touched));
    cipherDecipher(bytesOf(bytes) + kGuard, static_cast<std::uint32_t>(length));
    QCOMPARE(bytes, before);
}

void PayloadCipherTest::equalGroupsEncipherEqually()
{
    setKey("12345678");
    const QByteArray enciphered = transformed(cipherEncipher, QByteArray(16, 'q'));
    QCOMPARE(enciphered.left(8), enciphered.mid(8));
}

GBDRIVER_TEST(PayloadCipherTest, none)
#include "payload_cipher_test.moc"
