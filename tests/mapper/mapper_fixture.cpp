#include "mapper_fixture.h"

#include <algorithm>

using namespace virtual_reader;

namespace
{

constexpr int kRomBank = 16 * 1024;
constexpr int kRamBank = 8 * 1024;
constexpr int kRamStart = 0xA000;
constexpr std::uint8_t kOpen = 0x0A;

CartridgeOptions boardOptions(FlashWidth width, const FlashChipBehaviour &behaviour)
{
    CartridgeOptions options;
    options.flash = width;
    options.flashChip = behaviour;
    return options;
}

} // namespace

CartridgeJob scriptJob(const QString &script, JobCode operate, int size, int saveType,
                       int flashWidth)
{
    return {operate, QStringLiteral(MAPPER_FOLDER "/") + script, size, size, saveType, flashWidth};
}

ByteVector makeMapperImage(const MapperFacts &mapper, int romSize, int ramSize, unsigned seed)
{
    GbImageSpec spec;
    spec.type = ramSize > 0 ? mapper.ramType : mapper.romType;
    spec.romSize = static_cast<std::uint32_t>(romSize);
    // The memory inside an MBC2 is not in its header.
    spec.ramSize = ramSize < kRamBank ? 0 : static_cast<std::uint32_t>(ramSize);
    spec.seed = seed;
    return gbImage(spec);
}

MapperFixture::MapperFixture(const MapperFacts &mapper, int romSize, int ramSize,
                             const QString &savePath, const CartridgeOptions &options)
    : ReaderBench(cartridgeOf(makeMapperImage(mapper, romSize, ramSize), options),
                  keptIn(savePath)),
      m_mapper(mapper)
{
}

JobRun MapperFixture::run(JobCode operate, int size, const QByteArray &input)
{
    return run(scriptJob(m_mapper.script, operate, size), input);
}

QByteArray MapperFixture::dump(int size)
{
    const JobRun done = run(GB_READ_ROM, size);
    return done.succeeded() ? done.result.bytes : QByteArray();
}

// Only where registers lie below the RAM: behind an open gate others would be cells.
void MapperFixture::disturbRegisters()
{
    for (const unsigned address : m_mapper.registers) {
        if (address < kRamStart)
            cartridge().gbWrite(static_cast<std::uint16_t>(address), address == 0 ? kOpen : 0x03);
    }
}

QString MapperFixture::unrest()
{
    const QByteArray image = rom();
    if (busBytes(0, kRomBank) != image.left(kRomBank))
        return "bank 0 is not at 0x0000";
    if (busBytes(kRomBank, kRomBank) != image.mid(kRomBank, kRomBank))
        return "bank 1 is not at 0x4000";
    if (m_mapper.kind == MapperKind::Mbc7)
        return motionUnrest();
    if (m_mapper.kind == MapperKind::None || m_mapper.kind == MapperKind::Tama5)
        return {}; // has no gate
    const QString ram = save().isEmpty() ? QString() : ramUnrest();
    return ram.isEmpty() && m_mapper.hasBankGroups() ? modeUnrest() : ram;
}

// Some kinds show closed RAM, but none lets it be written.
QString MapperFixture::ramUnrest()
{
    const QByteArray before = save();
    cartridge().gbWrite(kRamStart, static_cast<std::uint8_t>(~before[0]));
    if (save() != before)
        return "the RAM gate is open";
    cartridge().gbWrite(0x0000, kOpen);
    const int length = std::min(kRamBank, static_cast<int>(before.size()));
    return busBytes(kRamStart, length) == before.left(length) ? QString()
                                                              : "RAM bank 0 is not selected";
}

// In mode 0 the second register does not reach 0x0000.
QString MapperFixture::modeUnrest()
{
    cartridge().gbWrite(0x4000, 1);
    return busBytes(0, kRomBank) == rom().left(kRomBank) ? QString() : "the mode is 1";
}

// The accelerometer's registers show through two open gates; no axis reads 0xFF.
QString MapperFixture::motionUnrest()
{
    constexpr int kAxis = 0xA020;
    if (busBytes(kAxis, 1) != "\xFF")
        return "both gates are open";
    cartridge().gbWrite(0x0000, kOpen);
    return busBytes(kAxis, 1) == "\xFF" ? QString() : "the second gate is open";
}

FlashFixture::FlashFixture(MapperKind kind, FlashWidth width, int chipSize,
                           const FlashChipBehaviour &behaviour)
    : MapperFixture(factsOf(kind), chipSize, factsOf(kind).ramSizes.first(), {},
                    boardOptions(width, behaviour))
{
}

JobRun FlashFixture::flash(const QByteArray &file, int width, int looks)
{
    return run(scriptJob(m_mapper.script, GB_WRITE_FLASH, file.size(), 0, width), file, looks);
}

QByteArray newGame(MapperKind kind, int size)
{
    return toByteArray(makeMapperImage(factsOf(kind), size, 0, 2));
}

QByteArray inChip(const QByteArray &file, int chipSize)
{
    return file + QByteArray(chipSize - file.size(), '\xFF');
}
