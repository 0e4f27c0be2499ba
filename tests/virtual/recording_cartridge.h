// A cartridge that writes down its bus, and a reader that holds one.
#pragma once

#include "command_blocks.h"

#include "virtual/virtual_reader.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

struct SaveAccess {
    virtual_reader::SaveKind kind;
    std::uint32_t address;
    std::uint32_t length;
    virtual_reader::ByteVector bytes;
};

// Answers every read with a pattern of its address and writes down everything else.
class RecordingCartridge : public virtual_reader::Cartridge
{
public:
    struct Log {
        std::vector<std::pair<std::uint32_t, std::uint32_t>> gbWrites;
        std::vector<std::pair<std::uint32_t, std::uint32_t>> gbaWrites;
        std::vector<std::uint32_t> gbReads;
        std::vector<std::uint32_t> gbaReads;
        std::vector<SaveAccess> saveReads;
        std::vector<SaveAccess> saveWrites;
        int erases = 0;
        bool hasSave = true;
    };

    explicit RecordingCartridge(Log &log) : m_log(log) {}

    std::uint8_t gbRead(std::uint16_t address) override
    {
        m_log.gbReads.push_back(address);
        return static_cast<std::uint8_t>(address ^ (address >> 8));
    }
    void gbWrite(std::uint16_t address, std::uint8_t value) override
    {
        m_log.gbWrites.emplace_back(address, value);
    }
    std::uint16_t gbaRead(std::uint32_t address) override
    {
        m_log.gbaReads.push_back(address);
        return static_cast<std::uint16_t>(address * 3);
    }
    void gbaWrite(std::uint32_t address, std::uint16_t value) override
    {
        m_log.gbaWrites.emplace_back(address, value);
    }
    bool gbaSaveRead(virtual_reader::SaveKind kind, std::uint32_t address,
                     std::uint8_t *destination, std::uint32_t length) override
    {
        m_log.saveReads.push_back({kind, address, length, {}});
        if (m_log.hasSave)
            std::fill_n(destination, length, std::uint8_t{0x5C});
        return m_log.hasSave;
    }
    bool gbaSaveWrite(virtual_reader::SaveKind kind, std::uint32_t address,
                      const std::uint8_t *source, std::uint32_t length) override
    {
        m_log.saveWrites.push_back({kind, address, length, {source, source + length}});
        return m_log.hasSave;
    }
    bool gbaSaveErase() override
    {
        ++m_log.erases;
        return m_log.hasSave;
    }

private:
    Log &m_log;
};

// A reader with a recording cartridge.
struct Bench {
    RecordingCartridge::Log log;
    virtual_reader::VirtualReader reader;

    explicit Bench(virtual_reader::VirtualReaderConfig config = {})
        : reader(std::make_unique<RecordingCartridge>(log), std::move(config))
    {
    }

    void send(const virtual_reader::ByteVector &run)
    {
        reader.commandFileWritten(run.data(), run.size());
    }

    const virtual_reader::BlockRecord &lastBlock() const
    {
        return reader.operations().back().blocks.back();
    }

    virtual_reader::ByteVector read(virtual_reader::ReaderFile file, std::uint32_t offset,
                                    std::uint32_t length)
    {
        virtual_reader::ByteVector bytes(length);
        bytes.resize(reader.readFile(file, offset, bytes.data(), length, true).value_or(0));
        return bytes;
    }
};
