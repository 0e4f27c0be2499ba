// The three files of the reader's drive: names and sizes.
//
// The host caches directory and file sizes and never looks again, so sizes are fixed; only the
// command file is as long as what was written to it last.
#pragma once

#include <cstddef>
#include <cstdint>

namespace virtual_reader
{

enum class ReaderFile { Command, Driver, Dump };

constexpr std::size_t kReaderFileCount = 3;
// In the order of ReaderFile.
constexpr const char *kReaderFileNames[kReaderFileCount] = {"CMD.CMD", "K-DRIVER.DMP", "DUMP.ROM"};

constexpr std::uint32_t kDriverFileSize = 64 * 1024;
// The highest offset that a host reads is 1 MiB, the unit of a GBA dump.
constexpr std::uint32_t kDumpFileSize = 1024 * 1024;
constexpr std::uint32_t kCommandFileLimit = 16 * 1024 * 1024;

// K-DRIVER.DMP: replies from its start up to the identity.
constexpr std::uint32_t kReplyAreaSize = 0x8000;
constexpr std::uint32_t kReaderIdentityOffset = 0x8000;
constexpr std::uint32_t kReaderIdentitySize = 16;

constexpr std::uint32_t kReaderSectorSize = 512;

} // namespace virtual_reader
