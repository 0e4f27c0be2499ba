// Whole jobs on bytes in memory: every end, what was moved, and that the caller's bytes stay.
#include "worker/job_run.h"

#include "job_bench.h"
#include "job_events.h"
#include "test_class.h"

#include <QtTest>

#include <limits>

using namespace virtual_reader;

Q_DECLARE_METATYPE(JobEnd)

namespace
{

constexpr int kRom = 0x4000;
constexpr int kSave = 0x2000;

} // namespace

class JobRunTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_bench.reset();
        m_bench = std::make_unique<JobBench>();
        m_bench->setScript(kMovingScript);
        m_job = CartridgeJob();
        m_job.scriptPath = m_bench->job.script_name;
        m_job.romSize = kRom;
        m_job.ramSize = kSave;
        m_input = QByteArray(kSave, 'i');
        m_events.clear();
        m_recorder.isStopped = false;
    }

    void everyEndIsTold_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<int>("operate");
        QTest::addColumn<JobEnd>("end");
        QTest::addColumn<QString>("scriptError"); // part of it
        const QByteArray moving = kMovingScript;
        const auto add = [](const char *name, const QByteArray &script, int operate, JobEnd end,
                            const char *scriptError) {
            QTest::newRow(name) << script << operate << end << QString(scriptError);
        };
        add("dump", moving, GB_READ_ROM, JobEnd::Done, "");
        add("read", moving, GB_READ_RAM, JobEnd::Done, "");
        add("write", moving, GB_WRITE_RAM, JobEnd::Done, "");
        add("GBA dump", moving, GBA_READ_ROM, JobEnd::Done, "");
        add("GBA read", moving, GBA_READ_RAM, JobEnd::Done, "");
        add("GBA write", moving, GBA_WRITE_RAM, JobEnd::Done, "");
        add("flash", moving, GB_WRITE_FLASH, JobEnd::Done, "");
        add("no operation", moving, 8, JobEnd::Refused, "");
        add("GBA flash", moving, GBA_WRITE_FLASH, JobEnd::Refused, "");
        add("refused", "function cpu_dump(a, b, c) { throw \"not today\"; }", GB_READ_ROM,
            JobEnd::Refused, "not today");
        add("refused at the top level", "throw \"never\";", GB_READ_ROM, JobEnd::Refused, "never");
        add("outside of the buffer", "function cpu_dump(d, s, _) { cpu_read(d, 0, s + 1); }",
            GB_READ_ROM, JobEnd::ScriptError, "cpu_read: cursor 0, length 16385");
        add("thrown behind a read",
            "function cpu_dump(d, s, _) { cpu_read(d, 0, 16); throw \"no more\"; }", GB_READ_ROM,
            JobEnd::ScriptFailed, "no more");
        add("not compiled", "function cpu_dump(dev {\n", GB_READ_ROM, JobEnd::ScriptError,
            "line = (1)");
        add("without the function", "x <- 1;", GB_READ_ROM, JobEnd::ScriptError,
            "the script has no function cpu_dump");
    }
    void everyEndIsTold()
    {
        QFETCH(QByteArray, script);
        QFETCH(int, operate);
        QFETCH(QString, scriptError);
        m_bench->setScript(script);
        m_bench->cartridge().looksUntilErased = 0;
        m_job.operate = operate;
        const JobResult result = run();
        QTEST(result.end, "end");
        QCOMPARE(result.scriptError.isEmpty(), scriptError.isEmpty());
        QVERIFY2(result.scriptError.contains(scriptError), qPrintable(result.scriptError));
        QCOMPARE(result.isWhole(), result.end == JobEnd::Done);
        QCOMPARE(m_bench->events.last(), QString("release"));
    }

    void missingReaderIsTold()
    {
        m_bench->drive().setGone(true);
        const JobResult result = run();
        QCOMPARE(result.end, JobEnd::NoReader);
        QCOMPARE(result.movedBytes, 0);
        QCOMPARE(result.wantedBytes, kRom);
        QCOMPARE(result.bytes, QByteArray());
        QCOMPARE(m_events, QStringList());
    }

    void missingModeIsTold_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<JobEnd>("end");
        QTest::newRow("no answer") << int(DriveErrorCode::InputOutput) << JobEnd::NoMode;
        QTest::newRow("refused") << int(DriveErrorCode::Refused) << JobEnd::NoMode;
        QTest::newRow("in use") << int(DriveErrorCode::InUse) << JobEnd::ReaderInUse;
        QTest::newRow("a stick") << int(DriveErrorCode::NotTheReader) << JobEnd::NotTheReader;
    }
    void missingModeIsTold()
    {
        QFETCH(int, code);
        QFETCH(JobEnd, end);
        m_bench->drive().addFault({DriveCall::OpenForWrite, "CMD.CMD", 0, DriveFault::kForever,
                                   static_cast<DriveErrorCode>(code)});
        const JobResult result = run();
        QCOMPARE(result.end, end);
        QVERIFY(!result.driveError.isEmpty());
        QCOMPARE(m_bench->traffic(), QStringList());
    }

    // With what belongs to a buffer beside its bytes, these sizes would wrap.
    void missingMemoryIsTold()
    {
        for (const int below : {0, 1, kTransferSlack - 1}) {
            m_job.romSize = std::numeric_limits<int>::max() - below;
            const JobResult result = run();
            QCOMPARE(result.end, JobEnd::NoMemory);
            QCOMPARE(result.bytes, QByteArray());
        }
    }

    void missingScriptSendsNothing()
    {
        m_job.scriptPath = m_bench->path("none.nut");
        for (int operate = GB_READ_ROM; operate <= GBA_WRITE_RAM; ++operate) {
            m_job.operate = operate;
            QCOMPARE(run().end, JobEnd::NoScript);
        }
        m_bench->drive().setGone(true);
        QCOMPARE(run().end, JobEnd::NoScript);
        QCOMPARE(m_bench->traffic(), QStringList());
        QCOMPARE(m_bench->drive().callCount(DriveCall::LogicalDrives), 0U);
        QCOMPARE(m_events, QStringList());
    }

    void shortInputSendsNothing()
    {
        m_input.chop(1);
        for (const int operate : {GB_WRITE_RAM, GBA_WRITE_RAM}) {
            m_job.operate = operate;
            const JobResult result = run();
            QCOMPARE(result.end, JobEnd::InputNotRead);
            QCOMPARE(result.movedBytes, 0);
            QCOMPARE(result.wantedBytes, kSave);
        }
        QCOMPARE(m_bench->traffic(), QStringList());
        QCOMPARE(m_bench->drive().callCount(DriveCall::LogicalDrives), 0U);
        QCOMPARE(m_events, QStringList());
    }

    void longInputIsCut()
    {
        m_job.operate = GBA_WRITE_RAM;
        m_input += "more";
        const JobResult result = run();
        QVERIFY(result.isWhole());
        QCOMPARE(m_bench->cartridge().save.left(kSave), m_input.left(kSave));
        QCOMPARE(m_bench->cartridge().save.mid(kSave, 4), QByteArray(4, '\0'));
        QCOMPARE(result.bytes, QByteArray());
    }

    void stoppedEraseIsCancelled()
    {
        m_job.operate = GB_WRITE_FLASH;
        m_bench->cartridge().looksUntilErased = std::numeric_limits<int>::max();
        m_recorder.isStopped = true;
        QCOMPARE(run().end, JobEnd::Cancelled);
        QCOMPARE(m_bench->cartridge().programmed, QByteArray());
    }

    // Half a dump is worth nothing.
    void nothingElseIsCancelled()
    {
        m_recorder.isStopped = true;
        QVERIFY(run().isWhole());
        m_job.operate = GB_WRITE_RAM;
        QVERIFY(run().isWhole());
    }

    void dumpHasItsBytes()
    {
        const JobResult result = run();
        QVERIFY(result.isWhole());
        QCOMPARE(result.movedBytes, kRom);
        QCOMPARE(result.wantedBytes, kRom);
        QCOMPARE(result.bytes, TestCartridge::gbBytes(0, kRom));
        QCOMPARE(result.driveError, QString());
        QVERIFY(m_events.contains("progress 8192/16384"));
    }

    void dumpOfTooLittleEndsInZeros_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<int>("moved");
        QTest::newRow("none") << QByteArray("function cpu_dump(d, s, _) {}") << 0;
        QTest::newRow("half") << QByteArray("function cpu_dump(d, s, _) { cpu_read(d, 0, s / 2); }")
                              << kRom / 2;
    }
    void dumpOfTooLittleEndsInZeros()
    {
        QFETCH(QByteArray, script);
        QFETCH(int, moved);
        QVERIFY(run().isWhole()); // an older job has left its bytes somewhere
        m_bench->setScript(script);
        const JobResult result = run();
        QCOMPARE(result.end, JobEnd::Done);
        QCOMPARE(result.movedBytes, moved);
        QCOMPARE(result.wantedBytes, kRom);
        QVERIFY(!result.isWhole());
        QCOMPARE(result.bytes, TestCartridge::gbBytes(0, moved) + QByteArray(kRom - moved, '\0'));
    }

    void failedReadEndsTheJob()
    {
        m_bench->drive().addFault({DriveCall::Read, "DUMP.ROM", 1}); // of the last read
        const JobResult result = run();
        QCOMPARE(result.end, JobEnd::ScriptFailed);
        QCOMPARE(result.scriptError, QString("cpu_read: the reader did not answer"));
        QCOMPARE(result.movedBytes, kRom / 2);
        QVERIFY2(result.driveError.contains("injected fault"), qPrintable(result.driveError));
        QVERIFY(!result.isWhole());
        // It is that of this job alone.
        const JobResult next = run();
        QVERIFY(next.isWhole());
        QCOMPARE(next.driveError, QString());
    }

    void failedFirstReadMovesNothing()
    {
        m_bench->setScript("function cpu_dump(d, s, _) { cpu_read(d, 0, 16); }");
        m_bench->drive().addFault({DriveCall::Read, "DUMP.ROM"});
        QCOMPARE(run().movedBytes, 0);
    }

    // The error is the script's, but a job with one is not whole: also where the drive said nothing
    // and every byte was moved.
    void caughtFailureLeavesNothingWhole_data()
    {
        QTest::addColumn<bool>("isReported");
        QTest::newRow("error of the drive") << true;
        QTest::newRow("the drive took nothing and did not say so") << false;
    }
    void caughtFailureLeavesNothingWhole()
    {
        QFETCH(bool, isReported);
        m_bench->setScript("function cpu_dump(d, s, _) {\n"
                           "try { cpu_write(d, 0x2000, 2); } catch (error) {}\n"
                           "cpu_read(d, 0, s); }");
        DriveFault fault{DriveCall::Write, "CMD.CMD", 2}; // behind the selection of the bus
        if (!isReported) {
            fault.code = DriveErrorCode::None;
            fault.bytes = 0;
        }
        m_bench->drive().addFault(fault);
        const JobResult result = run();
        QCOMPARE(result.end, JobEnd::Done);
        QCOMPARE(result.movedBytes, kRom);
        QCOMPARE(result.driveError.isEmpty(), !isReported);
        QCOMPARE(result.scriptError, QString());
        QCOMPARE(result.failedOperation, QString("cpu_write: the reader did not take the command"));
        QVERIFY(!result.isWhole());
    }

    void flashLeavesTheInputAsItIs()
    {
        m_job.operate = GB_WRITE_FLASH;
        m_job.romSize = 1; // the size is the input's
        m_bench->cartridge().looksUntilErased = 0;
        std::vector<char> memory(960 + 8);
        for (std::size_t i = 0; i < memory.size(); ++i)
            memory[i] = static_cast<char>(i * 31);
        const QByteArray before(memory.data(), 960);
        // Not a copy: whoever enciphers in place would change these bytes.
        m_input = QByteArray::fromRawData(memory.data(), 960);
        const JobResult result = run();
        QVERIFY(result.isWhole());
        QCOMPARE(result.wantedBytes, 960);
        QCOMPARE(result.movedBytes, 960);
        QCOMPARE(result.bytes, QByteArray());
        QCOMPARE(m_bench->cartridge().programmed, before);
        QCOMPARE(QByteArray(memory.data(), 960), before);
        QCOMPARE(m_bench->traffic().count("F0/04"), 1); // the key
    }

    void saveTypeChoosesTheCommands()
    {
        m_job.operate = GBA_READ_RAM;
        m_job.saveType = 2;
        m_job.ramSize = 512;
        QVERIFY(run().isWhole());
        QCOMPARE(m_bench->traffic().filter("03/").last(), QString("03/0C"));
    }

private:
    JobResult run() { return runJob(m_job, m_input, m_recorder); }

    std::unique_ptr<JobBench> m_bench;
    CartridgeJob m_job;
    QByteArray m_input;
    QStringList m_events;
    JobRecorder m_recorder{&m_events};
};

GBDRIVER_TEST(JobRunTest, none)
#include "job_run_test.moc"
