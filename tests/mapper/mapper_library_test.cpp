// The shipped scripts on cartridges of an emulator library, whose mappers others wrote: a mistake
// that a script shares with the virtual cartridges shows here.
#include "mapper_fixture.h"
#include "mgba_cartridge.h"
#include "test_class.h"

#include <QtTest>

using namespace virtual_reader;

namespace
{

constexpr int kKiB = 1024;
constexpr int kNibbles = 512; // of an MBC2

// The library's MMM01 does not multiplex.
QVector<int> servedRomSizes(const MapperFacts &mapper)
{
    QVector<int> sizes = mapper.romSizes;
    while (mapper.kind == MapperKind::Mmm01 && sizes.last() > 512 * kKiB)
        sizes.removeLast();
    return sizes;
}

// The library shows no RAM beside a ROM without a mapper.
QVector<int> servedRamSizes(const MapperFacts &mapper)
{
    return mapper.kind == MapperKind::None ? QVector<int>() : mapper.ramSizes;
}

void addRows(QVector<int> sizesOf(const MapperFacts &mapper))
{
    QTest::addColumn<int>("mapper");
    QTest::addColumn<int>("size");
    for (int i = 0; i < mapperFacts().size(); ++i) {
        for (const int size : sizesOf(mapperFacts()[i]))
            QTest::addRow("%s %d bytes", mapperFacts()[i].name, size) << i << size;
    }
}

std::unique_ptr<Cartridge> makeLibraryCartridge(const MapperFacts &mapper, int romSize, int ramSize)
{
    std::string error;
    auto cartridge = MgbaCartridge::create(makeMapperImage(mapper, romSize, ramSize), &error);
    if (cartridge == nullptr)
        qFatal("no cartridge: %s", error.c_str());
    return cartridge;
}

// The fixture, and jobs with the script of the kind.
class LibraryFixture : public ReaderBench
{
public:
    LibraryFixture(const MapperFacts &mapper, int romSize, int ramSize)
        : ReaderBench(makeLibraryCartridge(mapper, romSize, ramSize)), m_mapper(mapper)
    {
    }

    // Fills all of the save memory that the library has for the kind. Returns: what it then holds.
    QByteArray fillSave(unsigned seed)
    {
        setSave(noise(save().size(), seed));
        return save();
    }

    // A save in the form in which a script moves it. The library keeps two cells of an MBC2 in a
    // byte, the first one in the lower half; the upper half of what is read is open.
    QByteArray movedSave()
    {
        const QByteArray kept = save();
        if (m_mapper.kind != MapperKind::Mbc2)
            return kept;
        QByteArray cells;
        for (int i = 0; i < kNibbles; ++i)
            cells += static_cast<char>(kept[i / 2] >> (i % 2 * 4) & 0x0F);
        return cells;
    }
    QByteArray compared(QByteArray moved) const
    {
        for (char &byte : moved)
            byte = static_cast<char>(byte & (m_mapper.kind == MapperKind::Mbc2 ? 0x0F : 0xFF));
        return moved;
    }

    JobRun run(JobCode operate, int size, const QByteArray &input = {})
    {
        return ReaderBench::run(scriptJob(m_mapper.script, operate, size), input);
    }

private:
    const MapperFacts &m_mapper;
};

} // namespace

class MapperLibraryTest : public QObject
{
    Q_OBJECT

private slots:
    void dumpEqualsTheImage_data() { addRows(servedRomSizes); }
    void dumpEqualsTheImage()
    {
        QFETCH(int, mapper);
        QFETCH(int, size);
        const MapperFacts &facts = mapperFacts()[mapper];
        LibraryFixture fixture(facts, size, 0);
        const JobRun outcome = fixture.run(GB_READ_ROM, size);
        QVERIFY2(outcome.succeeded(), qPrintable(outcome.text()));
        QVERIFY2(outcome.result.bytes == fixture.rom(), "the dump differs from the image");
        QCOMPARE(fixture.refused(), std::uint64_t{0});
    }

    void dumpLeavesTheSaveAsItWas_data()
    {
        QTest::addColumn<int>("mapper");
        for (int i = 0; i < mapperFacts().size(); ++i)
            QTest::newRow(mapperFacts()[i].name) << i;
    }
    void dumpLeavesTheSaveAsItWas()
    {
        QFETCH(int, mapper);
        const MapperFacts &facts = mapperFacts()[mapper];
        const int romSize = servedRomSizes(facts).last();
        const int ramSize = facts.ramSizes.isEmpty() ? 0 : facts.ramSizes.last();
        LibraryFixture fixture(facts, romSize, ramSize);
        const QByteArray before = fixture.fillSave(1);
        QVERIFY(!before.isEmpty());
        QVERIFY(fixture.run(GB_READ_ROM, romSize).succeeded());
        QVERIFY2(fixture.save() == before, "the dump changed the save");
    }

    void saveIsReadWrittenAndReadBack_data() { addRows(servedRamSizes); }
    void saveIsReadWrittenAndReadBack()
    {
        QFETCH(int, mapper);
        QFETCH(int, size);
        const MapperFacts &facts = mapperFacts()[mapper];
        LibraryFixture fixture(facts, facts.romSizes.first(), size);
        const QByteArray before = fixture.fillSave(2);
        const JobRun read = fixture.run(GB_READ_RAM, size);
        QVERIFY(read.succeeded());
        QVERIFY(fixture.compared(read.result.bytes) == fixture.movedSave());
        QVERIFY2(fixture.save() == before, "reading changed the save");

        const QByteArray changed = noise(size, 3);
        QVERIFY(fixture.run(GB_WRITE_RAM, size, changed).succeeded());
        QVERIFY2(fixture.movedSave() == fixture.compared(changed), "the chip has other bytes");

        const JobRun again = fixture.run(GB_READ_RAM, size);
        QVERIFY(again.succeeded());
        QVERIFY(fixture.compared(again.result.bytes) == fixture.compared(changed));
    }
};

GBDRIVER_TEST(MapperLibraryTest, core)
#include "mapper_library_test.moc"
