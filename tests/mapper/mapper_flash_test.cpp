// Writing a ROM file into a flash cartridge: every mapper that has such boards, both widths.
#include "mapper_fixture.h"
#include "test_class.h"

#include <QtTest>

#include <algorithm>

using namespace virtual_reader;

namespace
{

constexpr int kKiB = 1024;
constexpr int kMiB = 1024 * kKiB;
constexpr int kRomBank = 16 * kKiB;
constexpr std::uint8_t kProgramOpcodes[] = {14, 15};

struct Board {
    MapperKind kind;
    const char *name;
    QVector<int> sizes; // bytes
};

const Board kBoards[] = {
    {MapperKind::None, "none", {32 * kKiB}},
    {MapperKind::Mbc1, "MBC1", {32 * kKiB, 128 * kKiB, 512 * kKiB}},
    {MapperKind::Mbc3, "MBC3", {32 * kKiB, 512 * kKiB, 2 * kMiB}},
    {MapperKind::Mbc30, "MBC30", {4 * kMiB}},
    {MapperKind::Mbc5, "MBC5", {32 * kKiB, kMiB, 8 * kMiB}},
};

FlashWidth chipOf(int width)
{
    return width == 0 ? FlashWidth::Byte : FlashWidth::Word;
}

// What one command file programs.
int bankOf(MapperKind kind)
{
    return kind == MapperKind::None ? 2 * kRomBank : kRomBank;
}

// Command files that set the mapper. Bank 0 of an MBC3 stays where it is.
int selections(MapperKind kind, int banks)
{
    if (kind == MapperKind::None)
        return 0;
    return kind == MapperKind::Mbc3 || kind == MapperKind::Mbc30 ? banks - 1 : banks;
}

bool isPayload(const Operation &operation)
{
    return operation.kind == Operation::Kind::CommandRun &&
           operation.blocks.front().commandClass == kClassGb &&
           operation.blocks.front().opcode >= kProgramOpcodes[0];
}

} // namespace

class MapperFlashTest : public QObject
{
    Q_OBJECT

private slots:
    void chipHoldsTheFile_data()
    {
        addColumns();
        for (const Board &board : kBoards) {
            for (const int size : board.sizes)
                addRows(board, size, size);
        }
    }
    void chipHoldsTheFile() { checkFlash(); }

    // Sizes that are no multiple of a bank, among them all that would end with a short block.
    void lastBankMayBeShort_data()
    {
        addColumns();
        QVector<int> sizes = {8, 480, kRomBank + 8, 3 * kRomBank + 5000};
        for (int tail = 1; tail < 8; ++tail)
            sizes << 480 + tail << kRomBank + 960 + tail;
        for (const Board &board : kBoards) {
            const int chip = std::min(64 * kKiB, board.sizes.last());
            for (const int size : sizes) {
                if (board.sizes.contains(32 * kKiB) && size <= chip)
                    addRows(board, size, chip);
            }
        }
    }
    void lastBankMayBeShort() { checkFlash(); }

    void saysWhatItDoes()
    {
        FlashFixture fixture(MapperKind::Mbc5, FlashWidth::Byte, 64 * kKiB);
        const JobRun outcome = fixture.flash(newGame(MapperKind::Mbc5, 64 * kKiB), 0);
        QCOMPARE(outcome.log, QStringList({"Start erase flash chip...", "Erase flash chip finish.",
                                           "Start flash ROM...", "Flash ROM finish."}));
    }

private:
    static void addColumns()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("chip");
    }

    static void addRows(const Board &board, int size, int chip)
    {
        for (const int width : {0, 1})
            QTest::newRow(qPrintable(
                QString("%1 %2 bit, %3 bytes").arg(board.name).arg(width == 0 ? 8 : 16).arg(size)))
                << static_cast<int>(board.kind) << width << size << chip;
    }

    static void checkFlash()
    {
        QFETCH(int, kind);
        QFETCH(int, width);
        QFETCH(int, size);
        QFETCH(int, chip);
        const auto board = static_cast<MapperKind>(kind);
        FlashFixture fixture(board, chipOf(width), chip);
        fixture.setSave(noise(fixture.save().size(), 3));
        const QByteArray file = newGame(board, chip).left(size);
        fixture.disturbRegisters();
        const JobRun outcome = fixture.flash(file, width);

        QVERIFY2(outcome.succeeded(), qPrintable(outcome.text()));
        QVERIFY2(fixture.rom() == inChip(file, chip), "the chip does not hold the file");
        QCOMPARE(fixture.refused(), std::uint64_t{0});
        QCOMPARE(fixture.cartridge().saveChanges(), std::uint64_t{0});
        checkPayload(&fixture, board, width, size);
        QCOMPARE(fixture.unrest(), QString());
    }

    // Of all command files: the bus, the reader's key, the erase, and one at the end.
    static void checkPayload(FlashFixture *fixture, MapperKind kind, int width, int size)
    {
        int runs = 0;
        for (const Operation &operation : fixture->reader().operations()) {
            if (!isPayload(operation))
                continue;
            ++runs;
            for (const BlockRecord &block : operation.blocks) {
                QCOMPARE(block.opcode, kProgramOpcodes[width]);
                QVERIFY(block.length >= 8);
            }
        }
        const int bank = bankOf(kind);
        const int tail = size % bank % 480;
        const int split = tail > 0 && tail < 8 ? 1 : 0;
        const int banks = (size + bank - 1) / bank;
        QCOMPARE(runs, banks + split);
        QCOMPARE(trafficOf(fixture->reader().counters()).commandRuns,
                 kJobTraffic.commandRuns + 3 + selections(kind, banks) + runs);
    }
};

GBDRIVER_TEST(MapperFlashTest, core)
#include "mapper_flash_test.moc"
