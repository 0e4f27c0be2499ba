// Writes that the window is asked for: the cartridge in the slot, the settings, the file.
#pragma once

#include "job_window.h"

#include <functional>

constexpr int kKiB = 1024;
constexpr int kMiB = 1024 * kKiB;

struct WriteCase {
    std::function<std::unique_ptr<virtual_reader::Cartridge>()> cartridge; // none: an empty slot
    std::function<void(JobWindow &)> select;
    ActionButton button = &MainTab::writeRamButton;
    QByteArray file;
    bool isTicked = true;
};
Q_DECLARE_METATYPE(WriteCase)

virtual_reader::ByteVector gbGame(int romSize, std::uint64_t seed, std::uint8_t type = 0x1B);
std::unique_ptr<virtual_reader::Cartridge> gbFlashBoard(const virtual_reader::ByteVector &image,
                                                        virtual_reader::FlashWidth width,
                                                        bool isProtected = false);
std::unique_ptr<virtual_reader::Cartridge> gbaBoard(virtual_reader::GbaSaveType type, int size,
                                                    const char *code = "ZVRE");
std::unique_ptr<virtual_reader::Cartridge> gbSaveBoard(const QByteArray &save);
// The board takes the settings' 32 KiB of save memory.
WriteCase gbSave(const QByteArray &file, const QByteArray &old = noise(32 * kKiB, 1));
WriteCase gbaSave(virtual_reader::GbaSaveType type, int choice, int size, int chosenSize = 0);
// One bank pair of 32 KiB without a mapper, where an 8-bit chip needs no long backup.
WriteCase narrowFlash(const QByteArray &file, bool isProtected = false);
WriteCase wideFlash(const QByteArray &file, int chipSize);
WriteCase behindMapper(int mapper, WriteCase row);
WriteCase emptySlot(WriteCase row);
WriteCase unticked(WriteCase row);
// Bytes that no erased chip and no empty slot shows.
QByteArray withoutErased(QByteArray bytes);
QByteArray gbFile(int size, std::uint8_t type = 0x1B);
std::unique_ptr<JobWindow> windowFor(const WriteCase &row);
QByteArray contentOf(JobWindow &window, const WriteCase &row);
// Command files that a write makes from its first press to the rule.
unsigned commandsOf(const WriteCase &row);
