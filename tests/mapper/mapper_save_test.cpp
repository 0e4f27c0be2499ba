// Saves: every size of every mapper read, changed, written, and read back from another reader.
#include "mapper_fixture.h"
#include "test_class.h"

#include <QtTest>

#include <algorithm>

using namespace virtual_reader;

namespace
{

constexpr unsigned kRamStart = 0xA000;
constexpr unsigned kRamEnd = 0xC000;

constexpr char kStaysMapped[] = "An MMM01 cartridge stays as this job maps it. Take it out and put "
                                "it in again before another job.";

// Every byte differs from the one before.
QByteArray changed(QByteArray bytes)
{
    for (char &byte : bytes)
        byte = static_cast<char>(~byte);
    return bytes;
}

// An MBC2 has cells of four bits; the others read as ones.
QByteArray asKept(const MapperFacts &mapper, QByteArray bytes)
{
    for (char &byte : bytes) {
        if (mapper.kind == MapperKind::Mbc2)
            byte = static_cast<char>(byte | 0xF0);
    }
    return bytes;
}

int ramAddressedOutside(const VirtualReader &reader)
{
    constexpr std::uint8_t kGbRamWriteOpcode = 12;
    int outside = 0;
    for (const Operation &operation : reader.operations()) {
        for (const BlockRecord &block : operation.blocks) {
            if (block.commandClass == kClassGb && block.opcode == kGbRamWriteOpcode &&
                (block.address < kRamStart || block.address + block.length > kRamEnd))
                ++outside;
        }
    }
    return outside;
}

bool onlyRegistersWritten(MapperFixture *fixture, const MapperFacts &facts)
{
    const std::vector<BlockRecord> writes = fixture->busWrites();
    return std::all_of(writes.begin(), writes.end(), [&](const BlockRecord &write) {
        return facts.registers.contains(write.address);
    });
}

} // namespace

class MapperSaveTest : public QObject
{
    Q_OBJECT

private slots:
    void saveSurvivesAChangeOfReaders_data() { addRamRows(); }
    void saveSurvivesAChangeOfReaders()
    {
        QFETCH(int, mapper);
        QFETCH(int, size);
        const QByteArray original = noise(size, 1);
        const UserFolder folder;
        const QString kept = folder.addFile("kept.sav", original);
        {
            MapperFixture first(facts(mapper), smallestRom(mapper), size, kept);
            first.disturbRegisters();
            JobRun outcome = first.run(GB_READ_RAM, size);
            QVERIFY(outcome.succeeded());
            QVERIFY(outcome.result.bytes == asKept(facts(mapper), original));
            first.disturbRegisters();
            outcome = first.run(GB_WRITE_RAM, size, changed(original));
            QVERIFY2(outcome.succeeded(), qPrintable(outcome.text()));
        }
        const QByteArray expected = asKept(facts(mapper), changed(original));
        QVERIFY(contentOf(kept) == expected);

        MapperFixture second(facts(mapper), smallestRom(mapper), size, kept);
        const JobRun again = second.run(GB_READ_RAM, size);
        QVERIFY(again.succeeded());
        QVERIFY(again.result.bytes == expected);
    }

    void logsTheSteps_data() { addRamRows(); }
    void logsTheSteps()
    {
        QFETCH(int, mapper);
        QFETCH(int, size);
        MapperFixture fixture(facts(mapper), smallestRom(mapper), size);
        QStringList reading = {"Start dump save...", "Dump save finish."};
        QStringList writing = {"Start write save...", "Write save finish."};
        if (facts(mapper).script == factsOf(MapperKind::Mmm01).script) {
            reading.insert(1, kStaysMapped);
            writing.insert(1, kStaysMapped);
        }
        QCOMPARE(fixture.run(GB_READ_RAM, size).log, reading);
        QCOMPARE(fixture.run(GB_WRITE_RAM, size, noise(size, 2)).log, writing);
    }

    void readTakesTheFewestOperations_data() { addRamRows(); }
    void readTakesTheFewestOperations()
    {
        QFETCH(int, mapper);
        QFETCH(int, size);
        MapperFixture fixture(facts(mapper), smallestRom(mapper), size);
        QVERIFY(fixture.run(GB_READ_RAM, size).succeeded());
        compareTraffic(&fixture, saveReadTraffic(size));
    }

    void writeTakesTheFewestOperations_data() { addRamRows(); }
    void writeTakesTheFewestOperations()
    {
        QFETCH(int, mapper);
        QFETCH(int, size);
        MapperFixture fixture(facts(mapper), smallestRom(mapper), size);
        QVERIFY(fixture.run(GB_WRITE_RAM, size, noise(size, 2)).succeeded());
        compareTraffic(&fixture, saveWriteTraffic(size));
    }

    void onlyRegistersAndTheSaveAreWrittenTo_data() { addRamRows(); }
    void onlyRegistersAndTheSaveAreWrittenTo()
    {
        QFETCH(int, mapper);
        QFETCH(int, size);
        MapperFixture fixture(facts(mapper), smallestRom(mapper), size);
        QVERIFY(fixture.run(GB_READ_RAM, size).succeeded());
        QVERIFY(onlyRegistersWritten(&fixture, facts(mapper)));
        QVERIFY(fixture.run(GB_WRITE_RAM, size, noise(size, 2)).succeeded());
        QVERIFY(onlyRegistersWritten(&fixture, facts(mapper)));
        QCOMPARE(ramAddressedOutside(fixture.reader()), 0);
    }

    void readChangesNoByteOfTheSave_data() { addRamRows(); }
    void readChangesNoByteOfTheSave()
    {
        QFETCH(int, mapper);
        QFETCH(int, size);
        MapperFixture fixture(facts(mapper), smallestRom(mapper), size);
        fixture.setSave(noise(size, 3));
        QVERIFY(fixture.run(GB_READ_RAM, size).succeeded());
        QCOMPARE(fixture.cartridge().saveChanges(), std::uint64_t{0});
    }

    // A save file can be longer than the save memory; the rest of it is not sent.
    void writeUsesTheBeginningOfALongerFile_data() { addRamRows(); }
    void writeUsesTheBeginningOfALongerFile()
    {
        QFETCH(int, mapper);
        QFETCH(int, size);
        MapperFixture fixture(facts(mapper), smallestRom(mapper), size);
        const QByteArray longer = noise(size + 512, 4);
        QVERIFY(fixture.run(GB_WRITE_RAM, size, longer).succeeded());
        QVERIFY(fixture.save() == asKept(facts(mapper), longer.left(size)));
    }

private:
    static const MapperFacts &facts(int mapper) { return mapperFacts()[mapper]; }
    static int smallestRom(int mapper) { return facts(mapper).romSizes.first(); }

    static void compareTraffic(MapperFixture *fixture, const Traffic &expected)
    {
        const Traffic sent = trafficOf(fixture->reader().counters());
        QCOMPARE(sent.commandRuns, expected.commandRuns);
        QCOMPARE(sent.reads, expected.reads);
        QCOMPARE(fixture->refused(), std::uint64_t{0});
    }
};

GBDRIVER_TEST(MapperSaveTest, core)
#include "mapper_save_test.moc"
