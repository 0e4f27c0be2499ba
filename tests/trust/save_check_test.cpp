// What stands in the way of writing a save, and what the cartridge is to hold afterwards.
#include "trust/save_check.h"

#include "cart/setting_tables.h"
#include "test_class.h"
#include "trust_bench.h"

#include <QtTest>

using namespace virtual_reader;

namespace
{

constexpr int kSmall = 64 * 1024;

TrialCartridge gbaCartridge(GbaSaveType type, std::uint32_t saveSize)
{
    TrialCartridge cartridge;
    cartridge.isGba = true;
    cartridge.romSize = 1024 * 1024;
    cartridge.options.saveType = type;
    cartridge.options.saveSize = saveSize;
    return cartridge;
}

CartridgeJob writing(int saveType, int size)
{
    CartridgeJob job;
    job.operate = GBA_WRITE_RAM;
    job.scriptPath = SHIPPED_SCRIPTS "/gba.nut";
    job.ramSize = size;
    job.saveType = saveType;
    return job;
}

} // namespace

class SaveCheckTest : public QObject
{
    Q_OBJECT

private slots:
    void blankSaveHasEqualBytes()
    {
        QVERIFY(isBlankSave(QByteArray(512, '\xFF')));
        QVERIFY(isBlankSave(QByteArray(512, '\0')));
        QVERIFY(!isBlankSave(QByteArray(511, '\0') + '\1'));
        QVERIFY(!isBlankSave({}));
    }

    void largerChipIsFound()
    {
        TrialBench bench(gbaCartridge(GbaSaveType::Flash, 2 * kSmall));
        loadSave(bench, trialNoise(2 * kSmall));
        PhaseRecorder listener;
        const Outcome outcome = findLargerSave(writing(kSaveFlash, kSmall), listener);
        QCOMPARE(outcome.trouble, Trouble::SaveIsLarger);
        QCOMPARE(outcome.state, CartridgeState::Switched);
        QCOMPARE(listener.phases, (QStringList{"compare 131072", "end"}));
    }

    void oneByteInTheUpperHalfIsEnough()
    {
        TrialBench bench(gbaCartridge(GbaSaveType::Flash, 2 * kSmall));
        QByteArray save(2 * kSmall, '\xFF');
        save[2 * kSmall - 1] = 'x';
        loadSave(bench, save);
        PhaseRecorder listener;
        QCOMPARE(findLargerSave(writing(kSaveFlash, kSmall), listener).trouble,
                 Trouble::SaveIsLarger);
    }

    void emptyUpperHalfLosesNothing()
    {
        TrialBench bench(gbaCartridge(GbaSaveType::Flash, 2 * kSmall));
        loadSave(bench, trialNoise(kSmall) + QByteArray(kSmall, '\xFF'));
        PhaseRecorder listener;
        QCOMPARE(findLargerSave(writing(kSaveFlash, kSmall), listener).trouble, Trouble::None);
    }

    // It repeats itself, or does not answer.
    void chipOf64KiBIsNotLarger()
    {
        TrialBench bench(gbaCartridge(GbaSaveType::Flash, kSmall));
        loadSave(bench, trialNoise(kSmall));
        PhaseRecorder listener;
        QCOMPARE(findLargerSave(writing(kSaveFlash, kSmall), listener).trouble, Trouble::None);
        QCOMPARE(listener.phases.size(), 2);
    }

    void otherSavesAreNotLookedAt()
    {
        TrialBench bench(gbaCartridge(GbaSaveType::Sram, 32768));
        PhaseRecorder listener;
        for (const CartridgeJob &job : {writing(kSaveSram, kSmall), writing(kSaveFlash, 2 * kSmall),
                                        writing(kSaveEeprom, 512)})
            QCOMPARE(findLargerSave(job, listener).trouble, Trouble::None);
        QCOMPARE(listener.phases, QStringList());
    }

    // A script does not notice that a GBA save was not read; the drive did.
    void failedLookIsTold()
    {
        TrialBench bench(gbaCartridge(GbaSaveType::Flash, kSmall));
        DriveFault fault;
        fault.pathEnd = "K-DRIVER.DMP";
        fault.after = 3; // behind the look for the reader
        bench.drive().addFault(fault);
        PhaseRecorder listener;
        const Outcome outcome = findLargerSave(writing(kSaveFlash, kSmall), listener);
        QCOMPARE(outcome.trouble, Trouble::JobFailed);
        QVERIFY(outcome.job.driveError.contains("injected fault"));
    }

    void contentFollowsTheFile()
    {
        QCOMPARE(newSaveContent("abcd", "1234", 4), QByteArray("abcd"));
        QCOMPARE(newSaveContent("ab", "1234", 4), QByteArray("ab34"));
        QCOMPARE(newSaveContent("abcdef", "1234", 4), QByteArray("abcd"));
        QCOMPARE(newSaveContent("", "1234", 4), QByteArray("1234"));
    }
};

GBDRIVER_TEST(SaveCheckTest, none)
#include "save_check_test.moc"
