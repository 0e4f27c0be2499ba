#include "virtual/operation_record.h"

#include <cstdio>

namespace virtual_reader
{

namespace
{

// Names and reasons are this program's own ASCII texts; only quotes need an escape.
std::string quoted(const std::string &text)
{
    std::string result = "\"";
    for (const char character : text) {
        if (character == '"' || character == '\\')
            result += '\\';
        result += character;
    }
    return result + '"';
}

std::string field(const char *name, std::uint64_t value)
{
    return ",\"" + std::string(name) + "\":" + std::to_string(value);
}

std::string refusalField(const std::string &refusal)
{
    return refusal.empty() ? std::string() : ",\"refused\":" + quoted(refusal);
}

// Only where the reader takes time.
std::string timeField(const Operation &operation)
{
    return operation.microseconds == 0 ? std::string() : field("us", operation.microseconds);
}

std::string blockJson(const BlockRecord &block)
{
    return "{\"class\":" + std::to_string(block.commandClass) + field("opcode", block.opcode) +
           ",\"name\":" + quoted(block.name) + field("address", block.address) +
           field("length", block.length) + field("value", block.value) +
           refusalField(block.refusal) + "}";
}

} // namespace

void addOperation(OperationCounters *counters, const Operation &operation)
{
    counters->microseconds += operation.microseconds;
    if (operation.kind == Operation::Kind::CommandRun) {
        ++counters->commandRuns;
        counters->blocks += operation.blocks.size();
        for (const BlockRecord &block : operation.blocks)
            counters->refusedBlocks += block.refused() ? 1 : 0;
    } else if (operation.refusal.empty()) {
        ++counters->reads;
        counters->bytesRead += operation.count;
    } else {
        ++counters->refusedReads;
    }
}

std::string operationJson(const Operation &operation)
{
    if (operation.kind == Operation::Kind::CommandRun) {
        std::string line =
            "{\"op\":\"command\"" + field("bytes", operation.length) + ",\"blocks\":[";
        for (std::size_t i = 0; i < operation.blocks.size(); ++i)
            line += (i == 0 ? "" : ",") + blockJson(operation.blocks[i]);
        return line + "]" + timeField(operation) + refusalField(operation.refusal) + "}";
    }
    const char *fileName = kReaderFileNames[static_cast<std::size_t>(operation.file)];
    return "{\"op\":\"read\",\"file\":" + quoted(fileName) + field("offset", operation.offset) +
           field("length", operation.length) + field("count", operation.count) +
           ",\"unbuffered\":" + (operation.unbuffered ? "true" : "false") + timeField(operation) +
           refusalField(operation.refusal) + "}";
}

} // namespace virtual_reader
