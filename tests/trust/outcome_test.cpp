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
        add("reader in use", JobEnd::ReaderInUse, State::Untouched, State::Untouched);
        add("a stick", JobEnd::NotTheReader, State::Untouched, State::Untouched);
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

    // A bank switch is a write; what it does is known of the right script alone.
    void readThatWroteToTheBusIsNoMereRead()
    {
        JobResult result;
        result.hasTouchedCartridge = true;
        result.hasWrittenToBus = true;
        for (const JobEnd end : {JobEnd::Done, JobEnd::ScriptFailed, JobEnd::OutputNotWritten}) {
            result.end = end;
            for (const JobCode operate : kReads)
                QCOMPARE(stateOf(operate, result), CartridgeState::Switched);
        }
    }

    void twoStepsLeaveTheWorseState_data()
    {
        using State = CartridgeState;
        QTest::addColumn<State>("first");
        QTest::addColumn<State>("second");
        QTest::addColumn<State>("both");
        const auto add = [](const char *name, State first, State second, State both) {
            QTest::newRow(name) << first << second << both;
        };
        add("reads", State::OnlyRead, State::OnlyRead, State::OnlyRead);
        add("nothing", State::Untouched, State::Untouched, State::Untouched);
        add("first alone", State::OnlyRead, State::Untouched, State::OnlyRead);
        add("second alone", State::Untouched, State::OnlyRead, State::OnlyRead);
        add("first switched", State::Switched, State::Untouched, State::Switched);
        add("second switched", State::OnlyRead, State::Switched, State::Switched);
        add("not written", State::OnlyRead, State::NotWritten, State::NotWritten);
        add("switched, not written", State::Switched, State::NotWritten, State::NotBegun);
        add("not begun", State::Untouched, State::NotBegun, State::NotBegun);
    }
    void twoStepsLeaveTheWorseState()
    {
        QFETCH(CartridgeState, first);
        QFETCH(CartridgeState, second);
        QTEST(afterBoth(first, second), "both");
    }

    void writeThatIsNotBegunSaysWhatCameBefore()
    {
        for (const CartridgeState before : {CartridgeState::Switched, CartridgeState::NotBegun})
            QCOMPARE(unwritten(before), CartridgeState::NotBegun);
        for (const CartridgeState before : {CartridgeState::Untouched, CartridgeState::LookedAt,
                                            CartridgeState::OnlyRead, CartridgeState::NotWritten})
            QCOMPARE(unwritten(before), CartridgeState::NotWritten);
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
