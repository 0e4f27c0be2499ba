// GBA cartridges: ROMs of every size, and saves in every kind of chip.
#include "job_fixture.h"

#include "cart/setting_tables.h"
#include "test_class.h"
#include "virtual/cartridge_factory.h"
#include "virtual/image_generator.h"

#include <QtTest>

using namespace virtual_reader;

namespace
{

constexpr int kKiB = 1024;
constexpr int kMiB = 1024 * kKiB;
constexpr char kScript[] = "gba.nut";
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
    ByteVector image;
    std::string error;
    if (!makeGbaImage(spec, &image, &error))
        qFatal("no image: %s", error.c_str());
    auto cartridge = makeCartridge(std::move(image), options, &error);
    if (cartridge == nullptr)
        qFatal("no cartridge: %s", error.c_str());
    return cartridge;
}

std::unique_ptr<Cartridge> makeGbaWith(const SaveRow &row)
{
    CartridgeOptions options;
    options.saveType = row.chip;
    options.saveSize = static_cast<std::uint32_t>(row.size);
    options.flashChip.erasePolls = kPolls;
    return makeGba(kMiB, options);
}

void addSaveRows()
{
    QTest::addColumn<int>("row");
    for (int i = 0; i < static_cast<int>(std::size(kSaves)); ++i)
        QTest::newRow(kSaves[i].name) << i;
}

// Addresses of the commands that set where a ROM read begins.
QVector<std::uint32_t> readAddresses(JobFixture *fixture)
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
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void dumpEqualsTheImage_data()
    {
        QTest::addColumn<int>("size");
        for (int size = kMiB; size <= 32 * kMiB; size *= 2)
            QTest::newRow(qPrintable(QString("%1 MiB").arg(size / kMiB))) << size;
    }
    void dumpEqualsTheImage()
    {
        QFETCH(int, size);
        JobFixture fixture(makeGba(size));
        const JobOutcome outcome = fixture.run({kScript, GBA_READ_ROM, size, path()});
        QVERIFY2(outcome.succeeded(), qPrintable(outcome.text()));
        QVERIFY2(fileBytes(path()) == fixture.rom(), "the dump differs from the image");
        QCOMPARE(outcome.log, QStringList({"Start dump rom...", "Dump rom finish."}));

        const OperationCounters &counters = fixture.reader().counters();
        const int pieces = size / kMiB;
        QCOMPARE(static_cast<int>(counters.commandRuns), kJobRuns + pieces);
        QCOMPARE(static_cast<int>(counters.reads), kJobReads + pieces);
        QCOMPARE(fixture.refused(), std::uint64_t{0});
    }

    void readsCountHalfwords()
    {
        JobFixture fixture(makeGba(4 * kMiB));
        QVERIFY(fixture.run({kScript, GBA_READ_ROM, 4 * kMiB, path()}).succeeded());
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
        QVERIFY(writeFile(path("kept.sav"), original));
        QVERIFY(writeFile(path("new.sav"), changed));
        {
            JobFixture first(makeGbaWith(row), path("kept.sav"));
            JobOutcome outcome = first.run(saveJob(row, GBA_READ_RAM, "read.sav"));
            QVERIFY2(outcome.succeeded(), qPrintable(outcome.text()));
            QVERIFY(fileBytes(path("read.sav")) == original);
            outcome = first.run(saveJob(row, GBA_WRITE_RAM, "new.sav"));
            QVERIFY2(outcome.succeeded(), qPrintable(outcome.text()));
        }
        QVERIFY(fileBytes(path("kept.sav")) == changed);

        JobFixture second(makeGbaWith(row), path("kept.sav"));
        QVERIFY(second.run(saveJob(row, GBA_READ_RAM, "again.sav")).succeeded());
        QVERIFY(fileBytes(path("again.sav")) == changed);
    }

    void savesTakeTheFewestOperations_data() { addSaveRows(); }
    void savesTakeTheFewestOperations()
    {
        const SaveRow &row = fetchSave();
        JobFixture fixture(makeGbaWith(row));
        QVERIFY(fixture.run(saveJob(row, GBA_READ_RAM, "read.sav")).succeeded());
        QCOMPARE(static_cast<int>(fixture.reader().counters().commandRuns),
                 kJobRuns + row.readPieces);
        QCOMPARE(static_cast<int>(fixture.reader().counters().reads), kJobReads + row.readPieces);
        QCOMPARE(fixture.refused(), std::uint64_t{0});

        // The program erases FLASH: the command, and a command with a read for each look.
        QVERIFY(fixture.run(saveJob(row, GBA_WRITE_RAM, "read.sav")).succeeded());
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
        JobFixture fixture(makeGba(4 * kMiB));
        fixture.drive().addFault(dumpReadFault(static_cast<unsigned>(position)));
        const JobOutcome outcome = fixture.run({kScript, GBA_READ_ROM, 4 * kMiB, path()});
        QVERIFY2(outcome.failed(), qPrintable(outcome.text()));
        QVERIFY(!QFile::exists(path()));
    }

    void flashIsRefusedByTheProgram()
    {
        JobFixture fixture(makeGba(kMiB));
        QVERIFY(writeFile(path(), noise(1000, 1)));
        const JobOutcome outcome = fixture.run({kScript, GBA_WRITE_FLASH, 1000, path()});
        QVERIFY(outcome.failed());
        QCOMPARE(outcome.log.last(), QString("Unknow operate!"));
        QVERIFY(fixture.nothingWasSent());
    }

private:
    QString path(const char *name = "file.bin") const { return m_folder->filePath(name); }

    static const SaveRow &fetchSave()
    {
        QFETCH(int, row);
        return kSaves[row];
    }

    Job saveJob(const SaveRow &row, JobCode operate, const char *name) const
    {
        return {kScript, operate, row.size, path(name), row.type};
    }

    void refuses(JobCode operate, int saveType, const QString &reason)
    {
        QFETCH(int, size);
        JobFixture fixture(makeGba(kMiB));
        const QByteArray before = noise(operate == GBA_WRITE_RAM ? size : 1000, 5);
        QVERIFY(writeFile(path(), before));
        const JobOutcome outcome = fixture.run({kScript, operate, size, path(), saveType});
        QVERIFY(outcome.failed());
        const QString error = outcome.log.filter(kScriptError).join("");
        for (const QString &part :
             {QString("of %1 bytes").arg(size), reason, QString(kNothingSent)})
            QVERIFY2(error.contains(part), qPrintable(outcome.text()));
        QVERIFY(fixture.nothingWasSent());
        QVERIFY(fileBytes(path()) == before);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

GBDRIVER_TEST(MapperGbaTest, core)
#include "mapper_gba_test.moc"
