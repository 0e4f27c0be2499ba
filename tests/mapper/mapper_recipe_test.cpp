// What each script sends, write by write, on the smallest job that shows all of it. The expected
// lines are the register sequences that the mappers' documents give, not what the scripts do.
//
// A line is one operation: "2000=01 3000=00" a command file of bus writes, "ram A000+2000" one of
// RAM payload, "program8 4000+4000" and "program16" of flash payload, "read 0000+8000" a read of
// the bus. The slot is empty: it reads as an erased chip, and nothing can be harmed.
#include "mapper_fixture.h"
#include "test_class.h"

#include <QtTest>

using namespace virtual_reader;

namespace
{

constexpr int kKiB = 1024;
constexpr int kMiB = 1024 * kKiB;

struct Payload {
    std::uint8_t opcode;
    const char *name;
};

constexpr Payload kPayloads[] = {{12, "ram"}, {14, "program8"}, {15, "program16"}};
constexpr std::uint8_t kBusWriteOpcode = 13;

QString hex(unsigned value, int digits)
{
    return QString("%1").arg(value, digits, 16, QChar('0')).toUpper();
}

QString payloadLine(const std::vector<BlockRecord> &blocks)
{
    for (const Payload &payload : kPayloads) {
        if (blocks.front().opcode != payload.opcode)
            continue;
        std::uint32_t length = 0;
        for (const BlockRecord &block : blocks)
            length += block.length;
        return QString("%1 %2+%3")
            .arg(payload.name, hex(blocks.front().address, 4), hex(length, 1));
    }
    return "?";
}

QString runLine(const std::vector<BlockRecord> &blocks)
{
    if (blocks.front().opcode != kBusWriteOpcode)
        return payloadLine(blocks);
    QStringList pairs;
    for (const BlockRecord &block : blocks)
        pairs << hex(block.address, 4) + "=" + hex(block.value, 2);
    return pairs.join(' ');
}

bool isScripts(const Operation &operation)
{
    if (operation.kind == Operation::Kind::Read)
        return operation.file == ReaderFile::Dump;
    const BlockRecord &first = operation.blocks.front();
    return first.commandClass == kClassGb && first.opcode >= kPayloads[0].opcode;
}

QStringList linesOf(const std::vector<Operation> &operations)
{
    QStringList lines;
    for (const Operation &operation : operations) {
        if (!isScripts(operation))
            continue;
        lines
            << (operation.kind == Operation::Kind::Read
                    ? QString("read %1+%2").arg(hex(operation.offset, 4), hex(operation.length, 1))
                    : runLine(operation.blocks));
    }
    return lines;
}

void addRow(const char *name, const char *script, JobCode operate, int size,
            const QStringList &expected, int flashWidth = 0)
{
    QTest::newRow(name) << QByteArray(script) << static_cast<int>(operate) << size << flashWidth
                        << expected;
}

void addDumpRows()
{
    addRow("none, no write", "gb_mbc0.nut", GB_READ_ROM, 32 * kKiB, {"read 0000+8000"});
    addRow("MMM01", "gb_mbc0.nut", GB_READ_ROM, 64 * kKiB,
           {"2000=00 6000=00 4000=00 0000=00 0000=40 2000=01", "read 0000+8000", "2000=02",
            "read 4000+4000", "2000=03", "read 4000+4000", "0000=00 6000=00 4000=00 2000=01"});
    addRow("MBC1, one bank pair", "gb_mbc1.nut", GB_READ_ROM, 32 * kKiB,
           {"0000=F0 6000=00 4000=00 2000=01", "read 0000+8000"});
    addRow("MBC2", "gb_mbc2.nut", GB_READ_ROM, 64 * kKiB,
           {"0000=00 2100=01", "read 0000+8000", "2100=02", "read 4000+4000", "2100=03",
            "read 4000+4000", "0000=00 2100=01"});
    addRow("MBC3", "gb_mbc3.nut", GB_READ_ROM, 64 * kKiB,
           {"0000=F0 4000=00 2000=01", "read 0000+8000", "2000=02", "read 4000+4000", "2000=03",
            "read 4000+4000", "0000=F0 4000=00 2000=01"});
    addRow("MBC5", "gb_mbc5.nut", GB_READ_ROM, 64 * kKiB,
           {"0000=F0 4000=00 3000=00 2000=01", "read 0000+8000", "2000=02", "read 4000+4000",
            "2000=03", "read 4000+4000", "0000=F0 4000=00 3000=00 2000=01"});
    addRow("MBC7", "gb_mbc7.nut", GB_READ_ROM, 64 * kKiB,
           {"0000=00 4000=00 2000=01", "read 0000+8000", "2000=02", "read 4000+4000", "2000=03",
            "read 4000+4000", "0000=00 4000=00 2000=01"});
    // Infrared right before A001, so that nothing there reaches the RAM of a HuC1 or of an MBC2;
    // registers 6 and 7 of a TAMA5 never; the light off with the last write.
    const QString rest = "2000=01 4000=00 0000=0E A001=00 A000=01 A001=01 A000=00 A001=00";
    addRow("TAMA5 and HuC1", "gb_tama5.nut", GB_READ_ROM, 64 * kKiB,
           {"0000=0E A001=0A", "read 0000+400", rest, "read 0000+8000",
            "2000=02 4000=00 0000=0E A001=00 A000=02 A001=01 A000=00 A001=00", "read 4000+4000",
            "2000=03 4000=00 0000=0E A001=00 A000=03 A001=01 A000=00 A001=00", "read 4000+4000",
            rest});
}

void addSaveRows()
{
    const QString mmm01Rest = "0000=00 6000=00 4000=00 2000=01";
    addRow("none, save read", "gb_mbc0.nut", GB_READ_RAM, 8 * kKiB,
           {"2000=00 6000=00 4000=00 0000=00 0000=40 6000=01 4000=00 0000=0A", "read A000+2000",
            mmm01Rest});
    addRow("none, save write", "gb_mbc0.nut", GB_WRITE_RAM, 8 * kKiB,
           {"2000=00 6000=00 4000=00 0000=00 0000=40 6000=01 4000=00 0000=0A", "ram A000+2000",
            mmm01Rest});
    addRow("MBC1, save read", "gb_mbc1.nut", GB_READ_RAM, 8 * kKiB,
           {"6000=01 4000=00 0000=0A", "read A000+2000", "0000=F0 6000=00 4000=00 2000=01"});
    addRow("MBC2, save read", "gb_mbc2.nut", GB_READ_RAM, 512,
           {"0000=0A", "read A000+400", "0000=00 2100=01"});
    addRow("MBC2, save write", "gb_mbc2.nut", GB_WRITE_RAM, 512,
           {"0000=0A", "ram A000+200", "0000=00 2100=01"});
    // The RAM bank comes before the gate: a clock register must not be open to a write.
    addRow("MBC3, save write", "gb_mbc3.nut", GB_WRITE_RAM, 8 * kKiB,
           {"4000=00 0000=0A", "ram A000+2000", "0000=F0 4000=00 2000=01"});
    addRow("MBC5, save read", "gb_mbc5.nut", GB_READ_RAM, 32 * kKiB,
           {"4000=00 0000=0A", "read A000+2000", "4000=01 0000=0A", "read A000+2000",
            "4000=02 0000=0A", "read A000+2000", "4000=03 0000=0A", "read A000+2000",
            "0000=F0 4000=00 3000=00 2000=01"});
    addRow("HuC1, save write", "gb_tama5.nut", GB_WRITE_RAM, 8 * kKiB,
           {"0000=0A 4000=00", "ram A000+2000",
            "2000=01 4000=00 0000=0E A001=00 A000=01 A001=01 A000=00 A001=00"});
}

void addFlashRows()
{
    const QString erase8 = "0000=F0 0555=AA 02AA=55 0555=80 0555=AA 02AA=55 0555=10";
    const QString erase16 = "0000=F0 0AAA=AA 0555=55 0AAA=80 0AAA=AA 0555=55 0AAA=10";
    const QString poll = "read 0000+400";
    addRow("none, flash", "gb_mbc0.nut", GB_WRITE_FLASH, 32 * kKiB,
           {erase8, poll, "program8 0000+8000", "0000=F0"});
    addRow("MBC1, flash", "gb_mbc1.nut", GB_WRITE_FLASH, 32 * kKiB,
           {erase8, poll, "6000=00 4000=00 2000=00", "program8 0000+4000",
            "6000=00 4000=00 2000=01", "program8 4000+4000", "0000=F0 6000=00 4000=00 2000=01"});
    addRow("MBC3, flash", "gb_mbc3.nut", GB_WRITE_FLASH, 32 * kKiB,
           {erase8, poll, "program8 0000+4000", "2000=01", "program8 4000+4000",
            "0000=F0 4000=00 2000=01"});
    addRow("MBC5, flash", "gb_mbc5.nut", GB_WRITE_FLASH, 32 * kKiB,
           {erase16, poll, "3000=00 2000=00", "program16 4000+4000", "3000=00 2000=01",
            "program16 4000+4000", "0000=F0 4000=00 3000=00 2000=01"},
           1);
    // 488 bytes in the last bank: a piece of 480 and one of 8. With 481 the second would have 1.
    addRow("MBC5, flash, shortest last block", "gb_mbc5.nut", GB_WRITE_FLASH, 16 * kKiB + 488,
           {erase8, poll, "3000=00 2000=00", "program8 4000+4000", "3000=00 2000=01",
            "program8 4000+1E8", "0000=F0 4000=00 3000=00 2000=01"});
    addRow("MBC5, flash, last block too short", "gb_mbc5.nut", GB_WRITE_FLASH, 16 * kKiB + 481,
           {erase8, poll, "3000=00 2000=00", "program8 4000+4000", "3000=00 2000=01",
            "program8 4000+1D9", "program8 41D9+8", "0000=F0 4000=00 3000=00 2000=01"});
}

} // namespace

class MapperRecipeTest : public QObject
{
    Q_OBJECT

private slots:
    void scriptSends_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<int>("operate");
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("flashWidth");
        QTest::addColumn<QStringList>("expected");
        addDumpRows();
        addSaveRows();
        addFlashRows();
    }
    void scriptSends()
    {
        QFETCH(QByteArray, script);
        QFETCH(int, operate);
        QFETCH(int, size);
        QFETCH(int, flashWidth);
        QFETCH(QStringList, expected);
        QCOMPARE(sent(scriptJob(script, static_cast<JobCode>(operate), size, 0, flashWidth)),
                 expected);
    }

    // The start of each group of 32 banks, on both mappers that have them.
    void groupsOfBanks_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<int>("size");
        QTest::addColumn<QStringList>("groups");
        QTest::newRow("MBC1") << QByteArray("gb_mbc1.nut") << 2 * kMiB
                              << QStringList{"0000=F0 6000=00 4000=00 2000=01",
                                             "6000=01 4000=01 2000=01", "6000=01 4000=02 2000=01",
                                             "6000=01 4000=03 2000=01"};
        QTest::newRow("MMM01 up to 512 KiB")
            << QByteArray("gb_mbc0.nut") << 512 * kKiB
            << QStringList{"2000=00 6000=00 4000=00 0000=00 0000=40 2000=01"};
        QTest::newRow("MMM01, multiplexed")
            << QByteArray("gb_mbc0.nut") << 2 * kMiB
            << QStringList{"2000=00 6000=41 4000=00 0000=00 0000=40 2000=01", "4000=01 2000=01",
                           "4000=02 2000=01", "4000=03 2000=01"};
    }
    void groupsOfBanks()
    {
        QFETCH(QByteArray, script);
        QFETCH(int, size);
        QFETCH(QStringList, groups);
        const QStringList lines = sent(scriptJob(script, GB_READ_ROM, size));
        QStringList beforePairs;
        for (int i = 1; i < lines.size(); ++i) {
            if (lines[i] == "read 0000+8000")
                beforePairs << lines[i - 1];
        }
        QCOMPARE(beforePairs, groups);
    }

private:
    static QStringList sent(const CartridgeJob &job)
    {
        ReaderBench fixture(nullptr);
        const JobRun outcome = fixture.run(job, noise(bytesToMove(job), 1));
        return outcome.succeeded() ? linesOf(fixture.reader().operations()) : outcome.log;
    }
};

GBDRIVER_TEST(MapperRecipeTest, core)
#include "mapper_recipe_test.moc"
