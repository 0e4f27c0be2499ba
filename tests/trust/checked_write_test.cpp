// A write is right only if what is read back is equal, and what is said of the cartridge is true.
#include "trust/checked_write.h"

#include "test_class.h"
#include "trust_bench.h"

#include <QtTest>

using namespace virtual_reader;

namespace
{

// A backup was read behind bank switches.
constexpr CartridgeState kBefore = CartridgeState::Switched;

} // namespace

class CheckedWriteTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_bench.reset();
        m_bench = std::make_unique<TrialBench>(benchCartridge());
        m_content = trialNoise(int(kBenchSave));
        m_listener = PhaseRecorder();
    }

    void equalBytesAreDone()
    {
        const CheckedWrite write = run();
        QCOMPARE(write.outcome.trouble, Trouble::None);
        QCOMPARE(write.outcome.state, CartridgeState::Written);
        QCOMPARE(write.mismatch.bytes.count, 0U);
        QCOMPARE(m_bench->save(), m_content);
        QCOMPARE(m_listener.phases, (QStringList{"write 32768", "end", "check 32768", "end"}));
    }

    void placesOfAMismatchAreNamed()
    {
        addReadFault(*m_bench, 1, 0x81, 5); // byte 5 of the second bank
        const CheckedWrite write = run();
        QCOMPARE(write.outcome.trouble, Trouble::Mismatch);
        QCOMPARE(write.outcome.state, CartridgeState::Written);
        const WriteMismatch &mismatch = write.mismatch;
        QCOMPARE(mismatch.size, kBenchSave);
        QCOMPARE(mismatch.bytes.count, 1U);
        QCOMPARE(mismatch.bytes.first, 0x2005U);
        QCOMPARE(mismatch.blocks, QString("bank 1 of 4"));
        QCOMPARE(mismatch.first.size(), 1);
        QCOMPARE(mismatch.first[0].offset, 0x2005);
        QCOMPARE(mismatch.first[0].wanted, std::uint8_t(m_content[0x2005]));
        QCOMPARE(mismatch.first[0].found, std::uint8_t(m_content[0x2005] ^ 0x81));
    }

    void onlyTheFirstPlacesAreListed()
    {
        addReadFault(*m_bench, 0, 0xFF);
        const WriteMismatch mismatch = run().mismatch;
        QCOMPARE(mismatch.bytes.count, 0x2000U);
        QCOMPARE(mismatch.bytes.last, 0x1FFFU);
        QCOMPARE(mismatch.first.size(), 8);
        for (int at = 0; at < 8; ++at)
            QCOMPARE(mismatch.first[at].offset, at);
    }

    // An MBC2 keeps half bytes, and what it answers in the other half means nothing.
    void bitsThatAreNotKeptAreNoMismatch()
    {
        TrialCartridge cartridge;
        cartridge.headerType = 0x06;
        cartridge.romSize = kBenchRom;
        m_bench.reset();
        m_bench = std::make_unique<TrialBench>(cartridge);
        m_content = QByteArray(512, '\x5A');
        CartridgeJob writeJob = benchJob(GB_WRITE_RAM);
        writeJob.scriptPath = SHIPPED_SCRIPTS "/gb_mbc2.nut";
        writeJob.ramSize = 512;
        CartridgeJob readJob = writeJob;
        readJob.operate = GB_READ_RAM;
        QCOMPARE(writeAndCheck(writeJob, readJob, m_content, kBefore, m_listener).outcome.trouble,
                 Trouble::None);

        addReadFault(*m_bench, 0, 0x01, 7);
        const CheckedWrite write = writeAndCheck(writeJob, readJob, m_content, kBefore, m_listener);
        QCOMPARE(write.outcome.trouble, Trouble::Mismatch);
        QCOMPARE(write.mismatch.first.size(), 1);
        QCOMPARE(write.mismatch.first[0].wanted, std::uint8_t(0x0A));
        QCOMPARE(write.mismatch.first[0].found, std::uint8_t(0x0B));
    }

    void readThatGoesOnBehindTheContentIsCut()
    {
        CartridgeJob writeJob = benchJob(GB_WRITE_RAM);
        writeJob.ramSize = 8192;
        m_content.truncate(8192);
        const CheckedWrite write =
            writeAndCheck(writeJob, benchJob(GB_READ_RAM), m_content, kBefore, m_listener);
        QCOMPARE(write.outcome.trouble, Trouble::None);
        QCOMPARE(write.mismatch.size, 8192U);
        QCOMPARE(m_listener.phases, (QStringList{"write 8192", "end", "check 32768", "end"}));
    }

    void failedCheckIsNotReadBack()
    {
        addReadFault(*m_bench, 1);
        const CheckedWrite write = run();
        QCOMPARE(write.outcome.trouble, Trouble::NotReadBack);
        QCOMPARE(write.outcome.state, CartridgeState::Written);
        QCOMPARE(write.outcome.phase, Phase::Check);
        QVERIFY(write.outcome.job.driveError.contains("injected fault"));
        QCOMPARE(m_bench->save(), m_content);
    }

    void stopBeforeTheWriteWritesNothing()
    {
        const QByteArray old = m_bench->save();
        m_listener.questionsUntilStop = 0;
        const CheckedWrite write = run();
        QCOMPARE(write.outcome.trouble, Trouble::Stopped);
        QCOMPARE(write.outcome.state, CartridgeState::NotBegun);
        QCOMPARE(m_listener.phases, QStringList());
        QCOMPARE(m_bench->save(), old);
    }

    void writeThatHasBegunIsChecked()
    {
        m_listener.questionsUntilStop = 1;
        QCOMPARE(run().outcome.trouble, Trouble::None);
        QCOMPARE(m_listener.phases.size(), 4);
    }

    void refusedWriteHasWrittenNothing()
    {
        const QByteArray old = m_bench->save();
        CartridgeJob job = benchJob(GB_WRITE_RAM);
        job.ramSize = 3000; // no cartridge has it
        const CheckedWrite write =
            writeAndCheck(job, benchJob(GB_READ_RAM), m_content, kBefore, m_listener);
        QCOMPARE(write.outcome.trouble, Trouble::JobFailed);
        QCOMPARE(write.outcome.job.end, JobEnd::Refused);
        QCOMPARE(write.outcome.state, CartridgeState::NotBegun);
        QCOMPARE(m_listener.phases, (QStringList{"write 3000", "end"}));
        QCOMPARE(m_bench->save(), old);
    }

    void failedWriteMayHaveWrittenAPart()
    {
        DriveFault fault;
        fault.call = DriveCall::Write;
        fault.pathEnd = "CMD.CMD";
        fault.after = 8; // the bus mode, the look for the reader and the first bank lie before it
        m_bench->drive().addFault(fault);
        const CheckedWrite write = run();
        QCOMPARE(write.outcome.trouble, Trouble::JobFailed);
        QCOMPARE(write.outcome.state, CartridgeState::PartlyWritten);
        QCOMPARE(write.outcome.phase, Phase::Write);
        QVERIFY(write.outcome.job.driveError.contains("injected fault"));
        QVERIFY(m_bench->save() != m_content);
        QCOMPARE(m_listener.phases, (QStringList{"write 32768", "end"}));
    }

private:
    CheckedWrite run()
    {
        return writeAndCheck(benchJob(GB_WRITE_RAM), benchJob(GB_READ_RAM), m_content, kBefore,
                             m_listener);
    }

    std::unique_ptr<TrialBench> m_bench;
    QByteArray m_content;
    PhaseRecorder m_listener;
};

GBDRIVER_TEST(CheckedWriteTest, none)
#include "checked_write_test.moc"
