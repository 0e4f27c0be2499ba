// The cartridges on which single faults are tried, all of them small.
#pragma once

#include "fault_bench.h"

#include <QMetaType>

constexpr std::uint32_t kKibi = 1024;

// A GB cartridge with a save of `size` bytes; write-ram.
BenchCase gbSave(std::uint8_t headerType, std::uint32_t size, char keptBits = '\xFF');

// A GBA cartridge likewise. `choice`: the save type as the user says it.
BenchCase gbaSave(virtual_reader::GbaSaveType type, int choice, int size);

// A GB flash cartridge; flash.
BenchCase gbFlash(virtual_reader::FlashWidth width);

// `bench` with another command.
BenchCase with(BenchCommand command, BenchCase bench);

Q_DECLARE_METATYPE(BenchCase)
