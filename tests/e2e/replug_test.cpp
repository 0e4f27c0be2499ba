// Unmounting, pulling out and plugging in again between jobs: the program must never keep a drive
// busy after a job, never write into the empty mount point, and find the next reader without a
// restart.
#include "cartridge_files.h"
#include "mounted_reader.h"

#include "device/device_link.h"
#include "device/device_ops.h"
#include "test_class.h"
#include "worker/famicom_thread.h"

#include <QDir>
#include <QSignalSpy>
#include <QtTest>

namespace
{

constexpr int kJobMs = 60000;
constexpr std::uint32_t kRomSize = 64 * 1024;

void fillDumpJob(FamicomThread *job, const QString &destination)
{
    job->operate = GB_READ_ROM;
    job->script_name = MAPPER_FOLDER "/gb_mbc5.nut";
    job->file_name = destination;
    job->rom_size = static_cast<int>(kRomSize);
}

} // namespace

class ReplugTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_reader = std::make_unique<MountedReader>();
        qputenv("GBDRIVER_DRIVES", m_reader->declaration().toLocal8Bit());
        m_backend = createPlatformBackend();
        setDriveBackend(m_backend.get());
    }

    void cleanup()
    {
        setDriveBackend(nullptr);
        m_backend.reset();
        m_reader.reset();
    }

    void driveCanBeUnmountedTheMomentAJobHasEnded()
    {
        QCOMPARE(m_reader->start(m_files.addImage(0x19, kRomSize, 0)), QString());
        FamicomThread job;
        fillDumpJob(&job, m_files.path("dump.gb"));
        QString refusal = "not tried";
        // Called by the worker, before it has even returned from run().
        connect(
            &job, &FamicomThread::error, &job,
            [&](int) { refusal = unmountFolder(m_reader->folder()); }, Qt::DirectConnection);
        job.start();
        QVERIFY(job.wait(kJobMs));
        QCOMPARE(refusal, QString());
    }

    void nextCartridgeIsDumpedAfterUnmountingAndMountingAgain()
    {
        const QString first = m_files.addImage(0x19, kRomSize, 0, 1);
        const QString second = m_files.addImage(0x19, kRomSize, 0, 2);
        QVERIFY(contentOf(first) != contentOf(second));
        FamicomThread job;

        QCOMPARE(m_reader->start(first), QString());
        QCOMPARE(dump(&job, "first.gb"), 1);
        QVERIFY(contentOf(m_files.path("first.gb")) == contentOf(first));
        QCOMPARE(m_reader->unmount(), QString());

        QCOMPARE(m_reader->start(second), QString());
        QCOMPARE(dump(&job, "second.gb"), 1);
        QVERIFY(contentOf(m_files.path("second.gb")) == contentOf(second));
    }

    void nothingIsWrittenIntoTheEmptyMountPoint()
    {
        QCOMPARE(m_reader->start(m_files.addImage(0x19, kRomSize, 0)), QString());
        FamicomThread job;
        QCOMPARE(dump(&job, "dump.gb"), 1);
        QCOMPARE(m_reader->unmount(), QString());

        // The window selects the mode before a job without looking for the reader again.
        QCOMPARE(selectGbMode(), 0U);
        QCOMPARE(dump(&job, "nothing.gb"), 0);
        QVERIFY(!QFile::exists(m_files.path("nothing.gb")));
        QVERIFY(QDir(m_reader->folder()).isEmpty());
    }

    void modeCanBeSelectedAfterPluggingInAgainWithoutAnotherScan()
    {
        const QString image = m_files.addImage(0x19, kRomSize, 0);
        QCOMPARE(m_reader->start(image), QString());
        QCOMPARE(findDevice(0, nullptr), 1);
        QVERIFY(selectGbMode() != 0);
        releaseReader();
        QCOMPARE(m_reader->unmount(), QString());
        QCOMPARE(m_reader->start(image), QString());
        QCOMPARE(selectGbMode(), 512U);
        releaseReader();
        QCOMPARE(countCommandRuns(m_reader->operations()), 2);
    }

private:
    int dump(FamicomThread *job, const QString &name)
    {
        fillDumpJob(job, m_files.path(name));
        QSignalSpy ends(job, &FamicomThread::error);
        job->start();
        if (!job->wait(kJobMs))
            return -1;
        QCoreApplication::processEvents();
        return ends.count() == 1 ? ends[0][0].toInt() : -1;
    }

    CartridgeFiles m_files;
    std::unique_ptr<MountedReader> m_reader;
    std::unique_ptr<DriveBackend> m_backend;
};

GBDRIVER_TEST(ReplugTest, core)
#include "replug_test.moc"
