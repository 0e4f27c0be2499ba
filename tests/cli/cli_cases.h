// The tables of cases of the built program, by what the commands do; and the samples in them.
#pragma once

#include "cli_case.h"

// No command finds a reader.
QVector<CliCase> noReaderCases();
QVector<CliCase> usageCases();
// info and drives.
QVector<CliCase> lookCases();
// dump, read-ram, verify and backup: how they end, what they take from the cartridge, their
// verdicts.
QVector<CliCase> readCases();
QVector<CliCase> usingCases();
QVector<CliCase> verdictCases();
// write-ram and flash.
QVector<CliCase> writeCases();
// scripts, check-script, selftest.
QVector<CliCase> scriptCases();
// A drive that has the reader's files but answers wrongly, too little or not at all.
QVector<CliCase> faultyReaderCases();

constexpr std::uint32_t kKibi = 1024;
constexpr std::uint32_t kRomSize = 128 * kKibi;
constexpr int kRamSize = 32 * kKibi;

const QByteArray kOld = "old";
// The job itself meets the fault, and not the look before it.
const QString kAllSaid = " --no-auto --system gb --mapper mbc5 --rom-size 128K";
const QString kSaveSaid = " --no-auto --system gb --mapper mbc5 --ram-size 32K";

const QString kCart = "cart=DIR/cart";
const QString kSaved = "cart=DIR/cart,save=DIR/kept.sav";
const QString kNoCart = "cart=none";
const QString kNoDrive = "drives:;";

QByteArray gbSample();  // MBC5 with RAM and battery
QByteArray gbaSample(); // a game with an EEPROM of 512 bytes that the table knows, of its full size
QByteArray saveSample();
QByteArray otherSave();
QByteArray tama5Sample();
// A table of known dumps with one row, "A Game (World)" of "Our games".
QByteArray datOf(const QByteArray &image);
// One more in the byte at `offset`.
QByteArray raised(QByteArray image, int offset);
Files operator+(Files files, const Files &more);

// The cases as rows of a test, in the column "row".
void addCases(const QVector<CliCase> &rows);
