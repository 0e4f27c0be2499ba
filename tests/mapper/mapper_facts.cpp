#include "mapper_facts.h"

#include <QtTest>

namespace
{

constexpr int kKiB = 1024;
constexpr int kRomBank = 16 * kKiB;
constexpr int kRamBank = 8 * kKiB;
constexpr int kGroupBanks = 32; // MBC1: banks that share the upper two bits of their number
constexpr int kRegisters = 4;   // MBC1 and MBC5
constexpr int kPayload = 480;

// Of every job: two command files of one block each, one read.
constexpr Traffic kJobTraffic = {2, 2, 1};

Traffic inJob(const Traffic &script)
{
    return {kJobTraffic.commandRuns + script.commandRuns, kJobTraffic.blocks + script.blocks,
            kJobTraffic.reads + script.reads};
}

// Blocks that set the registers for the first RAM bank: bank and gate, on the MBC1 also the mode.
int openingBlocks(const MapperFacts &mapper)
{
    return mapper.kind == MapperKind::Mbc1 ? 3 : 2;
}

int payloadBlocks(int bytes)
{
    return (bytes + kPayload - 1) / kPayload;
}

void addRows(QVector<int> MapperFacts::*sizes)
{
    QTest::addColumn<int>("mapper");
    QTest::addColumn<int>("size");
    for (int i = 0; i < mapperFacts().size(); ++i) {
        const MapperFacts &mapper = mapperFacts()[i];
        for (const int size : mapper.*sizes)
            QTest::newRow(qPrintable(QString("%1 %2 KiB").arg(mapper.name).arg(size / kKiB)))
                << i << size;
    }
}

} // namespace

const QVector<MapperFacts> &mapperFacts()
{
    static const QVector<MapperFacts> facts = {
        {MapperKind::None, "none", "gb_mbc0.nut", 0x00, 0x09, {32 * kKiB}, {8 * kKiB}, {}},
        {MapperKind::Mbc1,
         "MBC1",
         "gb_mbc1.nut",
         0x01,
         0x03,
         {32 * kKiB, 64 * kKiB, 128 * kKiB, 256 * kKiB, 512 * kKiB, 1024 * kKiB, 2048 * kKiB},
         {8 * kKiB, 32 * kKiB},
         {0x0000, 0x2000, 0x4000, 0x6000}},
        {MapperKind::Mbc5,
         "MBC5",
         "gb_mbc5.nut",
         0x19,
         0x1B,
         {32 * kKiB, 64 * kKiB, 128 * kKiB, 256 * kKiB, 512 * kKiB, 1024 * kKiB, 2048 * kKiB,
          4096 * kKiB, 8192 * kKiB},
         {8 * kKiB, 32 * kKiB, 64 * kKiB, 128 * kKiB},
         {0x0000, 0x2000, 0x3000, 0x4000}},
    };
    return facts;
}

Traffic trafficOf(const OperationCounters &counters)
{
    return {static_cast<int>(counters.commandRuns), static_cast<int>(counters.blocks),
            static_cast<int>(counters.reads)};
}

// Blocks: all registers for the first read, all of them at the end, one for any other bank. The
// MBC1 sets all of them for every group; the MBC5 needs a second one where bit 8 changes.
Traffic romDumpTraffic(const MapperFacts &mapper, int romSize)
{
    const int banks = romSize / kRomBank;
    if (mapper.kind == MapperKind::None)
        return inJob({0, 0, 1});
    if (banks == 2)
        return inJob({1, kRegisters, 1});
    if (mapper.kind == MapperKind::Mbc1) {
        const int groups = (banks + kGroupBanks - 1) / kGroupBanks;
        const int reads = banks - groups;
        return inJob({reads + 1, kRegisters * (groups + 1) + reads - groups, reads});
    }
    const int upperHalves = (banks - 1) / 256; // changes of bit 8
    return inJob({banks, 2 * kRegisters + banks - 2 + upperHalves, banks - 1});
}

// Blocks: the opening ones, one for any other bank, all registers at the end.
Traffic saveReadTraffic(const MapperFacts &mapper, int ramSize)
{
    const int banks = ramSize / kRamBank;
    if (mapper.kind == MapperKind::None)
        return inJob({0, 0, 1});
    return inJob({banks + 1, openingBlocks(mapper) + banks - 1 + kRegisters, banks});
}

Traffic saveWriteTraffic(const MapperFacts &mapper, int ramSize)
{
    const int banks = ramSize / kRamBank;
    const int payload = banks * payloadBlocks(kRamBank);
    if (mapper.kind == MapperKind::None)
        return inJob({1, payload, 0});
    return inJob({2 * banks + 1, openingBlocks(mapper) + banks - 1 + kRegisters + payload, 0});
}

void addRomRows()
{
    addRows(&MapperFacts::romSizes);
}

void addRamRows()
{
    addRows(&MapperFacts::ramSizes);
}
