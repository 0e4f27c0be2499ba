// ROM dumps: every size of every mapper, byte for byte, with the fewest device operations.
#include "mapper_fixture.h"

#include <QCryptographicHash>
#include <QtTest>

namespace
{

constexpr int kRomBank = 16 * 1024;
constexpr int kGateOpen = 0x0A;

QByteArray bankOf(const QByteArray &image, int bank)
{
    return image.mid(bank * kRomBank, kRomBank);
}

const MapperFacts &mbc1()
{
    return mapperFacts()[1];
}

const MapperFacts &mbc5()
{
    return mapperFacts()[2];
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
        MapperFixture fixture(mapperFacts()[mapper], size, 0);
        QSet<QByteArray> digests;
        for (int bank = 0; bank < size / kRomBank; ++bank)
            digests << QCryptographicHash::hash(bankOf(fixture.rom(), bank),
                                                QCryptographicHash::Sha256);
        QCOMPARE(digests.size(), size / kRomBank);
    }

    void dumpEqualsTheImage_data() { addRomRows(); }
    void dumpEqualsTheImage()
    {
        QFETCH(int, mapper);
        QFETCH(int, size);
        MapperFixture fixture(mapperFacts()[mapper], size, 0);
        fixture.disturbRegisters();

        const JobOutcome outcome = fixture.run(GB_READ_ROM, size, path());
        QVERIFY2(outcome.succeeded(), qPrintable(outcome.text()));
        QVERIFY2(fileBytes(path()) == fixture.rom(), "the dump differs from the image");
        QCOMPARE(outcome.log, QStringList({"Start dump rom...", "Dump rom finish."}));
    }

    void dumpTakesTheFewestOperations_data() { addRomRows(); }
    void dumpTakesTheFewestOperations()
    {
        QFETCH(int, mapper);
        QFETCH(int, size);
        MapperFixture fixture(mapperFacts()[mapper], size, 0);
        QVERIFY(fixture.run(GB_READ_ROM, size, path()).succeeded());

        const Traffic sent = trafficOf(fixture.reader().counters());
        const Traffic expected = romDumpTraffic(mapperFacts()[mapper], size);
        QCOMPARE(sent.commandRuns, expected.commandRuns);
        QCOMPARE(sent.reads, expected.reads);
        QCOMPARE(sent.blocks, expected.blocks);
        QCOMPARE(fixture.reader().counters().refusedBlocks, std::uint64_t{0});
        QCOMPARE(fixture.reader().counters().refusedReads, std::uint64_t{0});
    }

    void dumpReadsEveryByteOnce_data() { addRomRows(); }
    void dumpReadsEveryByteOnce()
    {
        QFETCH(int, mapper);
        QFETCH(int, size);
        MapperFixture fixture(mapperFacts()[mapper], size, 0);
        QVERIFY(fixture.run(GB_READ_ROM, size, path()).succeeded());

        constexpr std::uint64_t kIdentityTransfer = 1024;
        QCOMPARE(fixture.reader().counters().bytesRead,
                 kIdentityTransfer + static_cast<std::uint64_t>(size));
    }

    void dumpWritesToRegistersOnly_data() { addRomRows(); }
    void dumpWritesToRegistersOnly()
    {
        QFETCH(int, mapper);
        QFETCH(int, size);
        const MapperFacts &facts = mapperFacts()[mapper];
        MapperFixture fixture(facts, size, facts.ramSizes.last());
        fixture.setSave(noise(facts.ramSizes.last(), 1));
        const QByteArray save = fixture.save();
        QVERIFY(fixture.run(GB_READ_ROM, size, path()).succeeded());

        for (const BlockRecord &write : fixture.busWrites()) {
            QVERIFY2(facts.registers.contains(write.address),
                     qPrintable(QString("write to 0x%1").arg(write.address, 4, 16)));
            QVERIFY2(write.address != 0 || write.value != kGateOpen, "the RAM gate was opened");
        }
        QVERIFY(fixture.save() == save);
    }

    void noMapperIsNeverWrittenTo()
    {
        const MapperFacts &facts = mapperFacts()[0];
        MapperFixture fixture(facts, facts.romSizes.first(), 0);
        QVERIFY(fixture.run(GB_READ_ROM, facts.romSizes.first(), path()).succeeded());
        QVERIFY(fixture.busWrites().isEmpty());
    }

    void mbc1BanksThatTheFirstRegisterCanNotSelect_data()
    {
        QTest::addColumn<int>("bank");
        for (const int bank : {0x20, 0x40, 0x60})
            QTest::newRow(qPrintable(QString("bank 0x%1").arg(bank, 0, 16))) << bank;
    }
    void mbc1BanksThatTheFirstRegisterCanNotSelect()
    {
        QFETCH(int, bank);
        const int size = mbc1().romSizes.last();
        MapperFixture fixture(mbc1(), size, 0);
        QVERIFY(fixture.run(GB_READ_ROM, size, path()).succeeded());

        const QByteArray dump = fileBytes(path());
        QVERIFY(bankOf(dump, bank) == bankOf(fixture.rom(), bank));
        // What a cartridge shows at 0x4000 when such a bank is asked for.
        QVERIFY(bankOf(dump, bank) != bankOf(fixture.rom(), bank + 1));
    }

    // Mappers with one register for the whole bank number decode 0x3000 as that register.
    void mbc5WritesBitEightOnlyWhereItChanges()
    {
        const int size = mbc5().romSizes.last();
        MapperFixture fixture(mbc5(), size, 0);
        QVERIFY(fixture.run(GB_READ_ROM, size, path()).succeeded());

        QVector<unsigned> values;
        const QVector<BlockRecord> writes = fixture.busWrites();
        for (int i = 0; i < writes.size(); ++i) {
            if (writes[i].address != 0x3000)
                continue;
            values << writes[i].value;
            QVERIFY(i + 1 < writes.size());
            QCOMPARE(writes[i + 1].address, 0x2000U);
        }
        QCOMPARE(values, QVector<unsigned>({0, 1, 0}));
    }

private:
    QString path() const { return m_folder.filePath("dump.gb"); }

    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(MapperDumpTest)
#include "mapper_dump_test.moc"
