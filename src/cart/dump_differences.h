// Where two readings of the same memory differ, or a file and what was read back: which banks,
// which bytes, and how to say it.
//
// Both sides hold `size` bytes.
// Thread: pure functions over bytes; any thread.
#pragma once

#include <QString>
#include <QVector>

#include <cstdint>

// How banks are spoken of, in full texts for the translator: which ones, and of how many.
struct BankWords {
    const char *one;
    const char *several;
};
extern const BankWords kBankWords;
extern const BankWords k4KibBlockWords;
extern const BankWords k64KibBlockWords;

// What a bank is, in bytes.
constexpr std::uint32_t kGbRomBankBytes = 0x4000;
constexpr std::uint32_t kGbSaveBankBytes = 0x2000;
constexpr std::uint32_t kGbaBlockBytes = 0x10000; // a GBA ROM has no banks

// Neighbouring banks, counted from 0; both ends belong to it.
struct BankRange {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
};

struct BankDifferences {
    QVector<BankRange> ranges; // ascending, with equal banks between them; empty if all is equal
    std::uint32_t bankCount = 0;
};

struct ByteDifferences {
    std::uint32_t count = 0;
    std::uint32_t first = 0; // offsets; 0 if there is no difference
    std::uint32_t last = 0;
};

// Compares bank by bank. A rest that is no full bank counts as one. `bankBytes` is not 0.
BankDifferences differingBanks(const std::uint8_t *a, const std::uint8_t *b, std::uint32_t size,
                               std::uint32_t bankBytes);

ByteDifferences differingBytes(const std::uint8_t *a, const std::uint8_t *b, std::uint32_t size);

// "bank 3 of 64", "banks 3, 7-9 of 64". Of many ranges the first eight are named:
// "banks 1, 3, 5, 7, 9, 11, 13, 15 and 24 more of 64".
// Returns: an empty text if there is no difference.
QString describeBanks(const BankDifferences &differences, const BankWords &words);

// "1 of 32768 bytes, at 0x0123", "3 of 32768 bytes, from 0x0123 to 0x7FFF".
// Returns: an empty text if there is no difference.
QString describeBytes(const ByteDifferences &differences, std::uint32_t size);
