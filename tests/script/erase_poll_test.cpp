// Waiting for a flash chip to erase itself: what is looked at, when, and when the user's cancel is
// noticed.
#include "script/erase_poll.h"

#include "composed_block.h"
#include "script_bench.h"

#include "device/device_ops.h"
#include "test_class.h"

#include <QElapsedTimer>
#include <QtTest>

#include <memory>

namespace
{

constexpr int kGbFlash = 1;
constexpr int kGbaSaveWrite = 7;
constexpr int kFlashSave = 1;

// The bench of the running test, and the wait (from 1) in which the user cancels; 0: never.
ScriptBench *current = nullptr;
int cancelInWait = 0;
int waits = 0;

void recordWait(unsigned long timeMs)
{
    current->drive.calls.append(QString("wait %1").arg(timeMs));
    if (++waits == cancelInWait)
        current->recorder.isStopped = true;
}

// What one command, one look at the GB bus and one look at the save do on the drive.
QStringList command()
{
    return {"create E:\\CMD.CMD", "write 512 at 0", "close"};
}

QStringList look(const QString &file)
{
    return {"open E:\\" + file + " unbuffered", "seek 0", "read 1024 at 0", "close"};
}

QStringList gbLook()
{
    return QStringList{"wait 1000"} + look("DUMP.ROM");
}

QStringList saveLook()
{
    return QStringList{"wait 1000"} + command() + look("K-DRIVER.DMP");
}

const QStringList kEraseStart = {"log Start erase flash chip..."};
const QStringList kEraseEnd = {"log Erase flash chip finish."};
const QStringList kFlashLogs = {"log Start flash ROM...", "log flashing", "log Flash ROM finish."};
const QStringList kWriteLogs = {"log Start write save...", "log writing", "log Write save finish."};

constexpr char kScript[] = "function cpu_erase(dev, a, b) {}\n"
                           "function cpu_flash(dev, a, b) { print(\"flashing\"); }\n"
                           "function save_write(dev, a, b) { print(\"writing\"); }\n";

QStringList repeated(const QStringList &list, int times)
{
    QStringList result;
    for (int i = 0; i < times; ++i)
        result += list;
    return result;
}

} // namespace

class ErasePollTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void gbPollLooksOnceAWait_data();
    void gbPollLooksOnceAWait();
    void savePollLooksOnceAWait_data();
    void savePollLooksOnceAWait();
    void gbLookReadsOneByteAtAddressZero();
    void saveLookIsAlwaysAnSramRead_data();
    void saveLookIsAlwaysAnSramRead();
    void failedLookIsNoErasedChip();
    void replyToAnotherCommandIsNoErasedChip();
    void unpluggedReaderEndsTheWait();
    void eraseThatNeverEndsIsGivenUp();
    void usualWaitTakesItsTime();

private:
    // Contents that the looks find, one each.
    void queueLooks(const QString &path, const QByteArray &firstBytes);

    std::unique_ptr<ScriptBench> m_bench;
};

void ErasePollTest::init()
{
    m_bench = std::make_unique<ScriptBench>();
    m_bench->job.saveType = kFlashSave;
    m_bench->setScript(kScript);
    current = m_bench.get();
    cancelInWait = 0;
    waits = 0;
    setPollWaiter(recordWait);
}

void ErasePollTest::cleanup()
{
    current = nullptr;
    m_bench.reset();
}

void ErasePollTest::queueLooks(const QString &path, const QByteArray &firstBytes)
{
    QList<QByteArray> contents;
    for (const char first : firstBytes)
        contents.append(QByteArray(1, first) + QByteArray(1023, '\x00'));
    m_bench->drive.queueContents(path, contents);
}

void ErasePollTest::gbPollLooksOnceAWait_data()
{
    QTest::addColumn<QByteArray>("looks");
    QTest::addColumn<int>("cancelWait");
    QTest::addColumn<bool>("erased");
    QTest::newRow("erased at once") << QByteArray("\xFF") << 0 << true;
    QTest::newRow("erased at the third look") << QByteArray("\x00\xFE\xFF", 3) << 0 << true;
    QTest::newRow("erased after many") << QByteArray(200, '\x7F') + '\xFF' << 0 << true;
    QTest::newRow("cancelled before the first look") << QByteArray("\x00", 1) << 1 << false;
    QTest::newRow("cancelled later") << QByteArray("\x00\x00\x00", 3) << 3 << false;
    QTest::newRow("cancel comes too late") << QByteArray("\xFF") << 1 << true;
    QTest::newRow("cancel comes too late, third look")
        << QByteArray("\x00\x01\xFF", 3) << 3 << true;
}

void ErasePollTest::gbPollLooksOnceAWait()
{
    QFETCH(QByteArray, looks);
    QFETCH(int, cancelWait);
    QFETCH(bool, erased);
    queueLooks(kDumpPath, looks);
    cancelInWait = cancelWait;
    QCOMPARE(m_bench->run(kGbFlash), erased);
    const QStringList end = erased ? kEraseEnd + kFlashLogs : QStringList();
    QCOMPARE(m_bench->events(), kEraseStart + repeated(gbLook(), looks.size()) + end);
}

void ErasePollTest::savePollLooksOnceAWait_data()
{
    gbPollLooksOnceAWait_data();
}

// The command that starts the erase comes after the log line and before the first wait.
void ErasePollTest::savePollLooksOnceAWait()
{
    QFETCH(QByteArray, looks);
    QFETCH(int, cancelWait);
    QFETCH(bool, erased);
    queueLooks(kIdentityPath, looks);
    cancelInWait = cancelWait;
    QCOMPARE(m_bench->run(kGbaSaveWrite), erased);
    const QStringList end = erased ? kEraseEnd + kWriteLogs : QStringList();
    QCOMPARE(m_bench->events(), kEraseStart + command() + repeated(saveLook(), looks.size()) + end);
}

void ErasePollTest::gbLookReadsOneByteAtAddressZero()
{
    static std::uint32_t address = 0;
    static std::uint32_t length = 0;
    address = length = 99;
    deviceOps.gbRead = [](std::uint32_t first, void *buffer, std::uint32_t count) {
        address = first;
        length = count;
        *static_cast<std::uint8_t *>(buffer) = 0xFF;
        return count;
    };
    QCOMPARE(waitForGbErase(m_bench->recorder, CartridgeJob()).end, EraseEnd::Erased);
    QCOMPARE(address, 0U);
    QCOMPARE(length, 1U);
    QCOMPARE(waits, 1);
}

void ErasePollTest::saveLookIsAlwaysAnSramRead_data()
{
    QTest::addColumn<int>("boundType");
    QTest::newRow("SRAM") << 0;
    QTest::newRow("FLASH 64 KiB") << 1;
    QTest::newRow("FLASH 128 KiB") << 2;
    QTest::newRow("EEPROM 512") << 3;
    QTest::newRow("EEPROM 8 KiB") << 4;
}

void ErasePollTest::saveLookIsAlwaysAnSramRead()
{
    QFETCH(int, boundType);
    selectGbaSaveType(static_cast<std::uint32_t>(boundType));
    queueLooks(kIdentityPath, QByteArray("\x00\xFF", 2));
    m_bench->drive.forgetCalls();
    QCOMPARE(waitForGbaSaveErase(m_bench->recorder).end, EraseEnd::Erased);
    const QByteArray sramRead = composeBlock(3, 17, {{4, 0, 3}, {8, 10, 2}});
    QCOMPARE(m_bench->drive.runs.size(), 2);
    QCOMPARE(m_bench->drive.runs[0].bytes, sramRead);
    QCOMPARE(m_bench->drive.runs[1].bytes, sramRead);
}

void ErasePollTest::failedLookIsNoErasedChip()
{
    m_bench->drive.setContent(kDumpPath, QByteArray(1024, '\xFF'));
    m_bench->drive.setContent(kIdentityPath, QByteArray(1024, '\xFF'));
    m_bench->drive.failNext(DriveCall::OpenRead);
    QCOMPARE(waitForGbErase(m_bench->recorder, CartridgeJob()).end, EraseEnd::Erased);
    QCOMPARE(waits, 2);
    m_bench->drive.failNext(DriveCall::Read);
    QCOMPARE(waitForGbaSaveErase(m_bench->recorder).end, EraseEnd::Erased);
    QCOMPARE(waits, 4);
}

// The reply file still shows what an older command asked for.
void ErasePollTest::replyToAnotherCommandIsNoErasedChip()
{
    m_bench->drive.setContent(kIdentityPath, QByteArray(1024, '\xFF'));
    for (const DriveCall call : {DriveCall::OpenWrite, DriveCall::Write}) {
        waits = 0;
        m_bench->drive.failNext(call);
        QCOMPARE(waitForGbaSaveErase(m_bench->recorder).end, EraseEnd::Erased);
        QCOMPARE(waits, 2);
    }
}

void ErasePollTest::unpluggedReaderEndsTheWait()
{
    m_bench->drive.failNext(DriveCall::OpenRead, 0, 100);
    QVERIFY(!m_bench->run(kGbFlash));
    QCOMPARE(m_bench->end, JobEnd::EraseFailed);
    QCOMPARE(waits, 2);
    QCOMPARE(m_bench->logs().last(),
             QString("the reader did not answer while the chip was being erased"));
    waits = 0;
    QVERIFY(!m_bench->run(kGbaSaveWrite));
    QCOMPARE(m_bench->end, JobEnd::EraseFailed);
    QCOMPARE(waits, 2);
}

void ErasePollTest::eraseThatNeverEndsIsGivenUp()
{
    m_bench->drive.setContent(kDumpPath, QByteArray(1024, '\0'));
    m_bench->drive.setContent(kIdentityPath, QByteArray(1024, '\0'));
    QVERIFY(!m_bench->run(kGbaSaveWrite));
    QCOMPARE(m_bench->end, JobEnd::EraseFailed);
    QCOMPARE(waits, longestEraseSeconds(128 * 1024));
    QCOMPARE(m_bench->logs().last(), QString("the chip was not erased after 316 seconds"));
    waits = 0;
    m_bench->job.chipSize = 512 * 1024;
    QVERIFY(!m_bench->run(kGbFlash));
    QCOMPARE(waits, 364);
    waits = 0;
    m_bench->job.romSize = 1024 * 1024; // the chip says less than it takes
    QVERIFY(!m_bench->run(kGbFlash));
    QCOMPARE(waits, 428);
    waits = 0;
    m_bench->job.chipSize = 0;
    QVERIFY(!m_bench->run(kGbFlash));
    QCOMPARE(waits, 1324);
}

// A chip needs time before a look makes sense: the thread sleeps a full second.
void ErasePollTest::usualWaitTakesItsTime()
{
    setPollWaiter(nullptr);
    m_bench->drive.setContent(kDumpPath, QByteArray(1024, '\xFF'));
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(waitForGbErase(m_bench->recorder, CartridgeJob()).end, EraseEnd::Erased);
    QVERIFY2(timer.elapsed() >= 1000, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(waits, 0);
}

GBDRIVER_TEST(ErasePollTest, core)
#include "erase_poll_test.moc"
