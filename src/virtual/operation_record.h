// What the reader was asked to do, for tests and for the log.
#pragma once

#include "virtual/block_format.h"
#include "virtual/reader_files.h"

#include <cstdint>
#include <string>
#include <vector>

namespace virtual_reader
{

// One block of a command run. Fields that the command does not have are 0.
struct BlockRecord {
    std::uint8_t commandClass = 0;
    std::uint8_t opcode = 0;
    const char *name = "";     // of the command; empty if the reader does not know it
    std::uint32_t address = 0; // as transmitted
    std::uint32_t length = 0;  // bytes of payload, or bytes asked for
    std::uint32_t value = 0;   // of a single bus write
    std::string refusal;       // why it had no effect; empty if it was executed

    bool refused() const { return !refusal.empty(); }
};

struct Operation {
    enum class Kind {
        CommandRun, // the command file took effect
        Read        // a part of a file was read
    };

    Kind kind = Kind::Read;
    // CommandRun
    std::vector<BlockRecord> blocks;
    // Read
    ReaderFile file = ReaderFile::Command;
    std::uint32_t offset = 0;
    std::uint32_t length = 0; // as asked for; for a command run the size of the file
    std::uint32_t count = 0;  // bytes that came back
    bool unbuffered = false;
    // Either: how long a real reader would take, see ReaderTiming; 0 without that model.
    std::uint64_t microseconds = 0;
    // Either: why nothing of it was done; empty if it was served.
    std::string refusal;
};

// Totals since the last clear.
struct OperationCounters {
    std::uint64_t commandRuns = 0;
    std::uint64_t blocks = 0;
    std::uint64_t refusedBlocks = 0;
    std::uint64_t reads = 0; // served ones
    std::uint64_t bytesRead = 0;
    std::uint64_t refusedReads = 0;
    std::uint64_t microseconds = 0; // of all operations
};

void addOperation(OperationCounters *counters, const Operation &operation);

// The operation as one line of JSON, without the line's end.
std::string operationJson(const Operation &operation);

} // namespace virtual_reader
