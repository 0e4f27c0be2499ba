// Where the user and the cartridge contradict each other, and what may be done all the same. One of
// them is wrong, and a job with the script of another mapper, or with the commands of another save
// memory, can destroy what the cartridge keeps.
//
// Thread: pure functions; any thread.
#pragma once

#include "trust/cartridge_values.h"

enum class Contradiction { None, Mapper, SaveType, SaveSize };

// What of `said` contradicts the cartridge where it matters for the task. `named`: what the
// cartridge itself names. Reads are made with any size, which changes nothing. A flash chip's
// header is that of the game in it and does not speak of the board, so nothing contradicts it.
Contradiction contradictionOf(CartridgeTask task, const CartridgeValues &said,
                              const CartridgeValues &named);

// Whether the cartridge, or the game table, names just the save memory that is `used`: mapper or
// type, and size. Then a save of equal bytes is an empty one and no wrong kind of memory.
bool isNamedSave(const CartridgeValues &used, const CartridgeValues &named);

// True of reads that write where another board keeps its save: those with the script of the TAMA5,
// whose registers lie at 0xA000, and those as FLASH of 128 KiB, before which the reader selects a
// bank.
bool writesWhereSavesAre(const CartridgeJob &readJob);
