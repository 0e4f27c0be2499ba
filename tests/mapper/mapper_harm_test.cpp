// What a read does to the save of a cartridge that another script is for: every script on every
// board, dumps and save reads. The page about the scripts has the same as a table, and is held
// against what is measured here.
#include "mapper_fixture.h"

#include "cart/setting_tables.h"
#include "test_class.h"

#include <QtTest>

#include <algorithm>

using namespace virtual_reader;

namespace
{

constexpr int kKiB = 1024;
constexpr int kMiB = 1024 * kKiB;
const QString kNoBoard = "no board";

struct ReadJob {
    JobCode operate;
    int size;
    int saveType = 0;
};

// Of saves all that a script takes; of dumps the shortest, and the longest, which selects every
// bank.
struct ScriptRow {
    const char *script;
    QVector<ReadJob> dumps;
    QVector<ReadJob> saveReads;
};

QVector<ReadJob> gbReads(JobCode operate, const QVector<int> &sizes)
{
    QVector<ReadJob> jobs;
    for (const int size : sizes)
        jobs << ReadJob{operate, size};
    return jobs;
}

QVector<ReadJob> gbaSaveReads()
{
    QVector<ReadJob> jobs;
    for (const SettingRow &type : kGbaSaveTypes) {
        const int first = offeredSaveSizes(type.value);
        for (int row = first; row < first + kOfferedSaveSizes; ++row)
            jobs << ReadJob{GBA_READ_RAM, kGbaSaveSizes[static_cast<std::size_t>(row)].value,
                            type.value};
    }
    return jobs;
}

ScriptRow gbScript(const char *script, int largestRom, const QVector<int> &saves)
{
    return {script, gbReads(GB_READ_ROM, {32 * kKiB, largestRom}), gbReads(GB_READ_RAM, saves)};
}

const QVector<ScriptRow> &scripts()
{
    static const QVector<ScriptRow> rows = {
        gbScript("gb_mbc0.nut", 2 * kMiB, {8 * kKiB, 32 * kKiB}),
        gbScript("gb_mbc1.nut", 2 * kMiB, {8 * kKiB, 32 * kKiB}),
        gbScript("gb_mbc2.nut", 256 * kKiB, {512}),
        gbScript("gb_mbc3.nut", 4 * kMiB, {8 * kKiB, 32 * kKiB, 64 * kKiB}),
        gbScript("gb_mbc5.nut", 8 * kMiB, {8 * kKiB, 32 * kKiB, 64 * kKiB, 128 * kKiB}),
        gbScript("gb_mbc7.nut", 2 * kMiB, {}),
        gbScript("gb_tama5.nut", kMiB, {8 * kKiB, 32 * kKiB}),
        {"gba.nut", {{GBA_READ_ROM, kMiB}}, gbaSaveReads()},
    };
    return rows;
}

struct Board {
    QString name;
    const MapperFacts *facts = nullptr; // null: a GBA cartridge with this save memory
    GbaSaveType saveType = GbaSaveType::None;
    int saveSize = 0;
};

QVector<Board> boards()
{
    QVector<Board> boards;
    for (const MapperFacts &facts : mapperFacts())
        boards << Board{facts.kind == MapperKind::None ? "RAM without a mapper" : facts.name,
                        &facts};
    boards << Board{"GBA SRAM", nullptr, GbaSaveType::Sram, 32 * kKiB}
           << Board{"GBA FLASH 64 KiB", nullptr, GbaSaveType::Flash, 64 * kKiB}
           << Board{"GBA FLASH 128 KiB", nullptr, GbaSaveType::Flash, 128 * kKiB}
           << Board{"GBA EEPROM 512 bytes", nullptr, GbaSaveType::Eeprom, 512}
           << Board{"GBA EEPROM 8 KiB", nullptr, GbaSaveType::Eeprom, 8 * kKiB};
    return boards;
}

std::unique_ptr<Cartridge> cartridgeFor(const Board &board)
{
    if (board.facts == nullptr) {
        CartridgeOptions options;
        options.saveType = board.saveType;
        options.saveSize = static_cast<std::uint32_t>(board.saveSize);
        return cartridgeOf(gbaGame("ZVRE"), options);
    }
    const MapperFacts &facts = *board.facts;
    const int ramSize = facts.ramSizes.isEmpty() ? 0 : facts.ramSizes.last();
    return cartridgeOf(makeMapperImage(facts, facts.romSizes.first(), ramSize));
}

// As a program that stopped in the middle may leave it: gate open, banks selected.
void disturb(Cartridge *cartridge)
{
    for (const int address : {0x2000, 0x2100, 0x3000, 0x4000})
        cartridge->gbWrite(static_cast<std::uint16_t>(address), 0x03);
    cartridge->gbWrite(0x0000, 0x0A);
}

// What became of the save; empty if it is as it was and never was anything else.
QString harmOf(const Board &board, const CartridgeJob &job, bool isDisturbed)
{
    ReaderBench bench(cartridgeFor(board));
    bench.setSave(noise(bench.save().size(), 9));
    const QByteArray before = bench.save();
    if (isDisturbed)
        disturb(&bench.cartridge());
    const std::uint64_t changesBefore = bench.cartridge().saveChanges();
    bench.run(job);
    const QByteArray after = bench.save();
    QStringList places;
    for (int at = 0; at < after.size() && places.size() < 4; ++at) {
        if (after[at] != before[at])
            places << QString::number(at, 16);
    }
    const std::uint64_t changes = bench.cartridge().saveChanges() - changesBefore;
    return changes == 0 && places.isEmpty()
               ? QString()
               : QString("%1 changes, left in bytes %2").arg(changes).arg(places.join(' '));
}

bool isLong(const ReadJob &read)
{
    return read.operate == GB_READ_ROM && read.size > 32 * kKiB;
}

QStringList harmsOf(const Board &board, const char *script, const QVector<ReadJob> &jobs)
{
    QStringList harms;
    for (const ReadJob &read : jobs) {
        for (const bool isDisturbed : {false, true}) {
            // These take their time, and a GBA cartridge does not hear the GB bus.
            if (isLong(read) && (!isDisturbed || board.facts == nullptr))
                continue;
            const QString harm = harmOf(
                board, scriptJob(script, read.operate, read.size, read.saveType), isDisturbed);
            if (!harm.isEmpty())
                harms << QString("%1 bytes: %2").arg(read.size).arg(harm);
        }
    }
    return harms;
}

// The boards in column `column` of the script's row: 1 for dumps, 2 for save reads.
QStringList boardsInTable(const QString &script, int column)
{
    const QString heading = "| Script | A dump changes the save of | A save read changes that of |";
    const QString page = QString::fromUtf8(contentOf(QStringLiteral(SCRIPTS_PAGE)));
    const QString table = page.section(heading, 1).section("\n\n", 0, 0);
    for (const QString &line : table.split('\n')) {
        const QStringList cells = line.split('|');
        if (cells.value(1).trimmed() == "`" + script + "`")
            return cells.value(column + 1).trimmed().split(", ");
    }
    return {};
}

} // namespace

class MapperHarmTest : public QObject
{
    Q_OBJECT

private slots:
    void tableSaysWhatAReadDoes_data()
    {
        QTest::addColumn<int>("script");
        QTest::addColumn<int>("board");
        for (int script = 0; script < scripts().size(); ++script) {
            for (int board = 0; board < boards().size(); ++board)
                QTest::newRow(qPrintable(
                    QString("%1, %2").arg(scripts()[script].script, boards()[board].name)))
                    << script << board;
        }
    }
    void tableSaysWhatAReadDoes()
    {
        QFETCH(int, script);
        QFETCH(int, board);
        const ScriptRow &row = scripts()[script];
        compare(row.script, boards()[board], row.dumps, 1);
        compare(row.script, boards()[board], row.saveReads, 2);
    }

    // A cartridge that is used as what it is never loses anything, whatever the table says.
    void rightPairsHaveNoRow()
    {
        for (const Board &board : boards()) {
            const QString script = board.facts == nullptr ? "gba.nut" : board.facts->script;
            QVERIFY2(!boardsInTable(script, 1).contains(board.name), qPrintable(board.name));
            QVERIFY2(!boardsInTable(script, 2).contains(board.name), qPrintable(board.name));
        }
    }

    void tableNamesWhatThereIs()
    {
        QStringList names{kNoBoard};
        for (const Board &board : boards())
            names << board.name;
        for (const ScriptRow &row : scripts()) {
            for (const int column : {1, 2}) {
                const QStringList cell = boardsInTable(row.script, column);
                QVERIFY2(!cell.isEmpty(), row.script);
                for (const QString &name : cell)
                    QVERIFY2(names.contains(name), qPrintable(name));
            }
        }
    }

private:
    static void compare(const char *script, const Board &board, const QVector<ReadJob> &jobs,
                        int column)
    {
        const QStringList harms = harmsOf(board, script, jobs);
        const bool isNamed = boardsInTable(script, column).contains(board.name);
        QVERIFY2(harms.isEmpty() != isNamed,
                 qPrintable(
                     QString("%1 on %2: %3")
                         .arg(script, board.name, harms.isEmpty() ? "no harm" : harms.join("; "))));
    }
};

GBDRIVER_TEST(MapperHarmTest, core)
#include "mapper_harm_test.moc"
