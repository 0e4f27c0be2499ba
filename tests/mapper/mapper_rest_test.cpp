// The state that a job leaves the cartridge in: RAM gate closed, ROM bank 1, RAM bank 0, MBC1 in
// mode 0, also when something went wrong on the way.
#include "mapper_fixture.h"

#include <QtTest>

namespace
{

// Command files of a job before those of its script.
constexpr unsigned kBusSelection = 2;

struct JobRow {
    const char *name;
    JobCode operate;
    bool movesSave;
    Traffic (*traffic)(const MapperFacts &mapper, int size);
};

const JobRow kJobs[] = {
    {"dump", GB_READ_ROM, false, romDumpTraffic},
    {"save read", GB_READ_RAM, true, saveReadTraffic},
    {"save write", GB_WRITE_RAM, true, saveWriteTraffic},
};

// ROM size of jobs whose every command file is made to fail: the smallest for which the MBC1 needs
// all of its registers.
constexpr int kShortRom = 1024 * 1024;

int sizeOf(const JobRow &job, const MapperFacts &mapper)
{
    return job.movesSave ? mapper.ramSizes.last() : mapper.romSizes.last();
}

int shortSizeOf(const JobRow &job, int mapper)
{
    return job.movesSave ? mapperFacts()[mapper].ramSizes.last() : kShortRom;
}

// Number of the command file that takes the cartridge back to rest, counted from 0.
unsigned lastCommandFile(const JobRow &job, int mapper, int size)
{
    return static_cast<unsigned>(job.traffic(mapperFacts()[mapper], size).commandRuns) - 1;
}

// A save write sends registers and payload by turns.
bool isPayload(const JobRow &job, unsigned commandFile)
{
    return job.operate == GB_WRITE_RAM && (commandFile - kBusSelection) % 2 == 1;
}

void addRows(int firstMapper, int jobCount)
{
    QTest::addColumn<int>("mapper");
    QTest::addColumn<int>("job");
    for (int mapper = firstMapper; mapper < mapperFacts().size(); ++mapper) {
        for (int job = 0; job < jobCount; ++job)
            QTest::newRow(
                qPrintable(QString("%1 %2").arg(mapperFacts()[mapper].name, kJobs[job].name)))
                << mapper << job;
    }
}

void addJobRows()
{
    addRows(0, 3);
}

// Without a mapper there is no register and no command file of the script.
void addMappedJobRows()
{
    addRows(1, 3);
}

void addMappedReadRows()
{
    addRows(1, 2);
}

DriveFault commandFileFault(unsigned after)
{
    DriveFault fault;
    fault.call = DriveCall::OpenForWrite;
    fault.pathEnd = "CMD.CMD";
    fault.after = after;
    return fault;
}

DriveFault dumpReadFault(unsigned after)
{
    DriveFault fault;
    fault.call = DriveCall::Read;
    fault.pathEnd = "DUMP.ROM";
    fault.after = after;
    return fault;
}

} // namespace

class MapperRestTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void everyJobEndsAtRest_data() { addJobRows(); }
    void everyJobEndsAtRest()
    {
        QFETCH(int, mapper);
        QFETCH(int, job);
        auto fixture = makeFixture(mapper, mapperFacts()[mapper].romSizes.last());
        fixture->disturbRegisters();
        QVERIFY(
            run(fixture.get(), kJobs[job], sizeOf(kJobs[job], mapperFacts()[mapper])).succeeded());
        QCOMPARE(fixture->unrest(), QString());
    }

    // The smallest dump needs one bank only and may take a way of its own.
    void theSmallestDumpEndsAtRest_data()
    {
        QTest::addColumn<int>("mapper");
        for (int mapper = 0; mapper < mapperFacts().size(); ++mapper)
            QTest::newRow(mapperFacts()[mapper].name) << mapper;
    }
    void theSmallestDumpEndsAtRest()
    {
        QFETCH(int, mapper);
        const MapperFacts &facts = mapperFacts()[mapper];
        auto fixture = makeFixture(mapper, facts.romSizes.last());
        fixture->disturbRegisters();
        QVERIFY(run(fixture.get(), kJobs[0], facts.romSizes.first()).succeeded());
        QCOMPARE(fixture->unrest(), QString());
    }

    // Every command file of the script but the last one, which itself is the way back to rest.
    void everyCommandFileThatFailsOnce_data() { addMappedJobRows(); }
    void everyCommandFileThatFailsOnce()
    {
        QFETCH(int, mapper);
        QFETCH(int, job);
        const JobRow &row = kJobs[job];
        const int size = shortSizeOf(row, mapper);
        const unsigned last = lastCommandFile(row, mapper, size);
        QVERIFY(last > kBusSelection);
        auto fixture = makeFixture(mapper, kShortRom);
        for (unsigned position = kBusSelection; position < last; ++position) {
            fixture->disturbRegisters();
            fixture->drive().clearFaults();
            fixture->drive().addFault(commandFileFault(position));
            const JobOutcome outcome = run(fixture.get(), row, size);
            // Natives do not report payload that is lost; the job goes on.
            if (!isPayload(row, position))
                checkFailure(outcome, row);
            const QString unrest = fixture->unrest();
            QVERIFY2(unrest.isEmpty(),
                     qPrintable(QString("command file %1: %2").arg(position).arg(unrest)));
            if (QTest::currentTestFailed())
                return;
        }
    }

    void aWayBackThatFailsIsNoSuccess_data() { addMappedJobRows(); }
    void aWayBackThatFailsIsNoSuccess()
    {
        QFETCH(int, mapper);
        QFETCH(int, job);
        const JobRow &row = kJobs[job];
        const int size = shortSizeOf(row, mapper);
        auto fixture = makeFixture(mapper, kShortRom);
        fixture->drive().addFault(commandFileFault(lastCommandFile(row, mapper, size)));
        checkFailure(run(fixture.get(), row, size), row);
    }

    // A first read that fails moves the cursor below zero, and the next read throws.
    void aReadThatFails_data() { addMappedReadRows(); }
    void aReadThatFails()
    {
        QFETCH(int, mapper);
        QFETCH(int, job);
        auto fixture = makeFixture(mapper, mapperFacts()[mapper].romSizes.last());
        fixture->disturbRegisters();
        fixture->drive().addFault(dumpReadFault(0));
        const JobOutcome outcome =
            run(fixture.get(), kJobs[job], sizeOf(kJobs[job], mapperFacts()[mapper]));
        checkFailure(outcome, kJobs[job]);
        QVERIFY2(outcome.text().contains("cpu_read: cursor -1"), qPrintable(outcome.text()));
        QCOMPARE(fixture->unrest(), QString());
    }

    void aDriveThatVanishesFailsTheJob_data() { addMappedJobRows(); }
    void aDriveThatVanishesFailsTheJob()
    {
        QFETCH(int, mapper);
        QFETCH(int, job);
        auto fixture = makeFixture(mapper, mapperFacts()[mapper].romSizes.last());
        DriveFault fault = commandFileFault(kBusSelection + 2);
        fault.driveVanishes = true;
        fixture->drive().addFault(fault);
        checkFailure(run(fixture.get(), kJobs[job], sizeOf(kJobs[job], mapperFacts()[mapper])),
                     kJobs[job]);
        QVERIFY(fixture->drive().gone());
    }

private:
    QString path() const { return m_folder->filePath("file.bin"); }

    static std::unique_ptr<MapperFixture> makeFixture(int mapper, int romSize)
    {
        const MapperFacts &facts = mapperFacts()[mapper];
        const int ramSize = facts.ramSizes.last();
        auto fixture = std::make_unique<MapperFixture>(facts, romSize, ramSize);
        fixture->setSave(noise(ramSize, 6));
        return fixture;
    }

    // The user's file holds a save to write, or what an earlier job left.
    JobOutcome run(MapperFixture *fixture, const JobRow &job, int size)
    {
        m_before = noise(job.operate == GB_WRITE_RAM ? size : 100, 7);
        return writeFile(path(), m_before) ? fixture->run(job.operate, size, path()) : JobOutcome();
    }

    void checkFailure(const JobOutcome &outcome, const JobRow &job)
    {
        QVERIFY2(outcome.failed(), qPrintable(QString(job.name) + ": " + outcome.text()));
        QVERIFY(fileBytes(path()) == m_before);
        QVERIFY2(outcome.text().contains(kScriptError), qPrintable(outcome.text()));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QByteArray m_before;
};

QTEST_GUILESS_MAIN(MapperRestTest)
#include "mapper_rest_test.moc"
