// Flash jobs that must not or cannot be done: what is sent, what the user reads, what the chip
// holds.
#include "drive_faults.h"
#include "job_events.h"
#include "mapper_fixture.h"
#include "test_class.h"

#include <QtTest>

using namespace virtual_reader;

namespace
{

constexpr int kKiB = 1024;
constexpr int kRomBank = 16 * kKiB;
constexpr int kChip = 64 * kKiB;
constexpr int kLooks = 5; // until the user cancels; a working chip needs fewer

struct ScriptRow {
    MapperKind kind;
    int largest; // bytes
    int bank;
};

constexpr ScriptRow kScripts[] = {
    {MapperKind::None, 32 * kKiB, 32 * kKiB},
    {MapperKind::Mbc1, 512 * kKiB, kRomBank},
    {MapperKind::Mbc3, 4096 * kKiB, kRomBank},
    {MapperKind::Mbc5, 8192 * kKiB, kRomBank},
};

} // namespace

class MapperFlashFailureTest : public QObject
{
    Q_OBJECT

private slots:
    // The erase is refused, but the program goes on to wait for it. An erased chip looks as if it
    // had been: the second step must refuse as well.
    void filesOfWrongSizes_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("size");
        for (const ScriptRow &row : kScripts) {
            for (const int size : {0, 1, 7, row.largest + 1, row.largest + row.bank})
                addSizeRow(row, size);
            if (row.bank < row.largest) {
                addSizeRow(row, row.bank + 1);
                addSizeRow(row, 3 * row.bank + 7);
            }
        }
    }
    void filesOfWrongSizes()
    {
        QFETCH(int, kind);
        QFETCH(int, size);
        FlashFixture fixture(static_cast<MapperKind>(kind), FlashWidth::Byte, 32 * kKiB);
        const QByteArray before = fixture.rom();

        JobRun outcome = fixture.flash(noise(size, 1), 0, kLooks);
        checkRefusal(&fixture, outcome, size);
        QVERIFY(!outcome.log.contains("Erase flash chip finish."));
        QVERIFY(fixture.rom() == before);

        fixture.cartridge().powerCycle();
        eraseByHand(&fixture);
        outcome = fixture.flash(noise(size, 1), 0, kLooks);
        checkRefusal(&fixture, outcome, size);
        QCOMPARE(outcome.log.filter(kNothingSent).size(), 2);
        QVERIFY(fixture.rom() == QByteArray(before.size(), '\xFF'));
    }

    // There is no chip to wait for: the job ends at once.
    void mappersWithoutFlash_data()
    {
        QTest::addColumn<int>("kind");
        for (const MapperKind kind :
             {MapperKind::Mbc2, MapperKind::Mbc7, MapperKind::Tama5, MapperKind::Huc1})
            QTest::newRow(factsOf(kind).name) << static_cast<int>(kind);
    }
    void mappersWithoutFlash()
    {
        QFETCH(int, kind);
        const MapperFacts &facts = factsOf(static_cast<MapperKind>(kind));
        MapperFixture fixture(facts, kChip, 0);
        const JobRun outcome =
            fixture.run(scriptJob(facts.script, GB_WRITE_FLASH, kChip), noise(kChip, 1), kLooks);
        QVERIFY2(!outcome.succeeded(), qPrintable(outcome.text()));
        const QString reason = outcome.result.scriptError;
        QVERIFY2(reason.contains("cannot write a ROM, because no flash cartridge has"),
                 qPrintable(outcome.text()));
        QVERIFY(reason.contains(kNothingSent));
        QVERIFY(!outcome.log.contains("Start erase flash chip..."));
        QVERIFY(fixture.nothingWasSent());
    }

    // Nobody tells the program that nothing is being erased; the user cancels.
    void chipsThatAreNeverErased_data()
    {
        QTest::addColumn<bool>("isProtected");
        QTest::addColumn<bool>("isEndless");
        QTest::addColumn<int>("width");
        QTest::newRow("protected") << true << false << 0;
        QTest::newRow("never ends") << false << true << 0;
        QTest::newRow("16 bit, taken for 8 bit") << false << false << 1;
    }
    void chipsThatAreNeverErased()
    {
        QFETCH(bool, isProtected);
        QFETCH(bool, isEndless);
        QFETCH(int, width);
        FlashChipBehaviour behaviour;
        behaviour.writeProtected = isProtected;
        behaviour.eraseNeverEnds = isEndless;
        FlashFixture fixture(MapperKind::Mbc5, width == 0 ? FlashWidth::Byte : FlashWidth::Word,
                             kChip, behaviour);
        const QByteArray before = fixture.rom();
        const JobRun outcome = fixture.flash(newGame(MapperKind::Mbc5, kChip), 0, kLooks);
        QVERIFY2(!outcome.succeeded(), qPrintable(outcome.text()));
        QCOMPARE(outcome.log.last(), QString("Start erase flash chip..."));
        if (!isEndless)
            QVERIFY(fixture.rom() == before);
    }

    void wrongWidthOnAnErasedChipLeavesItErased()
    {
        FlashFixture fixture(MapperKind::Mbc5, FlashWidth::Byte, kChip);
        eraseByHand(&fixture);
        const JobRun outcome = fixture.flash(newGame(MapperKind::Mbc5, kChip), 1);
        QVERIFY2(outcome.succeeded(), qPrintable(outcome.text()));
        QVERIFY(fixture.rom() == QByteArray(kChip, '\xFF'));
    }

    // A chip that never got its commands is not waited for.
    void eraseThatIsNotTakenEndsTheJob()
    {
        constexpr unsigned kErase = 3; // behind the bus and the key
        FlashFixture fixture(MapperKind::Mbc5, FlashWidth::Byte, kChip);
        const QByteArray before = fixture.rom();
        fixture.drive().addFault(commandFault(kErase));
        const JobRun outcome = fixture.flash(newGame(MapperKind::Mbc5, kChip), 0);
        QCOMPARE(outcome.result.end, JobEnd::ScriptFailed);
        QCOMPARE(outcome.result.scriptError,
                 QString("cpu_write: the reader did not take the command"));
        QVERIFY(!outcome.log.contains("Erase flash chip finish."));
        QVERIFY(fixture.rom() == before);
    }

    // A cut of the power while the chip is erased; the next job makes it good.
    void interruptedEraseCanBeDoneAgain()
    {
        FlashChipBehaviour behaviour;
        behaviour.erasePolls = 3;
        FlashFixture fixture(MapperKind::Mbc5, FlashWidth::Byte, kChip, behaviour);
        const QByteArray before = fixture.rom();
        const QByteArray game = newGame(MapperKind::Mbc5, kChip);
        QVERIFY(!fixture.flash(game, 0, 1).succeeded());
        fixture.cartridge().powerCycle();
        QVERIFY(fixture.rom() != before);
        QVERIFY(fixture.rom() != QByteArray(kChip, '\xFF'));

        QVERIFY(fixture.flash(game, 0).succeeded());
        QVERIFY(fixture.rom() == game);
    }

    // Whatever command file of the programming fails, the chip shows what it holds afterwards.
    void brokenProgrammingLeavesReadMode_data()
    {
        QTest::addColumn<int>("kind");
        for (const MapperKind kind : {MapperKind::Mbc1, MapperKind::Mbc3, MapperKind::Mbc5})
            QTest::newRow(factsOf(kind).name) << static_cast<int>(kind);
    }
    void brokenProgrammingLeavesReadMode()
    {
        QFETCH(int, kind);
        const auto board = static_cast<MapperKind>(kind);
        // Bus, key, erase; then registers and payload of four banks, bank 0 of an MBC3 without any.
        constexpr unsigned kEraseEnd = 4;
        const unsigned last = kEraseEnd + (board == MapperKind::Mbc3 ? 7 : 8);
        for (unsigned position = kEraseEnd; position < last; ++position) {
            FlashFixture fixture(board, FlashWidth::Byte, kChip);
            fixture.drive().addFault(commandFault(position));
            const JobRun outcome = fixture.flash(newGame(board, kChip), 0);
            QCOMPARE(outcome.result.end, JobEnd::ScriptFailed);
            const QString unrest = fixture.unrest();
            QVERIFY2(unrest.isEmpty(), qPrintable(QString("%1: %2").arg(position).arg(unrest)));
            QVERIFY(fixture.dump(kChip) == fixture.rom());
        }
    }

    void jobsEndAnotherProgramsCommandMode()
    {
        FlashFixture fixture(MapperKind::Mbc5, FlashWidth::Byte, kChip);
        showIds(&fixture);
        QVERIFY(fixture.dump(kChip) == fixture.rom());

        showIds(&fixture);
        const QByteArray game = newGame(MapperKind::Mbc5, kChip);
        QVERIFY(fixture.flash(game, 0, kLooks).succeeded());
        QVERIFY(fixture.rom() == game);
    }

private:
    static void addSizeRow(const ScriptRow &row, int size)
    {
        QTest::newRow(qPrintable(QString("%1 %2 bytes").arg(factsOf(row.kind).name).arg(size)))
            << static_cast<int>(row.kind) << size;
    }

    static void checkRefusal(FlashFixture *fixture, const JobRun &outcome, int size)
    {
        QVERIFY2(!outcome.succeeded(), qPrintable(outcome.text()));
        const QString reason = scriptErrors(outcome.log).value(0);
        for (const QString &part : {QString("cannot write a ROM file of %1 bytes").arg(size),
                                    QString("Press Cancel"), QString(kNothingSent)})
            QVERIFY2(reason.contains(part), qPrintable(outcome.text()));
        QVERIFY(fixture->nothingWasSent());
    }

    static void showIds(FlashFixture *fixture)
    {
        fixture->cartridge().gbWrite(0x555, 0xAA);
        fixture->cartridge().gbWrite(0x2AA, 0x55);
        fixture->cartridge().gbWrite(0x555, 0x90);
        QVERIFY(fixture->busBytes(0, 2) != fixture->rom().left(2));
    }

    static void eraseByHand(FlashFixture *fixture)
    {
        Cartridge &cartridge = fixture->cartridge();
        constexpr std::pair<std::uint16_t, std::uint8_t> kErase[] = {{0x555, 0xAA}, {0x2AA, 0x55},
                                                                     {0x555, 0x80}, {0x555, 0xAA},
                                                                     {0x2AA, 0x55}, {0x555, 0x10}};
        for (const auto &[address, value] : kErase)
            cartridge.gbWrite(address, value);
        QTRY_COMPARE(static_cast<int>(cartridge.gbRead(0)), 0xFF);
    }
};

GBDRIVER_TEST(MapperFlashFailureTest, core)
#include "mapper_flash_failure_test.moc"
