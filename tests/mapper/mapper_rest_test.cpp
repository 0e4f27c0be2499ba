// The state that a job leaves the cartridge in: save memory closed, ROM bank 1, RAM bank 0, the
// mode of bank groups 0, also when something went wrong on the way.
#include "drive_faults.h"
#include "job_events.h"
#include "mapper_fixture.h"
#include "test_class.h"

#include <QtTest>

using namespace virtual_reader;

namespace
{

constexpr int kRomBank = 16 * 1024;

struct JobRow {
    const char *name;
    JobCode operate;
};

constexpr JobRow kJobs[] = {
    {"dump", GB_READ_ROM},
    {"save read", GB_READ_RAM},
    {"save write", GB_WRITE_RAM},
};

int sizeOf(const JobRow &job, const MapperFacts &mapper)
{
    return job.operate == GB_READ_ROM ? mapper.romSizes.last() : mapper.ramSizes.last();
}

// The smallest for which the script needs all of its registers.
int shortRom(const MapperFacts &mapper)
{
    const int smallest = mapper.hasBankGroups() ? 1024 * 1024 : 64 * 1024;
    return qBound(mapper.romSizes.first(), smallest, mapper.romSizes.last());
}

int shortSizeOf(const JobRow &job, const MapperFacts &mapper)
{
    return job.operate == GB_READ_ROM ? shortRom(mapper) : mapper.ramSizes.last();
}

Traffic trafficOfJob(const JobRow &job, const MapperFacts &mapper, int size)
{
    if (job.operate == GB_READ_ROM)
        return romDumpTraffic(mapper, size);
    return job.operate == GB_READ_RAM ? saveReadTraffic(size) : saveWriteTraffic(size);
}

// Number of the command file that takes the cartridge back to rest, counted from 0.
unsigned lastCommandFile(const JobRow &job, const MapperFacts &mapper, int size)
{
    return static_cast<unsigned>(trafficOfJob(job, mapper, size).commandRuns) - 1;
}

bool usesRegisters(const JobRow &job, const MapperFacts &mapper)
{
    return job.operate != GB_READ_ROM || mapper.kind != MapperKind::None;
}

// Kinds that exist with a large ROM alone have the script of a kind with a small one.
bool isShort(const JobRow &job, const MapperFacts &mapper)
{
    return usesRegisters(job, mapper) && mapper.romSizes.first() <= 64 * 1024;
}

template <class Fits> void addRows(Fits fits)
{
    QTest::addColumn<int>("mapper");
    QTest::addColumn<int>("job");
    for (int i = 0; i < mapperFacts().size(); ++i) {
        const MapperFacts &mapper = mapperFacts()[i];
        for (int job = 0; job < 3; ++job) {
            const bool exists = kJobs[job].operate == GB_READ_ROM || !mapper.ramSizes.isEmpty();
            if (exists && fits(kJobs[job], mapper))
                QTest::newRow(qPrintable(QString("%1 %2").arg(mapper.name, kJobs[job].name)))
                    << i << job;
        }
    }
}

void addJobRows()
{
    addRows([](const JobRow &, const MapperFacts &) { return true; });
}

void addReadRows()
{
    addRows([](const JobRow &job, const MapperFacts &) { return job.operate != GB_WRITE_RAM; });
}

} // namespace

class MapperRestTest : public QObject
{
    Q_OBJECT

private slots:
    void everyJobEndsAtRest_data() { addJobRows(); }
    void everyJobEndsAtRest()
    {
        QFETCH(int, mapper);
        QFETCH(int, job);
        const MapperFacts &facts = mapperFacts()[mapper];
        auto fixture = makeFixture(facts, facts.romSizes.last());
        fixture->disturbRegisters();
        const JobRun outcome = run(fixture.get(), kJobs[job], sizeOf(kJobs[job], facts));
        QVERIFY2(outcome.succeeded(), qPrintable(outcome.text()));
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
        auto fixture = makeFixture(facts, facts.romSizes.last());
        fixture->disturbRegisters();
        QVERIFY(run(fixture.get(), kJobs[0], facts.romSizes.first()).succeeded());
        QCOMPARE(fixture->unrest(), QString());
    }

    // Every command file of the script but the last one, which itself is the way back to rest.
    void everyCommandFileThatFailsOnce_data() { addRows(isShort); }
    void everyCommandFileThatFailsOnce()
    {
        QFETCH(int, mapper);
        QFETCH(int, job);
        const MapperFacts &facts = mapperFacts()[mapper];
        const JobRow &row = kJobs[job];
        const int size = shortSizeOf(row, facts);
        const unsigned last = lastCommandFile(row, facts, size);
        QVERIFY(last > static_cast<unsigned>(kJobTraffic.commandRuns));
        auto fixture = makeFixture(facts, shortRom(facts));
        for (unsigned position = kJobTraffic.commandRuns; position < last; ++position) {
            fixture->cartridge().powerCycle();
            fixture->disturbRegisters();
            fixture->drive().clearFaults();
            fixture->drive().addFault(commandFault(position));
            const JobRun outcome = run(fixture.get(), row, size);
            checkFailure(outcome, row);
            checkRest(fixture.get(), facts, position);
            if (QTest::currentTestFailed())
                return;
        }
    }

    // The bank before it would else be read once more, in the place of another.
    void aBankSwitchThatFailsEndsTheDump_data()
    {
        QTest::addColumn<int>("call");
        QTest::newRow("not created") << static_cast<int>(DriveCall::OpenForWrite);
        QTest::newRow("not written") << static_cast<int>(DriveCall::Write);
    }
    void aBankSwitchThatFailsEndsTheDump()
    {
        QFETCH(int, call);
        constexpr int kBanks = 8;
        constexpr int kLost = 6; // banks 0 and 1 come with the first command file
        auto fixture = makeFixture(factsOf(MapperKind::Mbc5), kBanks * kRomBank);
        fixture->drive().addFault(
            commandFault(kJobTraffic.commandRuns + kLost - 1, 1, static_cast<DriveCall>(call)));
        const JobRun outcome = run(fixture.get(), kJobs[0], kBanks * kRomBank);
        QCOMPARE(outcome.result.end, JobEnd::ScriptFailed);
        QCOMPARE(outcome.result.scriptError,
                 QString("cpu_write: the reader did not take the command"));
        QCOMPARE(outcome.result.movedBytes, kLost * kRomBank);
        QCOMPARE(fixture->unrest(), QString());
    }

    void aWayBackThatFailsIsNoSuccess_data() { addRows(usesRegisters); }
    void aWayBackThatFailsIsNoSuccess()
    {
        QFETCH(int, mapper);
        QFETCH(int, job);
        const MapperFacts &facts = mapperFacts()[mapper];
        const int size = shortSizeOf(kJobs[job], facts);
        auto fixture = makeFixture(facts, shortRom(facts));
        fixture->drive().addFault(commandFault(lastCommandFile(kJobs[job], facts, size)));
        checkFailure(run(fixture.get(), kJobs[job], size), kJobs[job]);
    }

    // No job must end well with a byte missing.
    void aFirstReadThatFails_data() { addReadRows(); }
    void aFirstReadThatFails()
    {
        QFETCH(int, mapper);
        QFETCH(int, job);
        checkFailedRead(mapperFacts()[mapper], kJobs[job], 0);
    }

    void aLastReadThatFails_data() { addReadRows(); }
    void aLastReadThatFails()
    {
        QFETCH(int, mapper);
        QFETCH(int, job);
        const MapperFacts &facts = mapperFacts()[mapper];
        const int reads =
            trafficOfJob(kJobs[job], facts, sizeOf(kJobs[job], facts)).reads - kJobTraffic.reads;
        checkFailedRead(facts, kJobs[job], static_cast<unsigned>(reads) - 1);
    }

    void aDriveThatVanishesFailsTheJob_data() { addRows(usesRegisters); }
    void aDriveThatVanishesFailsTheJob()
    {
        QFETCH(int, mapper);
        QFETCH(int, job);
        const MapperFacts &facts = mapperFacts()[mapper];
        auto fixture = makeFixture(facts, facts.romSizes.last());
        DriveFault fault = commandFault(kJobTraffic.commandRuns + 1);
        fault.driveVanishes = true;
        fixture->drive().addFault(fault);
        checkFailure(run(fixture.get(), kJobs[job], sizeOf(kJobs[job], facts)), kJobs[job]);
        QVERIFY(fixture->drive().gone());
    }

private:
    static std::unique_ptr<MapperFixture> makeFixture(const MapperFacts &facts, int romSize)
    {
        const int ramSize = facts.ramSizes.isEmpty() ? 0 : facts.ramSizes.last();
        auto fixture = std::make_unique<MapperFixture>(facts, romSize, ramSize);
        if (ramSize > 0)
            fixture->setSave(noise(ramSize, 6));
        return fixture;
    }

    static JobRun run(MapperFixture *fixture, const JobRow &job, int size)
    {
        return fixture->run(job.operate, size,
                            job.operate == GB_WRITE_RAM ? noise(size, 7) : QByteArray());
    }

    static void checkFailure(const JobRun &outcome, const JobRow &job)
    {
        QVERIFY2(!outcome.succeeded(), qPrintable(QString(job.name) + ": " + outcome.text()));
        QVERIFY2(!scriptErrors(outcome.log).isEmpty(), qPrintable(outcome.text()));
    }

    // An MMM01 that was not mapped still shows its menu; its save memory must be closed all the
    // same.
    static void checkRest(MapperFixture *fixture, const MapperFacts &facts, unsigned position)
    {
        const bool unmapped = facts.kind == MapperKind::Mmm01 &&
                              position == static_cast<unsigned>(kJobTraffic.commandRuns);
        const QString unrest = fixture->unrest();
        const QString expected = unmapped ? "bank 0 is not at 0x0000" : "";
        QVERIFY2(unrest == expected,
                 qPrintable(QString("command file %1: %2").arg(position).arg(unrest)));
    }

    static void checkFailedRead(const MapperFacts &facts, const JobRow &job, unsigned position)
    {
        auto fixture = makeFixture(facts, facts.romSizes.last());
        fixture->disturbRegisters();
        fixture->drive().addFault(dumpReadFault(position));
        const JobRun outcome = run(fixture.get(), job, sizeOf(job, facts));
        checkFailure(outcome, job);
        QCOMPARE(outcome.result.scriptError, QString("cpu_read: the reader did not answer"));
        QCOMPARE(fixture->unrest(), QString());
    }
};

GBDRIVER_TEST(MapperRestTest, core)
#include "mapper_rest_test.moc"
