// GBA cartridges: ROMs of every size, and saves in every kind of chip.
#include "drive_faults.h"
#include "mapper_fixture.h"

#include "cart/setting_tables.h"
#include "test_class.h"

#include <QtTest>

using namespace virtual_reader;

namespace
{

constexpr int kKiB = 1024;
constexpr int kMiB = 1024 * kKiB;
// Of every job: the selection of the bus, and the identity.
constexpr int kJobRuns = 2;
constexpr int kJobReads = 1;
constexpr unsigned kPolls = 2; // that see a FLASH being erased; the next one sees it done

struct SaveRow {
    const char *name;
    int type; // as the settings have it
    GbaSaveType chip;
    int size; // bytes
    int readPieces;
    int writeRuns; // command files
};

// SRAM and FLASH are read in pieces of 4 KiB and written by one command file. EEPROM is read whole,
// and written 256 bytes at a time.
const SaveRow kSaves[] = {
    {"SRAM 32 KiB", kSaveSram, GbaSaveType::Sram, 32 * kKiB, 8, 1},
    {"SRAM 64 KiB", kSaveSram, GbaSaveType::Sram, 64 * kKiB, 16, 1},
    {"FLASH 64 KiB", kSaveFlash, GbaSaveType::Flash, 64 * kKiB, 16, 1},
    {"FLASH 128 KiB", kSaveFlash, GbaSaveType::Flash, 128 * kKiB, 32, 1},
    {"EEPROM 512 bytes", kSaveEeprom, GbaSaveType::Eeprom, 512, 1, 2},
    {"EEPROM 8 KiB", kSaveEeprom, GbaSaveType::Eeprom, 8 * kKiB, 1, 32},
};

std::unique_ptr<Cartridge> makeGba(int romSize, const CartridgeOptions &options = {})
{
    GbaImageSpec spec;
    spec.romSize = static_cast<std::uint32_t>(romSize);
    return cartridgeOf(gbaImage(spec), options);
}

std::unique_ptr<Cartridge> makeGbaWith(const SaveRow &row)
{
    CartridgeOptions options;
    options.saveType = row.chip;
    options.saveSize = static_cast<std::uint32_t>(row.size);
    options.flashChip.erasePolls = kPolls;
    return makeGba(kMiB, options);
}

CartridgeJob gbaJob(JobCode operate, int size, int saveType = kSaveSram)
{
    return scriptJob("gba.nut", operate, size, saveType);
}

void addSaveRows()
{
    QTest::addColumn<int>("row");
    for (int i = 0; i < static_cast<int>(std::size(kSaves)); ++i)
        QTest::newRow(kSaves[i].name) << i;
}

// Addresses of the commands that set where a ROM read begins.
QVector<std::uint32_t> readAddresses(ReaderBench *fixture)
{
    constexpr std::uint8_t kSetReadAddress = 6;
    QVector<std::uint32_t> addresses;
    for (const Operation &operation : fixture->reader().operations()) {
        for (const BlockRecord &block : operation.blocks) {
            if (block.commandClass == kClassGba && block.opcode == kSetReadAddress)
                addresses << block.address;
        }
    }
    return addresses;
}

} // namespace

class MapperGbaTest : public QObject
{
    Q_OBJECT

private slots:
    void dumpEqualsTheImage_data()
    {
        QTest::addColumn<int>("size");
        for (int size = kMiB; size <= 32 * kMiB; size *= 2)
            QTest::newRow(qPrintable(QString("%1 MiB").arg(size / kMiB))) << size;
    }
    void dumpEqualsTheImage()
    {
        QFETCH(int, size);
        ReaderBench fixture(makeGba(size));
        const JobRun outcome = fixture.run(gbaJob(GBA_READ_ROM, size));
        QVERIFY2(outcome.succeeded(), qPrintable(outcome.text()));
        QVERIFY2(outcome.result.bytes == fixture.rom(), "the dump differs from the image");
        QCOMPARE(outcome.log, QStringList({"Start dump rom...", "Dump rom finish."}));

        const OperationCounters &counters = fixture.reader().counters();
        const int pieces = size / kMiB;
        QCOMPARE(static_cast<int>(counters.commandRuns), kJobRuns + pieces);
        QCOMPARE(static_cast<int>(counters.reads), kJobReads + pieces);
        QCOMPARE(fixture.refused(), std::uint64_t{0});
    }

    void readsCountHalfwords()
    {
        ReaderBench fixture(makeGba(4 * kMiB));
        QVERIFY(fixture.run(gbaJob(GBA_READ_ROM, 4 * kMiB)).succeeded());
        QCOMPARE(readAddresses(&fixture),
                 QVector<std::uint32_t>({0x000000, 0x080000, 0x100000, 0x180000}));
    }

    void romSizesThatDoNotExist_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<QString>("reason");
        for (const int size : {0, 512, kMiB - 1, 3 * kMiB, 24 * kMiB, 32 * kMiB - 512})
            QTest::newRow(qPrintable(QString::number(size))) << size << "1024 KiB or a doubling";
        QTest::newRow("64 MiB") << 64 * kMiB << "the cartridge bus reaches 32 MiB";
    }
    void romSizesThatDoNotExist()
    {
        QFETCH(QString, reason);
        refuses(GBA_READ_ROM, kSaveSram, reason);
    }

    void saveSurvivesAChangeOfReaders_data() { addSaveRows(); }
    void saveSurvivesAChangeOfReaders()
    {
        const SaveRow &row = fetchSave();
        const QByteArray original = noise(row.size, 1);
        const QByteArray changed = noise(row.size, 2);
        const UserFolder folder;
        const QString kept = folder.addFile("kept.sav", original);
        {
            ReaderBench first(makeGbaWith(row), keptIn(kept));
            JobRun outcome = first.run(saveJob(row, GBA_READ_RAM));
            QVERIFY2(outcome.succeeded(), qPrintable(outcome.text()));
            QVERIFY(outcome.result.bytes == original);
            outcome = first.run(saveJob(row, GBA_WRITE_RAM), changed);
            QVERIFY2(outcome.succeeded(), qPrintable(outcome.text()));
        }
        QVERIFY(contentOf(kept) == changed);

        ReaderBench second(makeGbaWith(row), keptIn(kept));
        const JobRun again = second.run(saveJob(row, GBA_READ_RAM));
        QVERIFY(again.succeeded());
        QVERIFY(again.result.bytes == changed);
    }

    void savesTakeTheFewestOperations_data() { addSaveRows(); }
    void savesTakeTheFewestOperations()
    {
        const SaveRow &row = fetchSave();
        ReaderBench fixture(makeGbaWith(row));
        QVERIFY(fixture.run(saveJob(row, GBA_READ_RAM)).succeeded());
        QCOMPARE(static_cast<int>(fixture.reader().counters().commandRuns),
                 kJobRuns + row.readPieces);
        QCOMPARE(static_cast<int>(fixture.reader().counters().reads), kJobReads + row.readPieces);
        QCOMPARE(fixture.refused(), std::uint64_t{0});

        // The program erases FLASH: the command, and a command with a read for each look.
        QVERIFY(fixture.run(saveJob(row, GBA_WRITE_RAM), noise(row.size, 2)).succeeded());
        const int looks = row.type == kSaveFlash ? static_cast<int>(kPolls) + 1 : 0;
        const int eraseRuns = looks > 0 ? 1 + looks : 0;
        QCOMPARE(static_cast<int>(fixture.reader().counters().commandRuns),
                 kJobRuns + eraseRuns + row.writeRuns);
        QCOMPARE(static_cast<int>(fixture.reader().counters().reads), kJobReads + looks);
        QCOMPARE(fixture.refused(), std::uint64_t{0});
    }

    void saveSizesThatDoNotExist_data()
    {
        QTest::addColumn<int>("size");
        for (const int size : {0, 1, 256, 513, 16 * kKiB, 96 * kKiB, 256 * kKiB})
            QTest::newRow(qPrintable(QString::number(size))) << size;
    }
    void saveSizesThatDoNotExist()
    {
        refuses(GBA_READ_RAM, kSaveSram, "or 131072 bytes");
        refuses(GBA_WRITE_RAM, kSaveSram, "or 131072 bytes");
    }

    void readThatFailsFailsTheDump_data()
    {
        QTest::addColumn<int>("position");
        QTest::newRow("first") << 0;
        QTest::newRow("second") << 1;
        QTest::newRow("last") << 3;
    }
    void readThatFailsFailsTheDump()
    {
        QFETCH(int, position);
        ReaderBench fixture(makeGba(4 * kMiB));
        fixture.drive().addFault(dumpReadFault(static_cast<unsigned>(position)));
        const JobRun outcome = fixture.run(gbaJob(GBA_READ_ROM, 4 * kMiB));
        QVERIFY2(!outcome.succeeded(), qPrintable(outcome.text()));
    }

    void flashIsRefusedByTheProgram()
    {
        ReaderBench fixture(makeGba(kMiB));
        const JobRun outcome = fixture.run(gbaJob(GBA_WRITE_FLASH, 1000), noise(1000, 1));
        QVERIFY(!outcome.succeeded());
        QCOMPARE(outcome.log.last(), QString("Unknow operate!"));
        QVERIFY(fixture.nothingWasSent());
    }

private:
    static const SaveRow &fetchSave()
    {
        QFETCH(int, row);
        return kSaves[row];
    }

    static CartridgeJob saveJob(const SaveRow &row, JobCode operate)
    {
        return gbaJob(operate, row.size, row.type);
    }

    void refuses(JobCode operate, int saveType, const QString &reason)
    {
        QFETCH(int, size);
        ReaderBench fixture(makeGba(kMiB));
        const QByteArray input = operate == GBA_WRITE_RAM ? noise(size, 5) : QByteArray();
        const JobRun outcome = fixture.run(gbaJob(operate, size, saveType), input);
        QVERIFY(!outcome.succeeded());
        for (const QString &part :
             {QString("of %1 bytes").arg(size), reason, QString(kNothingSent)})
            QVERIFY2(outcome.result.scriptError.contains(part), qPrintable(outcome.text()));
        QVERIFY(fixture.nothingWasSent());
    }
};

GBDRIVER_TEST(MapperGbaTest, core)
#include "mapper_gba_test.moc"
