#include "device/payload_cipher.h"

#include "constants/pi_words.h"

#include <cstring>
#include <utility>

namespace
{

using BlockOperation = void (*)(const CipherState &, std::uint32_t *, std::uint32_t *);

CipherState unkeyedState()
{
    CipherState state;
    static_assert(sizeof(kPiWords) == sizeof(state.subkeys) + sizeof(state.boxes));
    std::memcpy(state.subkeys, kPiWords, sizeof(state.subkeys));
    std::memcpy(state.boxes, kPiWords + kBlowfishSubkeys, sizeof(state.boxes));
    return state;
}

CipherState cipherState = unkeyedState();

std::uint32_t roundFunction(const CipherState &state, std::uint32_t half)
{
    const std::uint32_t sum = state.boxes[0][half >> 24] + state.boxes[1][(half >> 16) & 0xFF];
    return (sum ^ state.boxes[2][(half >> 8) & 0xFF]) + state.boxes[3][half & 0xFF];
}

std::uint32_t loadHalf(const std::uint8_t *bytes)
{
    return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8 |
           static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

void storeHalf(std::uint8_t *bytes, std::uint32_t half)
{
    for (int i = 0; i < 4; ++i)
        bytes[i] = static_cast<std::uint8_t>(half >> (8 * i));
}

void transform(std::uint8_t *bytes, std::uint32_t length, BlockOperation operation)
{
    for (std::uint32_t offset = 0; offset < length; offset += kCipherBlockSize) {
        std::uint8_t *block = bytes + offset;
        std::uint32_t left = loadHalf(block);
        std::uint32_t right = loadHalf(block + 4);
        operation(cipherState, &left, &right);
        storeHalf(block, left);
        storeHalf(block + 4, right);
    }
}

void mixKeyIntoSubkeys(CipherState *state, const std::uint8_t *key, std::uint32_t length)
{
    std::uint32_t next = 0;
    for (std::uint32_t &subkey : state->subkeys) {
        std::uint32_t word = 0;
        for (int i = 0; i < 4; ++i) {
            word = word << 8 | key[next];
            next = (next + 1) % length;
        }
        subkey ^= word;
    }
}

} // namespace

void blowfishEncryptBlock(const CipherState &state, std::uint32_t *left, std::uint32_t *right)
{
    for (int round = 0; round < kBlowfishRounds; ++round) {
        *left ^= state.subkeys[round];
        *right ^= roundFunction(state, *left);
        std::swap(*left, *right);
    }
    std::swap(*left, *right);
    *right ^= state.subkeys[kBlowfishRounds];
    *left ^= state.subkeys[kBlowfishRounds + 1];
}

void blowfishDecryptBlock(const CipherState &state, std::uint32_t *left, std::uint32_t *right)
{
    for (int round = kBlowfishRounds + 1; round > 1; --round) {
        *left ^= state.subkeys[round];
        *right ^= roundFunction(state, *left);
        std::swap(*left, *right);
    }
    std::swap(*left, *right);
    *right ^= state.subkeys[1];
    *left ^= state.subkeys[0];
}

void cipherSetKey(const std::uint8_t *key, std::uint32_t length)
{
    if (length == 0)
        return;
    cipherState = unkeyedState();
    mixKeyIntoSubkeys(&cipherState, key, length);

    std::uint32_t left = 0;
    std::uint32_t right = 0;
    const auto replacePair = [&](std::uint32_t *pair) {
        blowfishEncryptBlock(cipherState, &left, &right);
        pair[0] = left;
        pair[1] = right;
    };
    for (int i = 0; i < kBlowfishSubkeys; i += 2)
        replacePair(&cipherState.subkeys[i]);
    for (auto &box : cipherState.boxes) {
        for (int i = 0; i < kBlowfishBoxSize; i += 2)
            replacePair(&box[i]);
    }
}

void cipherSetKey8(const std::uint8_t *key)
{
    cipherSetKey(key, 8);
}

void cipherEncipher(std::uint8_t *bytes, std::uint32_t length)
{
    transform(bytes, length, blowfishEncryptBlock);
}

void cipherDecipher(std::uint8_t *bytes, std::uint32_t length)
{
    transform(bytes, length, blowfishDecryptBlock);
}
