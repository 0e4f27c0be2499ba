// The cartridge reader itself, modelled from its side of the drive: three files, a command
// interpreter, two cartridge buses, one slot.
//
// A front end presents the files to a host: it hands over every command file that took effect, and
// every read of any file. docs/reader-protocol.md says what is known of the reader and what is
// assumed.
//
// Thread: one user at a time.
#pragma once

#include "virtual/cartridge.h"
#include "virtual/operation_record.h"
#include "virtual/payload_decipher.h"
#include "virtual/reader_files.h"
#include "virtual/reader_timing.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace virtual_reader
{

// What goes wrong with the reader, for whoever wants to see what a program does then. Command files
// are counted from 1, as they take effect; 0 is none.
struct ReaderFault {
    std::uint32_t failedCommand = 0; // this command file does nothing and reports an error
    std::uint32_t pulledAt = 0;      // at this one the reader is pulled out: nothing works any more
};

struct VirtualReaderConfig {
    // Up to 16 bytes; shorter ones are padded with NUL.
    std::string identity = "QDX_PCB02_FW303";
    // Key of the flash payloads, first half of the information reply.
    CipherKey key = {0x3B, 0xA7, 0x10, 0xE4, 0x5C, 0x92, 0xF8, 0x6D};
    // Refuse unbuffered reads that a disk refuses: offset and length must be multiples of 512.
    bool strictSectors = false;
    // Keep every operation in memory; counters run either way.
    bool keepOperations = true;
    ReaderTiming timing;
    // Called behind every operation that takes time; empty: nobody waits for it.
    std::function<void(std::uint64_t microseconds)> wait;
    ReaderFault fault;
};

class VirtualReader
{
public:
    // `cartridge` may be null: an empty slot.
    explicit VirtualReader(std::unique_ptr<Cartridge> cartridge, VirtualReaderConfig config = {});

    // Swaps the cartridge; null empties the slot. The reader keeps its bus.
    void insertCartridge(std::unique_ptr<Cartridge> cartridge);
    Cartridge &cartridge() { return *m_cartridge; }

    // The command file holds these `size` bytes and takes effect: its blocks are executed in order.
    // A block that is not valid is recorded as refused and has no effect; the ones behind it are
    // executed all the same.
    // Returns: false if the run failed as a whole, which only a ReaderFault makes it.
    bool commandFileWritten(const std::uint8_t *bytes, std::size_t size);
    // Whether the next commandFileWritten() will return false. Changes nothing.
    bool failsNextRun() const;

    // Pulled out, see ReaderFault.
    bool isGone() const { return m_isGone; }

    // Size of a file in bytes.
    std::uint32_t fileSize(ReaderFile file) const;

    // Reads up to `length` bytes at `offset` to `destination`. Reading DUMP.ROM makes bus cycles at
    // every address transferred.
    // Returns: bytes read, fewer than `length` only at the end of the file; nothing if the request
    // was refused, which strict sectors do, or if the reader is gone.
    std::optional<std::uint32_t> readFile(ReaderFile file, std::uint32_t offset,
                                          std::uint8_t *destination, std::uint32_t length,
                                          bool unbuffered);

    // Everything recorded since the last clear.
    const std::vector<Operation> &operations() const { return m_operations; }
    const OperationCounters &counters() const { return m_counters; }
    void clearOperations();
    // Called with every operation after it is done; empty for none.
    void setListener(std::function<void(const Operation &)> listener);

private:
    enum class Bus { None, Gb, Gba };

    bool isGoneAt(std::uint32_t run) const;
    BlockRecord executeBlock(const std::uint8_t *bytes, std::size_t size);
    std::string busRefusal(const DecodedBlock &block) const;
    // The reason if the command has no effect; empty if it was executed.
    std::string execute(const DecodedBlock &block);
    void selectBus(Bus bus);
    void gbRamWrite(const DecodedBlock &block);
    std::string gbProgram(const DecodedBlock &block, std::uint32_t unlock1, std::uint32_t unlock2);
    // Waits until a flash chip shows the byte that it was told to program.
    void awaitGbByte(std::uint16_t address, std::uint8_t value);
    std::string gbaSaveRead(const DecodedBlock &block);
    std::string gbaSaveWrite(const DecodedBlock &block);
    void queryInfo();
    std::uint8_t *clearedReply();

    // `count` bytes that lie within the file.
    void copyFile(ReaderFile file, std::uint32_t offset, std::uint8_t *destination,
                  std::uint32_t count);
    // `count` bytes of what DUMP.ROM shows, by bus cycles.
    void readBus(std::uint32_t offset, std::uint8_t *destination, std::uint32_t count);
    void readGbaBus(std::uint32_t offset, std::uint8_t *destination, std::uint32_t count);
    std::string runRefusal();
    // Passes the time that the operation takes, and keeps its record. `oldLength`: of the command
    // file before.
    void finish(Operation operation, std::uint32_t oldLength = 0);

    VirtualReaderConfig m_config;
    std::unique_ptr<Cartridge> m_cartridge;
    std::optional<PayloadDecipher> m_decipher; // made when the first payload comes
    Bus m_bus = Bus::None;
    bool m_started = false; // the selected bus was started
    bool m_isGone = false;
    std::uint32_t m_runs = 0;       // command files so far, failed ones included
    std::uint32_t m_gbaAddress = 0; // halfwords; what offset 0 of DUMP.ROM shows
    ByteVector m_commandFile;
    ByteVector m_driverFile;
    std::vector<Operation> m_operations;
    OperationCounters m_counters;
    std::function<void(const Operation &)> m_listener;
};

} // namespace virtual_reader
