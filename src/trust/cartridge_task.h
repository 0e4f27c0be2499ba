// From what is known of a cartridge to a job on it.
//
// Thread: pure functions; any thread.
#pragma once

#include "script/job.h"

#include <QString>

#include <optional>

// What is known of the cartridge, from the user or from its header; the values of the settings
// tables. Sizes in bytes.
struct CartridgeValues {
    std::optional<int> system;
    std::optional<int> mapper;
    std::optional<int> romSize;
    std::optional<int> ramSize;
    std::optional<int> saveType;
};

// What a user can want of a cartridge, whatever its system.
enum class CartridgeTask { Dump, ReadSave, WriteSave, Flash };

// What the bus of a GBA cartridge reaches, in bytes.
constexpr int kLargestGbaRom = 32 * 1024 * 1024;

// What a job lacks.
enum class MissingValue {
    None,
    System,
    Mapper,
    SaveType,
    RomSize,
    SaveSize,
    SavePair // the save type has no memory of this size, and any other pair would be taken for SRAM
};

// Makes the job of a task, with a shipped script. A flash job gets its size from what is written.
// Returns: what is missing or wrong; `*job` is then of no use.
[[nodiscard]] MissingValue makeJob(CartridgeTask task, const CartridgeValues &values,
                                   CartridgeJob *job);

// The job that reads what `writeJob`, of a save, writes.
CartridgeJob saveReadingJob(const CartridgeJob &writeJob);

// The job that reads `bytes` bytes of what a flash job writes.
CartridgeJob romReadingJob(const CartridgeJob &flashJob, int bytes);

// The mapper whose script a GB job runs; none for a GBA job and a script of one's own.
std::optional<int> mapperOf(const CartridgeJob &job);

// The folder of the shipped mapper scripts, beside the program.
QString mapperFolder();
