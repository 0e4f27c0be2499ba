// What may be said of the cartridge behind a job.
#include "trust/outcome.h"

#include "test_class.h"

#include <QtTest>

Q_DECLARE_METATYPE(CartridgeState)
Q_DECLARE_METATYPE(JobEnd)

namespace
{

constexpr JobCode kReads[] = {GB_READ_ROM, GB_READ_RAM, GBA_READ_ROM, GBA_READ_RAM};
constexpr JobCode kWrites[] = {GB_WRITE_FLASH, GB_WRITE_RAM, GBA_WRITE_FLASH, GBA_WRITE_RAM};

CartridgeState stateOf(int operate, const JobResult &result)
{
    CartridgeJob job;
    job.operate = operate;
    return stateAfter(job, result);
}

} // namespace

class OutcomeTest : public QObject
{
    Q_OBJECT

private slots:
    void stateFollowsTheEnd_data()
    {
        QTest::addColumn<JobEnd>("end");
        QTest::addColumn<CartridgeState>("read");
        QTest::addColumn<CartridgeState>("write");
        using State = CartridgeState;
        const auto add = [](const char *name, JobEnd end, State read, State write) {
            QTest::newRow(name) << end << read << write;
        };
        add("done", JobEnd::Done, State::OnlyRead, State::Written);
        add("no reader", JobEnd::NoReader, State::Untouched, State::Untouched);
        add("no mode", JobEnd::NoMode, State::Untouched, State::Untouched);
        add("no memory", JobEnd::NoMemory, State::Untouched, State::Untouched);
        add("no script", JobEnd::NoScript, State::Untouched, State::Untouched);
        add("file not opened", JobEnd::InputNotOpened, State::Untouched, State::Untouched);
        add("file not read", JobEnd::InputNotRead, State::Untouched, State::Untouched);
        add("refused", JobEnd::Refused, State::Untouched, State::Untouched);
        add("script failed", JobEnd::ScriptFailed, State::OnlyRead, State::PartlyWritten);
        add("file not written", JobEnd::OutputNotWritten, State::OnlyRead, State::PartlyWritten);
    }
    void stateFollowsTheEnd()
    {
        QFETCH(JobEnd, end);
        JobResult result;
        result.end = end;
        result.hasTouchedCartridge = true;
        for (const JobCode operate : kReads)
            QTEST(stateOf(operate, result), "read");
        for (const JobCode operate : kWrites)
            QTEST(stateOf(operate, result), "write");
    }

    // A script that does not compile, say.
    void scriptThatNeverUsedTheBusLeftTheCartridgeAlone()
    {
        JobResult result;
        result.end = JobEnd::ScriptFailed;
        for (const JobCode operate : kWrites)
            QCOMPARE(stateOf(operate, result), CartridgeState::Untouched);
    }

    void eraseThatWasCutShortMayHaveTakenAll()
    {
        JobResult result;
        result.end = JobEnd::Cancelled;
        for (const JobCode operate : kWrites)
            QCOMPARE(stateOf(operate, result), CartridgeState::PartlyErased);
    }

    // A script does not see that a write failed.
    void writeThatEndedWellMayBeAPart()
    {
        JobResult missing;
        missing.hasTouchedCartridge = true;
        missing.movedBytes = 511;
        missing.wantedBytes = 512;
        JobResult complaining;
        complaining.hasTouchedCartridge = true;
        complaining.driveError = "no space";
        for (const JobCode operate : kWrites) {
            QCOMPARE(stateOf(operate, missing), CartridgeState::PartlyWritten);
            QCOMPARE(stateOf(operate, complaining), CartridgeState::PartlyWritten);
        }
        for (const JobCode operate : kReads)
            QCOMPARE(stateOf(operate, missing), CartridgeState::OnlyRead);
    }

    void outcomeIsDoneWithoutTrouble()
    {
        Outcome outcome;
        QVERIFY(outcome.isDone());
        for (int trouble = int(Trouble::JobFailed); trouble <= int(Trouble::Mismatch); ++trouble) {
            outcome.trouble = static_cast<Trouble>(trouble);
            QVERIFY(!outcome.isDone());
        }
    }
};

GBDRIVER_TEST(OutcomeTest, none)
#include "outcome_test.moc"
