#include "mapper_facts.h"

#include <QtTest>

#include <algorithm>

using namespace virtual_reader;

namespace
{

constexpr int kKiB = 1024;
constexpr int kMiB = 1024 * kKiB;
constexpr int kRomBank = 16 * kKiB;
constexpr int kRamBank = 8 * kKiB;
constexpr int kGroupBanks = 32;

QVector<int> doublings(int smallest, int largest)
{
    QVector<int> sizes;
    for (int size = smallest; size <= largest; size *= 2)
        sizes << size;
    return sizes;
}

Traffic inJob(int commandRuns, int reads)
{
    return {kJobTraffic.commandRuns + commandRuns, kJobTraffic.reads + reads};
}

int ramTransfers(int ramSize)
{
    return std::max(1, ramSize / kRamBank);
}

void addRows(QVector<int> MapperFacts::*sizes)
{
    QTest::addColumn<int>("mapper");
    QTest::addColumn<int>("size");
    for (int i = 0; i < mapperFacts().size(); ++i) {
        const MapperFacts &mapper = mapperFacts()[i];
        for (const int size : mapper.*sizes)
            QTest::newRow(qPrintable(QString("%1 %2 bytes").arg(mapper.name).arg(size)))
                << i << size;
    }
}

} // namespace

const QVector<MapperFacts> &mapperFacts()
{
    using Kind = MapperKind;
    static const QVector<int> smallRams = {8 * kKiB, 32 * kKiB};
    static const QSet<unsigned> mbc1Registers = {0x0000, 0x2000, 0x4000, 0x6000};
    static const QSet<unsigned> mbc3Registers = {0x0000, 0x2000, 0x4000};
    static const QSet<unsigned> mbc5Registers = {0x0000, 0x2000, 0x3000, 0x4000};
    static const QSet<unsigned> tama5Registers = {0x0000, 0x2000, 0x4000, 0xA000, 0xA001};
    static const auto roms = [](int largest) { return doublings(32 * kKiB, largest); };
    static const QVector<MapperFacts> facts = {
        {Kind::None, "none", "gb_mbc0.nut", 0x00, 0x09, {32 * kKiB}, {8 * kKiB}, mbc1Registers},
        {Kind::Mmm01, "MMM01", "gb_mbc0.nut", 0x0B, 0x0D, doublings(64 * kKiB, 2 * kMiB), smallRams,
         mbc1Registers},
        {Kind::Mbc1, "MBC1", "gb_mbc1.nut", 0x01, 0x03, roms(2 * kMiB), smallRams, mbc1Registers},
        {Kind::Mbc2, "MBC2", "gb_mbc2.nut", 0x05, 0x06, roms(256 * kKiB), {512}, {0x0000, 0x2100}},
        {Kind::Mbc3, "MBC3", "gb_mbc3.nut", 0x11, 0x13, roms(2 * kMiB), smallRams, mbc3Registers},
        {Kind::Mbc30, "MBC30", "gb_mbc3.nut", 0x11, 0x13, {4 * kMiB}, {64 * kKiB}, mbc3Registers},
        {Kind::Mbc5,
         "MBC5",
         "gb_mbc5.nut",
         0x19,
         0x1B,
         roms(8 * kMiB),
         {8 * kKiB, 32 * kKiB, 64 * kKiB, 128 * kKiB},
         mbc5Registers},
        {Kind::Rumble,
         "rumble",
         "gb_mbc5.nut",
         0x1C,
         0x1E,
         {64 * kKiB, 8 * kMiB},
         smallRams,
         mbc5Registers},
        {Kind::Camera, "camera", "gb_mbc5.nut", 0xFC, 0xFC, {kMiB}, {128 * kKiB}, mbc5Registers},
        {Kind::Huc3, "HuC-3", "gb_mbc5.nut", 0xFE, 0xFE, roms(2 * kMiB), smallRams, mbc5Registers},
        {Kind::Mbc7, "MBC7", "gb_mbc7.nut", 0x22, 0x22, roms(2 * kMiB), {}, mbc3Registers},
        {Kind::Huc1, "HuC1", "gb_tama5.nut", 0xFF, 0xFF, roms(kMiB), smallRams, tama5Registers},
        {Kind::Tama5, "TAMA5", "gb_tama5.nut", 0xFD, 0xFD, roms(512 * kKiB), {}, tama5Registers},
    };
    return facts;
}

const MapperFacts &factsOf(MapperKind kind)
{
    return *std::find_if(mapperFacts().begin(), mapperFacts().end(),
                         [kind](const MapperFacts &mapper) { return mapper.kind == kind; });
}

Traffic trafficOf(const OperationCounters &counters)
{
    return {static_cast<int>(counters.commandRuns), static_cast<int>(counters.reads)};
}

Traffic romDumpTraffic(const MapperFacts &mapper, int romSize)
{
    const int banks = romSize / kRomBank;
    if (mapper.kind == MapperKind::None)
        return inJob(0, 1);
    const int groups = mapper.hasBankGroups() ? (banks + kGroupBanks - 1) / kGroupBanks : 1;
    const int waking = mapper.mustBeWoken() ? 1 : 0;
    const int reads = banks - groups;
    return inJob(waking + reads + (banks == 2 ? 0 : 1), waking + reads);
}

Traffic saveReadTraffic(int ramSize)
{
    return inJob(ramTransfers(ramSize) + 1, ramTransfers(ramSize));
}

Traffic saveWriteTraffic(int ramSize)
{
    return inJob(2 * ramTransfers(ramSize) + 1, 0);
}

void addRomRows()
{
    addRows(&MapperFacts::romSizes);
}

void addRamRows()
{
    addRows(&MapperFacts::ramSizes);
}
