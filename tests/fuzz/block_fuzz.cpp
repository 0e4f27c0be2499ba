// Any bytes as command files, for libFuzzer: whatever the virtual reader is sent, it executes the
// blocks that are right and no others, counts them, keeps inside its files, and loses no save. The
// form of the input: block_steps.h.
//
// A second reader with the same cartridge gets each block in a file of its own. Both must come to
// the same state: none of it may stand in the file and not in the reader.
#include "block_steps.h"
#include "rule.h"
#include "virtual/cartridge_factory.h"
#include "virtual/image_generator.h"
#include "virtual/virtual_reader.h"

#include <algorithm>
#include <array>
#include <functional>
#include <numeric>

using namespace virtual_reader;

namespace
{

constexpr std::uint32_t kRomBytes = 64 * 1024;
constexpr std::uint32_t kSmallRomBytes = 32 * 1024;
constexpr std::uint32_t kGbaRomBytes = 1024;
constexpr std::size_t kMostPerFile = 64 * kReaderBlockSize; // then nothing new comes
constexpr std::uint32_t kLongestRead = 4096;
constexpr std::uint64_t kSeed = 7;

struct Model {
    ByteVector image; // empty: no cartridge
    CartridgeOptions options;
    bool isFlash = false; // of the ROM's own chip, or of the save's
};

Model gb(std::uint8_t type, std::uint32_t romSize, std::uint32_t ramSize)
{
    Model model;
    std::string error;
    require(makeGbImage({type, romSize, ramSize, "FUZZ", kSeed}, &model.image, &error),
            "the image can be made");
    return model;
}

Model multiCart()
{
    Model model = gb(0x03, kRomBytes, 0x8000);
    model.options.multiCart = true;
    return model;
}

Model flash(FlashWidth width, bool isProtected, bool isEndless)
{
    Model model = gb(0x1B, 2 * kRomBytes, 0x8000);
    model.options.flash = width;
    model.options.flashChip.writeProtected = isProtected;
    model.options.flashChip.eraseNeverEnds = isEndless;
    model.isFlash = true;
    return model;
}

Model gba(GbaSaveType type, std::uint32_t size, bool isProtected = false)
{
    Model model;
    std::string error;
    GbaImageSpec spec;
    spec.romSize = kGbaRomBytes;
    require(makeGbaImage(spec, &model.image, &error), "the image can be made");
    model.options.saveType = type;
    model.options.saveSize = size;
    model.options.flashChip.writeProtected = isProtected;
    model.isFlash = type == GbaSaveType::Flash;
    return model;
}

// In the order of BlockCartridge.
const std::array<Model, kCartridgeCount> &models()
{
    static const std::array<Model, kCartridgeCount> all = {{
        {},
        gb(0x00, kSmallRomBytes, 0),
        gb(0x03, kRomBytes, 0x8000),
        multiCart(),
        gb(0x06, kRomBytes, 0),
        gb(0x09, kSmallRomBytes, 0x2000),
        gb(0x0D, kRomBytes, 0x2000),
        gb(0x10, kRomBytes, 0x8000),
        gb(0x1B, kRomBytes, 0x8000),
        gb(0x22, kRomBytes, 0),
        gb(0xFC, kRomBytes, 0x8000),
        gb(0xFD, kRomBytes, 0),
        gb(0xFE, kRomBytes, 0x8000),
        gb(0xFF, kRomBytes, 0x8000),
        flash(FlashWidth::Byte, false, false),
        flash(FlashWidth::Word, false, false),
        flash(FlashWidth::Byte, true, false),
        flash(FlashWidth::Word, false, true),
        gba(GbaSaveType::None, 0),
        gba(GbaSaveType::Sram, 0x8000),
        gba(GbaSaveType::Flash, 0x10000),
        gba(GbaSaveType::Flash, 0x20000),
        gba(GbaSaveType::Flash, 0x10000, true),
        gba(GbaSaveType::Eeprom, 512),
        gba(GbaSaveType::Eeprom, 8192),
    }};
    return all;
}

std::unique_ptr<Cartridge> build(const Model &model)
{
    if (model.image.empty())
        return nullptr;
    std::string error;
    std::unique_ptr<Cartridge> cartridge = makeCartridge(model.image, model.options, &error);
    require(cartridge != nullptr, "the cartridge can be built");
    return cartridge;
}

VirtualReaderConfig withoutRecord()
{
    VirtualReaderConfig config;
    config.keepOperations = false;
    return config;
}

// Worked out with a table, unlike the reader's.
std::uint16_t checksumOf(const std::uint8_t *bytes, std::size_t size)
{
    static const auto table = [] {
        std::array<std::uint16_t, 256> entries{};
        for (unsigned i = 0; i < 256; ++i) {
            unsigned value = i << 8;
            for (int bit = 0; bit < 8; ++bit)
                value = (value & 0x8000) != 0 ? value << 1 ^ 0x1021 : value << 1;
            entries[i] = static_cast<std::uint16_t>(value);
        }
        return entries;
    }();
    unsigned checksum = 0;
    for (std::size_t i = 0; i < size; ++i)
        checksum = (checksum << 8 ^ table[(checksum >> 8 ^ bytes[i]) & 0xFF]) & 0xFFFF;
    return static_cast<std::uint16_t>(checksum);
}

bool isFramed(const std::uint8_t *block, std::size_t size)
{
    return size == kReaderBlockSize && block[0] == kBlockSync &&
           checksumOf(block, kChecksumOffset) ==
               block[kChecksumOffset] * 256U + block[kChecksumOffset + 1];
}

// What may not be executed is not, and what may be fails for reasons behind the frame only.
void checkBlock(const BlockRecord &record, const std::uint8_t *block, std::size_t size)
{
    if (record.refused())
        return;
    require(isFramed(block, size), "a block with a wrong frame is refused");
    require(record.commandClass == block[1] && record.opcode == block[2],
            "a record names the command");
    const CommandShape *shape = findCommandShape(block[1], block[2]);
    require(shape != nullptr, "an unknown command is refused");
    require(record.length <= shape->maximum, "a length that is too large is refused");
    require(shape->dataOffset + (shape->dataOffset == 0 ? 0 : record.length) <= kChecksumOffset,
            "a payload ends before the checksum");
}

bool isOneLine(const std::string &text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

class Bench
{
public:
    explicit Bench(const Model &model)
        : m_model(model), m_reader(build(model)), m_piecewise(build(model), withoutRecord()),
          m_firstSave(m_reader.cartridge().saveImage())
    {
    }

    void append(const std::uint8_t *bytes, std::size_t size)
    {
        if (m_file.size() + size <= kMostPerFile)
            m_file.insert(m_file.end(), bytes, bytes + size);
    }

    void spoil(std::uint8_t bits)
    {
        if (!m_file.empty())
            m_file.back() ^= bits;
    }

    void endFile()
    {
        const OperationCounters before = m_reader.counters();
        const std::uint64_t changesBefore = m_reader.cartridge().saveChanges();
        // In blocks of their exact size, so that nothing can be read behind them.
        const ByteVector file(m_file);
        require(m_reader.commandFileWritten(file.data(), file.size()), "no run fails unasked");
        const Operation run = m_reader.operations().back(); // reads add more
        require(isOneLine(operationJson(run)), "a record is one line of plain text");
        checkRun(run, file);
        const OperationCounters &after = m_reader.counters();
        const auto refused = static_cast<std::uint64_t>(
            std::count_if(run.blocks.begin(), run.blocks.end(),
                          [](const BlockRecord &block) { return block.refused(); }));
        require(after.commandRuns == before.commandRuns + 1 &&
                    after.blocks == before.blocks + run.blocks.size() &&
                    after.refusedBlocks == before.refusedBlocks + refused,
                "the counters count");
        const std::uint64_t changes = m_reader.cartridge().saveChanges();
        require(refused != run.blocks.size() || changes == changesBefore,
                "refused blocks change no save");
        require(changes >= changesBefore, "changes only grow");
        writePiecewise(file);
        checkSameFile(ReaderFile::Driver, 0, kReaderSectorSize);
        m_file.clear();
    }

    void power()
    {
        m_reader.cartridge().powerCycle();
        m_piecewise.cartridge().powerCycle();
    }

    void checkSameFile(ReaderFile file, std::uint32_t offset, std::uint32_t length)
    {
        require(read(&m_reader, file, offset, length) == read(&m_piecewise, file, offset, length),
                "one file with all blocks does what many with one do");
    }

    void checkEnd()
    {
        Cartridge &cartridge = m_reader.cartridge();
        const ByteVector save = cartridge.saveImage();
        require(save == m_piecewise.cartridge().saveImage(), "both saves are the same");
        require(save.size() == m_firstSave.size(), "a save keeps its size");
        const auto differences = static_cast<std::uint64_t>(
            std::inner_product(save.begin(), save.end(), m_firstSave.begin(), 0, std::plus<>(),
                               std::not_equal_to<>()));
        require(differences <= cartridge.saveChanges(), "no change of a save is kept quiet");
        checkSameFile(ReaderFile::Driver, 0, kReplyAreaSize);
        const ByteVector rom = cartridge.romImage();
        require(m_model.isFlash ? rom == m_piecewise.cartridge().romImage() : rom == m_model.image,
                "a ROM stays as it is, a flash chip is the same in both");
        require(save.empty() || cartridge.loadSave(save), "a save can be put back");
        cartridge.powerCycle();
        require(m_model.isFlash || cartridge.saveImage() == save, "a save outlives the supply");
    }

private:
    static ByteVector read(VirtualReader *reader, ReaderFile file, std::uint32_t offset,
                           std::uint32_t length)
    {
        ByteVector bytes(length);
        const std::uint32_t size = reader->fileSize(file);
        const std::uint32_t expected = offset < size ? std::min(length, size - offset) : 0;
        const auto count = reader->readFile(file, offset, bytes.data(), length, false);
        require(count == expected, "a read ends at the end of the file");
        return bytes;
    }

    void checkRun(const Operation &run, const ByteVector &file)
    {
        require(run.kind == Operation::Kind::CommandRun && run.length == file.size() &&
                    run.blocks.size() == (file.size() + kReaderBlockSize - 1) / kReaderBlockSize,
                "every block is recorded");
        for (std::size_t i = 0; i < run.blocks.size(); ++i)
            checkBlock(run.blocks[i], file.data() + i * kReaderBlockSize,
                       std::min(kReaderBlockSize, file.size() - i * kReaderBlockSize));
        const auto size = static_cast<std::uint32_t>(file.size());
        require(m_reader.fileSize(ReaderFile::Command) == size &&
                    read(&m_reader, ReaderFile::Command, 0, size) == file,
                "the command file holds what was written");
    }

    void writePiecewise(const ByteVector &file)
    {
        for (std::size_t at = 0; at < file.size(); at += kReaderBlockSize)
            m_piecewise.commandFileWritten(file.data() + at,
                                           std::min(kReaderBlockSize, file.size() - at));
        require(m_reader.counters().refusedBlocks == m_piecewise.counters().refusedBlocks,
                "both refuse the same blocks");
    }

    const Model &m_model;
    VirtualReader m_reader;
    VirtualReader m_piecewise;
    const ByteVector m_firstSave;
    ByteVector m_file;
};

// The input, with zeros behind its end.
class Input
{
public:
    Input(const std::uint8_t *data, std::size_t size) : m_at(data), m_end(data + size) {}

    bool isAtEnd() const { return m_at == m_end; }
    std::uint8_t byte() { return m_at == m_end ? std::uint8_t{0} : *m_at++; }
    std::uint32_t number(int bytes)
    {
        std::uint32_t value = 0;
        for (int i = 0; i < bytes; ++i)
            value |= static_cast<std::uint32_t>(byte()) << (8 * i);
        return value;
    }

private:
    const std::uint8_t *m_at;
    const std::uint8_t *m_end;
};

void appendBlock(Input *input, std::uint8_t bodyBytes, Bench *bench)
{
    std::array<std::uint8_t, kReaderBlockSize> block{};
    block[0] = kBlockSync;
    for (std::size_t i = 1; i <= bodyBytes; ++i)
        block[i] = input->byte();
    std::fill(block.begin() + 1 + bodyBytes, block.begin() + kChecksumOffset, block[bodyBytes]);
    const std::uint16_t checksum = checksumOf(block.data(), kChecksumOffset);
    block[kChecksumOffset] = static_cast<std::uint8_t>(checksum >> 8);
    block[kChecksumOffset + 1] = static_cast<std::uint8_t>(checksum);
    bench->append(block.data(), block.size());
}

void takeStep(Input *input, Bench *bench)
{
    const std::uint8_t step = input->byte();
    if (step <= kLongestBody) {
        appendBlock(input, step, bench);
    } else if (step == kSpoil) {
        bench->spoil(input->byte());
    } else if (step == kRaw) {
        ByteVector bytes(input->byte());
        std::generate(bytes.begin(), bytes.end(), [input] { return input->byte(); });
        bench->append(bytes.data(), bytes.size());
    } else if (step == kRead) {
        const auto file = static_cast<ReaderFile>(input->byte() % kReaderFileCount);
        const std::uint32_t offset = input->number(3);
        const std::uint32_t length = input->number(2) % kLongestRead;
        // Of the command file the two readers hold different parts.
        bench->checkSameFile(file == ReaderFile::Command ? ReaderFile::Dump : file, offset, length);
    } else if (step == kPower) {
        bench->power();
    } else {
        bench->endFile();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    Bench bench(models()[input.byte() % kCartridgeCount]);
    while (!input.isAtEnd())
        takeStep(&input, &bench);
    bench.endFile();
    bench.checkEnd();
    return 0;
}
