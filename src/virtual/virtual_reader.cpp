#include "virtual/virtual_reader.h"

#include <algorithm>
#include <utility>

namespace virtual_reader
{

namespace
{

constexpr std::uint32_t kGbaAddressMask = 0xFFFFFF;
constexpr std::uint32_t kInfoSize = 16;
// Second half of the information reply.
constexpr char kInfoTail[kInfoSize - kCipherKeySize + 1] = "VIRTUAL1";

// Unlock addresses of AMD-style flash chips: byte-wide ones, and 16-bit ones in byte mode.
constexpr std::uint32_t kByteUnlock1 = 0x555;
constexpr std::uint32_t kByteUnlock2 = 0x2AA;
constexpr std::uint32_t kWordUnlock1 = 0xAAA;
constexpr std::uint32_t kWordUnlock2 = 0x555;

// Reads until a programmed byte is given up; chips that work need far fewer.
constexpr int kProgramPolls = 16;

constexpr char kGone[] = "the reader was pulled out";

std::uint16_t gbAddress(std::uint32_t address)
{
    return static_cast<std::uint16_t>(address);
}

} // namespace

VirtualReader::VirtualReader(std::unique_ptr<Cartridge> cartridge, VirtualReaderConfig config)
    : m_config(std::move(config)), m_driverFile(kDriverFileSize, 0)
{
    insertCartridge(std::move(cartridge));
    const std::size_t length = std::min<std::size_t>(m_config.identity.size(), kReaderIdentitySize);
    std::copy_n(m_config.identity.begin(), length, m_driverFile.begin() + kReaderIdentityOffset);
}

void VirtualReader::insertCartridge(std::unique_ptr<Cartridge> cartridge)
{
    m_cartridge = cartridge != nullptr ? std::move(cartridge) : std::make_unique<NoCartridge>();
}

bool VirtualReader::isGoneAt(std::uint32_t run) const
{
    return m_isGone || run == m_config.fault.pulledAt;
}

bool VirtualReader::failsNextRun() const
{
    return isGoneAt(m_runs + 1) || m_runs + 1 == m_config.fault.failedCommand;
}

// The reason if nothing of the next command file is executed; empty otherwise.
std::string VirtualReader::runRefusal()
{
    const bool fails = failsNextRun();
    m_isGone = isGoneAt(++m_runs);
    if (!fails)
        return {};
    return m_isGone ? kGone : "it was asked to fail";
}

bool VirtualReader::commandFileWritten(const std::uint8_t *bytes, std::size_t size)
{
    const std::uint32_t oldLength = fileSize(ReaderFile::Command);
    m_commandFile.assign(bytes, bytes + size);
    Operation operation;
    operation.kind = Operation::Kind::CommandRun;
    operation.length = static_cast<std::uint32_t>(size);
    operation.refusal = runRefusal();
    const bool isTaken = operation.refusal.empty();
    for (std::size_t offset = 0; isTaken && offset < size; offset += kReaderBlockSize) {
        const std::size_t blockSize = std::min(kReaderBlockSize, size - offset);
        operation.blocks.push_back(executeBlock(m_commandFile.data() + offset, blockSize));
    }
    finish(std::move(operation), oldLength);
    return isTaken;
}

BlockRecord VirtualReader::executeBlock(const std::uint8_t *bytes, std::size_t size)
{
    const DecodedBlock block = decodeBlock(bytes, size);
    BlockRecord result;
    result.commandClass = block.commandClass;
    result.opcode = block.opcode;
    result.address = block.address;
    result.length = block.length;
    result.refusal = block.refusal;
    if (block.shape != nullptr) {
        result.name = block.shape->name;
        if (block.shape->lengthOffset == 0 && block.length <= 2)
            result.value = littleEndian(block.data, block.length);
    }
    if (!result.refused())
        result.refusal = busRefusal(block);
    if (!result.refused())
        result.refusal = execute(block);
    return result;
}

std::string VirtualReader::busRefusal(const DecodedBlock &block) const
{
    if (block.commandClass == kClassReader)
        return {};
    if (m_bus != (block.commandClass == kClassGb ? Bus::Gb : Bus::Gba))
        return "the bus is not selected";
    const ReaderCommand command = block.shape->command;
    const bool starts =
        command == ReaderCommand::StartGbBus || command == ReaderCommand::StartGbaBus;
    return m_started || starts ? "" : "the bus is not started";
}

std::string VirtualReader::execute(const DecodedBlock &block)
{
    switch (block.shape->command) {
    case ReaderCommand::StartGbBus:
    case ReaderCommand::StartGbaBus:
        m_started = true;
        return {};
    case ReaderCommand::GbRamWrite:
        gbRamWrite(block);
        return {};
    case ReaderCommand::GbBusWrite:
        m_cartridge->gbWrite(gbAddress(block.address), *block.data);
        return {};
    case ReaderCommand::GbProgram8:
        return gbProgram(block, kByteUnlock1, kByteUnlock2);
    case ReaderCommand::GbProgram16:
        return gbProgram(block, kWordUnlock1, kWordUnlock2);
    case ReaderCommand::GbaSetReadAddress:
        m_gbaAddress = block.address;
        return {};
    case ReaderCommand::GbaSaveErase:
        return m_cartridge->gbaSaveErase() ? "" : "the cartridge has no such save memory";
    case ReaderCommand::GbaSaveRead:
        return gbaSaveRead(block);
    case ReaderCommand::GbaSaveWrite:
        return gbaSaveWrite(block);
    case ReaderCommand::GbaBusWrite:
        m_cartridge->gbaWrite(block.address & kGbaAddressMask,
                              static_cast<std::uint16_t>(littleEndian(block.data, 2)));
        return {};
    case ReaderCommand::SelectGbBus:
        selectBus(Bus::Gb);
        return {};
    case ReaderCommand::SelectGbaBus:
        selectBus(Bus::Gba);
        return {};
    case ReaderCommand::QueryInfo:
        queryInfo();
        return {};
    }
    return "not executed";
}

void VirtualReader::selectBus(Bus bus)
{
    m_bus = bus;
    m_started = false;
    m_gbaAddress = 0;
}

void VirtualReader::gbRamWrite(const DecodedBlock &block)
{
    for (std::uint32_t i = 0; i < block.length; ++i)
        m_cartridge->gbWrite(gbAddress(block.address + i), block.data[i]);
}

std::string VirtualReader::gbProgram(const DecodedBlock &block, std::uint32_t unlock1,
                                     std::uint32_t unlock2)
{
    if (block.length < kCipherBlockSize)
        return "fewer than 8 bytes cannot be deciphered";
    if (!m_decipher)
        m_decipher.emplace(m_config.key);
    ByteVector payload(block.data, block.data + block.length);
    m_decipher->decipher(payload.data());
    for (std::uint32_t i = 0; i < block.length; ++i) {
        m_cartridge->gbWrite(gbAddress(unlock1), 0xAA);
        m_cartridge->gbWrite(gbAddress(unlock2), 0x55);
        m_cartridge->gbWrite(gbAddress(unlock1), 0xA0);
        m_cartridge->gbWrite(gbAddress(block.address + i), payload[i]);
        awaitGbByte(gbAddress(block.address + i), payload[i]);
    }
    return {};
}

void VirtualReader::awaitGbByte(std::uint16_t address, std::uint8_t value)
{
    for (int poll = 0; poll < kProgramPolls && m_cartridge->gbRead(address) != value; ++poll) {
    }
}

std::string VirtualReader::gbaSaveRead(const DecodedBlock &block)
{
    std::uint8_t *reply = clearedReply();
    if (m_cartridge->gbaSaveRead(block.shape->saveKind, block.address, reply, block.length))
        return {};
    std::fill_n(reply, block.length, std::uint8_t{0xFF});
    return "the cartridge has no such save memory";
}

std::string VirtualReader::gbaSaveWrite(const DecodedBlock &block)
{
    const bool written =
        m_cartridge->gbaSaveWrite(block.shape->saveKind, block.address, block.data, block.length);
    return written ? "" : "the cartridge has no such save memory";
}

void VirtualReader::queryInfo()
{
    std::uint8_t *reply = clearedReply();
    std::copy(m_config.key.begin(), m_config.key.end(), reply);
    std::copy_n(kInfoTail, kInfoSize - kCipherKeySize, reply + kCipherKeySize);
}

std::uint8_t *VirtualReader::clearedReply()
{
    std::fill_n(m_driverFile.begin(), kReplyAreaSize, std::uint8_t{0});
    return m_driverFile.data();
}

std::uint32_t VirtualReader::fileSize(ReaderFile file) const
{
    switch (file) {
    case ReaderFile::Command:
        return static_cast<std::uint32_t>(m_commandFile.size());
    case ReaderFile::Driver:
        return kDriverFileSize;
    case ReaderFile::Dump:
        return kDumpFileSize;
    }
    return 0;
}

std::optional<std::uint32_t> VirtualReader::readFile(ReaderFile file, std::uint32_t offset,
                                                     std::uint8_t *destination,
                                                     std::uint32_t length, bool unbuffered)
{
    Operation operation;
    operation.file = file;
    operation.offset = offset;
    operation.length = length;
    operation.unbuffered = unbuffered;
    const std::uint32_t misaligned = (offset | length) % kReaderSectorSize;
    if (m_isGone)
        operation.refusal = kGone;
    else if (unbuffered && m_config.strictSectors && misaligned != 0)
        operation.refusal = "offset and length must be multiples of the sector size";
    if (!operation.refusal.empty()) {
        finish(std::move(operation));
        return std::nullopt;
    }
    const std::uint32_t size = fileSize(file);
    const std::uint32_t count = offset < size ? std::min(length, size - offset) : 0;
    copyFile(file, offset, destination, count);
    operation.count = count;
    finish(std::move(operation));
    return count;
}

void VirtualReader::copyFile(ReaderFile file, std::uint32_t offset, std::uint8_t *destination,
                             std::uint32_t count)
{
    switch (file) {
    case ReaderFile::Command:
        std::copy_n(m_commandFile.begin() + offset, count, destination);
        break;
    case ReaderFile::Driver:
        std::copy_n(m_driverFile.begin() + offset, count, destination);
        break;
    case ReaderFile::Dump:
        readBus(offset, destination, count);
        break;
    }
}

void VirtualReader::readBus(std::uint32_t offset, std::uint8_t *destination, std::uint32_t count)
{
    if (!m_started)
        std::fill_n(destination, count, std::uint8_t{0xFF});
    else if (m_bus == Bus::Gba)
        readGbaBus(offset, destination, count);
    else
        for (std::uint32_t i = 0; i < count; ++i)
            destination[i] = m_cartridge->gbRead(gbAddress(offset + i));
}

void VirtualReader::readGbaBus(std::uint32_t offset, std::uint8_t *destination, std::uint32_t count)
{
    std::uint32_t value = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t at = offset + i;
        if (i == 0 || at % 2 == 0) // one bus cycle for both bytes
            value = m_cartridge->gbaRead((m_gbaAddress + at / 2) & kGbaAddressMask);
        destination[i] = static_cast<std::uint8_t>(value >> (8 * (at % 2)));
    }
}

void VirtualReader::finish(Operation operation, std::uint32_t oldLength)
{
    operation.microseconds = durationOf(operation, m_config.timing, oldLength);
    m_cartridge->passTime(operation.microseconds);
    if (operation.microseconds != 0 && m_config.wait)
        m_config.wait(operation.microseconds);
    addOperation(&m_counters, operation);
    if (m_listener)
        m_listener(operation);
    if (m_config.keepOperations)
        m_operations.push_back(std::move(operation));
}

void VirtualReader::clearOperations()
{
    m_operations.clear();
    m_counters = {};
}

void VirtualReader::setListener(std::function<void(const Operation &)> listener)
{
    m_listener = std::move(listener);
}

} // namespace virtual_reader
