// The system's notices of drives that come and go, by mounting and unmounting a reader.
#include "cartridge_files.h"
#include "mounted_reader.h"

#include "device/drive_watch.h"
#include "test_class.h"

#include <QtTest>

#include <memory>

namespace
{
// Other tests mount readers as well, and each of their notices makes a watch wait anew.
constexpr int kNoticeMs = 120000;
} // namespace

class DriveWatchTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_calls = 0;
        m_image = m_files.addImage(0x19, 64 * 1024, 0);
    }

    void everyComingAndGoingIsTold()
    {
        const DriveWatch watch([this] { ++m_calls; }, 0);
        for (int round = 0; round < 3; ++round) {
            MountedReader reader;
            m_calls = 0;
            QCOMPARE(reader.start(m_image), QString());
            QTRY_VERIFY_WITH_TIMEOUT(m_calls > 0, kNoticeMs);
            m_calls = 0;
            QCOMPARE(reader.unmount(), QString());
            QTRY_VERIFY_WITH_TIMEOUT(m_calls > 0, kNoticeMs);
        }
    }

    // Changes go on for longer than the watch waits, so it has to wait anew with each. The time is
    // long enough for one change on a machine that is busy.
    void noticesOfOneMomentAreOne()
    {
        constexpr int kSettleMs = 3000;
        const DriveWatch watch([this] { ++m_calls; }, kSettleMs);
        QElapsedTimer sinceTheFirst;
        sinceTheFirst.start();
        while (sinceTheFirst.elapsed() < kSettleMs * 5 / 4) {
            MountedReader reader;
            QCOMPARE(reader.start(m_image), QString());
            QCoreApplication::processEvents();
            QCOMPARE(reader.unmount(), QString());
            QCoreApplication::processEvents();
        }
        QCOMPARE(m_calls, 0);
        QTRY_VERIFY_WITH_TIMEOUT(m_calls > 0, kNoticeMs);
        QCOMPARE(m_calls, 1);
    }

    void aWatchThatIsGoneIsSilent()
    {
        auto watch = std::make_unique<DriveWatch>([this] { ++m_calls; }, 0);
        const DriveWatch other([this] { ++m_otherCalls; }, 0);
        watch.reset();
        MountedReader reader;
        QCOMPARE(reader.start(m_image), QString());
        QTRY_VERIFY_WITH_TIMEOUT(m_otherCalls > 0, kNoticeMs);
        QCOMPARE(m_calls, 0);
    }

private:
    CartridgeFiles m_files;
    QString m_image;
    int m_calls = 0;
    int m_otherCalls = 0;
};

GBDRIVER_TEST(DriveWatchTest, core)
#include "drive_watch_test.moc"
