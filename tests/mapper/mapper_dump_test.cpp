// ROM dumps: every size of every kind, byte for byte, with the fewest device operations.
#include "mapper_fixture.h"
#include "test_class.h"

#include <QCryptographicHash>
#include <QtTest>

using namespace virtual_reader;

namespace
{

constexpr int kRomBank = 16 * 1024;
constexpr int kMiB = 1024 * 1024;
constexpr int kGateOpen = 0x0A;

QByteArray bankOf(const QByteArray &image, int bank)
{
    return image.mid(bank * kRomBank, kRomBank);
}

} // namespace

class MapperDumpTest : public QObject
{
    Q_OBJECT

private slots:
    void everyBankOfAnImageIsDifferent_data() { addRomRows(); }
    void everyBankOfAnImageIsDifferent()
    {
        QFETCH(int, mapper);
        QFETCH(int, size);
        const QByteArray image = toByteArray(makeMapperImage(mapperFacts()[mapper], size, 0));
        QSet<QByteArray> digests;
        for (int bank = 0; bank < size / kRomBank; ++bank)
            digests << QCryptographicHash::hash(bankOf(image, bank), QCryptographicHash::Sha256);
        QCOMPARE(digests.size(), size / kRomBank);
    }

    void dumpEqualsTheImage_data() { addRomRows(); }
    void dumpEqualsTheImage()
    {
        QFETCH(int, mapper);
        QFETCH(int, size);
        MapperFixture fixture(mapperFacts()[mapper], size, 0);
        fixture.disturbRegisters();

        const JobRun outcome = fixture.run(GB_READ_ROM, size);
        QVERIFY2(outcome.succeeded(), qPrintable(outcome.text()));
        QVERIFY2(outcome.result.bytes == fixture.rom(), "the dump differs from the image");
        QCOMPARE(outcome.log.first(), QString("Start dump rom..."));
        QCOMPARE(outcome.log.last(), QString("Dump rom finish."));
        const bool stays = mapperFacts()[mapper].kind == MapperKind::Mmm01;
        QCOMPARE(outcome.log.size(), stays ? 3 : 2);
    }

    void dumpTakesTheFewestOperations_data() { addRomRows(); }
    void dumpTakesTheFewestOperations()
    {
        QFETCH(int, mapper);
        QFETCH(int, size);
        const MapperFacts &facts = mapperFacts()[mapper];
        MapperFixture fixture(facts, size, 0);
        QVERIFY(fixture.run(GB_READ_ROM, size).succeeded());

        const OperationCounters &counters = fixture.reader().counters();
        const Traffic expected = romDumpTraffic(facts, size);
        QCOMPARE(trafficOf(counters).commandRuns, expected.commandRuns);
        QCOMPARE(trafficOf(counters).reads, expected.reads);
        QCOMPARE(fixture.refused(), std::uint64_t{0});
        // Identity and delay are transfers of 1 KiB; of the ROM every byte comes once.
        const int transfers = facts.mustBeWoken() ? 2 : 1;
        QCOMPARE(counters.bytesRead, static_cast<std::uint64_t>(1024 * transfers + size));
    }

    void dumpWritesToRegistersOnly_data() { addRomRows(); }
    void dumpWritesToRegistersOnly()
    {
        QFETCH(int, mapper);
        QFETCH(int, size);
        const MapperFacts &facts = mapperFacts()[mapper];
        const int ramSize = facts.ramSizes.isEmpty() ? 0 : facts.ramSizes.last();
        MapperFixture fixture(facts, size, ramSize);
        QVERIFY(fixture.run(GB_READ_ROM, size).succeeded());

        for (const BlockRecord &write : fixture.busWrites()) {
            QVERIFY2(facts.registers.contains(write.address),
                     qPrintable(QString("write to 0x%1").arg(write.address, 4, 16)));
            QVERIFY2(write.address != 0 || write.value != kGateOpen, "the RAM gate was opened");
        }
        QCOMPARE(fixture.cartridge().saveChanges(), std::uint64_t{0});
    }

    void noMapperIsNeverWrittenTo()
    {
        const MapperFacts &facts = factsOf(MapperKind::None);
        MapperFixture fixture(facts, facts.romSizes.first(), 0);
        QVERIFY(fixture.run(GB_READ_ROM, facts.romSizes.first()).succeeded());
        QVERIFY(fixture.busWrites().empty());
    }

    void banksThatTheFirstRegisterCanNotSelect_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("bank");
        for (const MapperKind kind : {MapperKind::Mbc1, MapperKind::Mmm01}) {
            for (const int bank : {0x20, 0x40, 0x60})
                QTest::newRow(
                    qPrintable(QString("%1 bank 0x%2").arg(factsOf(kind).name).arg(bank, 0, 16)))
                    << static_cast<int>(kind) << bank;
        }
    }
    void banksThatTheFirstRegisterCanNotSelect()
    {
        QFETCH(int, kind);
        QFETCH(int, bank);
        MapperFixture fixture(factsOf(static_cast<MapperKind>(kind)), 2 * kMiB, 0);
        const QByteArray dump = fixture.dump(2 * kMiB);
        QVERIFY(bankOf(dump, bank) == bankOf(fixture.rom(), bank));
        // What a cartridge shows at 0x4000 when such a bank is asked for.
        QVERIFY(bankOf(dump, bank) != bankOf(fixture.rom(), bank + 1));
    }

    // Mappers with one register for the whole bank number decode 0x3000 as that register.
    void mbc5WritesBitEightOnlyWhereItChanges()
    {
        MapperFixture fixture(factsOf(MapperKind::Mbc5), 8 * kMiB, 0);
        QVERIFY(fixture.run(GB_READ_ROM, 8 * kMiB).succeeded());

        QVector<unsigned> values;
        const std::vector<BlockRecord> writes = fixture.busWrites();
        for (std::size_t i = 0; i < writes.size(); ++i) {
            if (writes[i].address != 0x3000)
                continue;
            values << writes[i].value;
            QVERIFY(i + 1 < writes.size());
            QCOMPARE(writes[i + 1].address, 0x2000U);
        }
        QCOMPARE(values, QVector<unsigned>({0, 1, 0}));
    }

    // A board for several games of 256 KiB: as a ROM of 2 MiB all of its banks come out, each game
    // at the start of a group and once more behind it.
    void multiCartridgeComesOutWholeAtTwiceItsSize()
    {
        CartridgeOptions options;
        options.multiCart = true;
        MapperFixture fixture(factsOf(MapperKind::Mbc1), kMiB, 0, {}, options);
        const QByteArray dump = fixture.dump(2 * kMiB);
        constexpr int kGame = kMiB / 4;
        for (int game = 0; game < 4; ++game)
            QVERIFY2(dump.mid(2 * game * kGame, kGame) == fixture.rom().mid(game * kGame, kGame),
                     qPrintable(QString::number(game)));
    }

    void mmm01ShowsEverythingAgainAfterItWasTakenOut()
    {
        MapperFixture fixture(factsOf(MapperKind::Mmm01), 2 * kMiB, 32 * 1024);
        fixture.setSave(noise(32 * 1024, 1));
        const JobRun outcome = fixture.run(GB_READ_ROM, 2 * kMiB);
        QVERIFY2(outcome.log.value(1).contains("Take it out"), qPrintable(outcome.text()));

        const JobRun before = fixture.run(GB_READ_RAM, 32 * 1024);
        QVERIFY(before.succeeded());
        QVERIFY(before.result.bytes != fixture.save());
        fixture.cartridge().powerCycle();
        const JobRun behind = fixture.run(GB_READ_RAM, 32 * 1024);
        QVERIFY(behind.succeeded());
        QVERIFY(behind.result.bytes == fixture.save());
    }
};

GBDRIVER_TEST(MapperDumpTest, core)
#include "mapper_dump_test.moc"
