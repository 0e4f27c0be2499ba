#include "device/device_commands.h"

#include "device/command_block.h"
#include "device/device_link.h"
#include "device/payload_cipher.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace
{

// Field offsets in a block's body. GB bus commands keep their fields one byte earlier than GBA
// ones.
constexpr std::uint32_t kGbAddressOffset = 3;
constexpr std::uint32_t kGbValueOffset = 5;
constexpr std::uint32_t kGbLengthOffset = 5;
constexpr std::uint32_t kGbPayloadOffset = 7;
constexpr std::uint32_t kGbPayloadSize = 480;
constexpr std::uint32_t kGbaAddressOffset = 4;
constexpr std::uint32_t kGbaValueOffset = 8;
constexpr std::uint32_t kGbaLengthOffset = 8;
constexpr std::uint32_t kGbaPayloadOffset = 12;
constexpr std::uint32_t kGbaPayloadSize = 256;

constexpr std::uint32_t kSaveReadPiece = 4096;
constexpr std::uint32_t kEepromPiece = 512;
constexpr std::uint32_t kEepromHalf = 256;

enum GbOpcode : std::uint8_t {
    kGbRamWrite = 12,
    kGbWriteBytes = 13,
    kGbFlashWrite = 14,
    kGbFlashWriteAlt = 15
};

enum GbaOpcode : std::uint8_t {
    kGbaSetReadAddress = 6,
    kGbaSaveErase = 7,
    kGbaFlash64kRead = 8,
    kGbaFlash128kRead = 9,
    kGbaFlash64kWrite = 10,
    kGbaFlash128kWrite = 11,
    kGbaEeprom512Read = 12,
    kGbaEeprom8kRead = 13,
    kGbaEeprom512Write = 14,
    kGbaEepromWriteBlock = 15,
    kGbaSramWrite = 16,
    kGbaSramRead = 17,
    kGbaWriteHalfwords = 19
};

constexpr std::uint8_t kReaderInfo = 4;

// How a long write is cut into blocks.
struct ChunkFormat {
    std::uint8_t commandClass;
    std::uint8_t opcode;
    std::uint32_t addressOffset;
    std::uint32_t addressBytes;
    std::uint32_t lengthOffset;
    std::uint32_t payloadOffset;
    std::uint32_t payloadSize;
    bool enciphered;
};

void storeLittleEndian(std::uint8_t *field, std::uint32_t value, std::uint32_t bytes)
{
    for (std::uint32_t i = 0; i < bytes; ++i)
        field[i] = static_cast<std::uint8_t>(value >> (8 * i));
}

void startBlock(std::uint8_t *block, std::uint8_t commandClass, std::uint8_t opcode)
{
    block[kClassOffset] = commandClass;
    block[kOpcodeOffset] = opcode;
}

// Copies a chunk with its first 8 bytes enciphered; the source is the same before and after.
void copyEnciphered(std::uint8_t *payload, std::uint8_t *chunk, std::uint32_t length)
{
    cipherEncipher(chunk, kCipherBlockSize);
    std::memcpy(payload, chunk, length);
    cipherDecipher(chunk, kCipherBlockSize);
}

void fillChunk(std::uint8_t *block, const ChunkFormat &format, std::uint32_t address,
               std::uint8_t *chunk, std::uint32_t length)
{
    startBlock(block, format.commandClass, format.opcode);
    storeLittleEndian(block + format.addressOffset, address, format.addressBytes);
    storeLittleEndian(block + format.lengthOffset, length, 2);
    if (format.enciphered)
        copyEnciphered(block + format.payloadOffset, chunk, length);
    else
        std::memcpy(block + format.payloadOffset, chunk, length);
}

std::uint32_t writeChunks(const ChunkFormat &format, std::uint32_t address, void *source,
                          std::uint32_t length)
{
    const std::uint32_t chunks = length / format.payloadSize + (length % format.payloadSize != 0);
    // One block too many, so that a length of 0 has a buffer to send nothing from.
    std::vector<std::uint8_t> blocks((std::size_t{chunks} + 1) * kBlockSize);
    auto *bytes = static_cast<std::uint8_t *>(source);
    for (std::uint32_t chunk = 0; chunk < chunks; ++chunk) {
        const std::uint32_t done = chunk * format.payloadSize;
        fillChunk(blocks.data() + std::size_t{chunk} * kBlockSize, format, address + done,
                  bytes + done, std::min(format.payloadSize, length - done));
    }
    return sendCommands(blocks.data(), chunks * kBlockSize);
}

ChunkFormat gbChunks(GbOpcode opcode, bool enciphered)
{
    return {kClassGb,        opcode,           kGbAddressOffset, 2,
            kGbLengthOffset, kGbPayloadOffset, kGbPayloadSize,   enciphered};
}

ChunkFormat gbaChunks(GbaOpcode opcode, std::uint32_t addressBytes)
{
    return {kClassGba,         opcode,
            kGbaAddressOffset, addressBytes,
            kGbaLengthOffset,  kGbaPayloadOffset,
            kGbaPayloadSize,   false};
}

// Sends the read command of one piece; the reader then shows the bytes in its reply file.
std::uint32_t requestSave(GbaOpcode opcode, std::uint32_t address, std::uint32_t addressBytes,
                          std::uint32_t length)
{
    std::uint8_t block[kBlockSize] = {};
    startBlock(block, kClassGba, opcode);
    storeLittleEndian(block + kGbaAddressOffset, address, addressBytes);
    storeLittleEndian(block + kGbaLengthOffset, length, 2);
    return sendCommands(block, kBlockSize);
}

std::uint32_t readSavePieces(GbaOpcode opcode, std::uint32_t address, void *destination,
                             std::uint32_t length)
{
    auto *bytes = static_cast<std::uint8_t *>(destination);
    for (std::uint32_t done = 0; done < length;) {
        const std::uint32_t piece = std::min(kSaveReadPiece, length - done);
        requestSave(opcode, address + done, 3, piece);
        readDriverFile(0, bytes + done, piece);
        done += piece;
    }
    return length;
}

std::uint32_t readEeprom(GbaOpcode opcode, std::uint32_t address, void *destination,
                         std::uint32_t length)
{
    requestSave(opcode, address, 2, length);
    return readDriverFile(0, destination, length);
}

std::uint32_t writeEepromHalf(GbaOpcode opcode, std::uint32_t address, std::uint32_t addressBytes,
                              const std::uint8_t *half)
{
    std::uint8_t block[kBlockSize] = {};
    startBlock(block, kClassGba, opcode);
    storeLittleEndian(block + kGbaAddressOffset, address, addressBytes);
    std::memcpy(block + kGbaPayloadOffset, half, kEepromHalf);
    return sendCommands(block, kBlockSize);
}

} // namespace

std::uint32_t sendEmptyCommand(std::uint8_t commandClass, std::uint8_t opcode)
{
    std::uint8_t block[kBlockSize] = {};
    startBlock(block, commandClass, opcode);
    return sendCommands(block, kBlockSize);
}

std::uint32_t gbWriteBytes(const std::uint32_t *addresses, const std::uint32_t *values,
                           std::uint32_t count)
{
    std::vector<std::uint8_t> blocks((std::size_t{count} + 1) * kBlockSize);
    for (std::uint32_t i = 0; i < count; ++i) {
        std::uint8_t *block = blocks.data() + std::size_t{i} * kBlockSize;
        startBlock(block, kClassGb, kGbWriteBytes);
        storeLittleEndian(block + kGbAddressOffset, addresses[i], 2);
        storeLittleEndian(block + kGbValueOffset, values[i], 1);
    }
    return sendCommands(blocks.data(), count * kBlockSize);
}

std::uint32_t gbaWriteHalfwords(const std::uint32_t *addresses, const std::uint32_t *values,
                                std::uint32_t count)
{
    std::vector<std::uint8_t> blocks((std::size_t{count} + 1) * kBlockSize);
    for (std::uint32_t i = 0; i < count; ++i) {
        std::uint8_t *block = blocks.data() + std::size_t{i} * kBlockSize;
        startBlock(block, kClassGba, kGbaWriteHalfwords);
        storeLittleEndian(block + kGbaAddressOffset, addresses[i], 4);
        storeLittleEndian(block + kGbaValueOffset, values[i], 2);
    }
    return sendCommands(blocks.data(), count * kBlockSize);
}

std::uint32_t gbRamWrite(std::uint32_t address, void *source, std::uint32_t length)
{
    return writeChunks(gbChunks(kGbRamWrite, false), address, source, length);
}

std::uint32_t gbFlashWrite(std::uint32_t address, void *source, std::uint32_t length)
{
    return writeChunks(gbChunks(kGbFlashWrite, true), address, source, length);
}

std::uint32_t gbFlashWriteAlt(std::uint32_t address, void *source, std::uint32_t length)
{
    return writeChunks(gbChunks(kGbFlashWriteAlt, true), address, source, length);
}

std::uint32_t gbaSetReadAddress(std::uint32_t address)
{
    std::uint8_t block[kBlockSize] = {};
    startBlock(block, kClassGba, kGbaSetReadAddress);
    storeLittleEndian(block + kGbaAddressOffset, address, 3);
    return sendCommands(block, kBlockSize);
}

std::uint32_t gbaSaveErase()
{
    return sendEmptyCommand(kClassGba, kGbaSaveErase);
}

std::uint32_t gbaSramRead(std::uint32_t address, void *destination, std::uint32_t length)
{
    return readSavePieces(kGbaSramRead, address, destination, length);
}

std::uint32_t gbaFlash64kRead(std::uint32_t address, void *destination, std::uint32_t length)
{
    return readSavePieces(kGbaFlash64kRead, address, destination, length);
}

std::uint32_t gbaFlash128kRead(std::uint32_t address, void *destination, std::uint32_t length)
{
    return readSavePieces(kGbaFlash128kRead, address, destination, length);
}

std::uint32_t gbaSramWrite(std::uint32_t address, void *source, std::uint32_t length)
{
    return writeChunks(gbaChunks(kGbaSramWrite, 2), address, source, length);
}

std::uint32_t gbaFlash64kWrite(std::uint32_t address, void *source, std::uint32_t length)
{
    return writeChunks(gbaChunks(kGbaFlash64kWrite, 2), address, source, length);
}

std::uint32_t gbaFlash128kWrite(std::uint32_t address, void *source, std::uint32_t length)
{
    return writeChunks(gbaChunks(kGbaFlash128kWrite, 3), address, source, length);
}

std::uint32_t gbaEeprom512Read(std::uint32_t address, void *destination, std::uint32_t length)
{
    return readEeprom(kGbaEeprom512Read, address, destination, length);
}

std::uint32_t gbaEeprom8kRead(std::uint32_t address, void *destination, std::uint32_t length)
{
    return readEeprom(kGbaEeprom8kRead, address, destination, length);
}

std::uint32_t gbaEeprom512Write(std::uint32_t /*address*/, void *source, std::uint32_t length)
{
    if (length < kEepromPiece)
        return 0;
    const auto *bytes = static_cast<const std::uint8_t *>(source);
    writeEepromHalf(kGbaEeprom512Write, 0, 4, bytes);
    return writeEepromHalf(kGbaEeprom512Write, kEepromHalf, 4, bytes + kEepromHalf);
}

std::uint32_t gbaEepromWriteBlock(std::uint32_t address, const void *source)
{
    const auto *bytes = static_cast<const std::uint8_t *>(source);
    writeEepromHalf(kGbaEepromWriteBlock, address, 2, bytes);
    return writeEepromHalf(kGbaEepromWriteBlock, address + kEepromHalf, 2, bytes + kEepromHalf);
}

std::uint32_t gbaEeprom8kWrite(std::uint32_t address, void *source, std::uint32_t length)
{
    if (length < kEepromPiece)
        return 0;
    const auto *bytes = static_cast<const std::uint8_t *>(source);
    const std::uint32_t pieces = ((length - 1) >> 9) + 1;
    for (std::uint32_t piece = 0; piece < pieces; ++piece) {
        const std::uint32_t done = piece * kEepromPiece;
        gbaEepromWriteBlock(address + done, bytes + done);
    }
    return length;
}

std::uint32_t queryDeviceInfo(void *destination, std::uint32_t length)
{
    if (sendEmptyCommand(kClassReader, kReaderInfo) == 0)
        return 0;
    return readDriverFile(0, destination, length) != 0 ? 1 : 0;
}
