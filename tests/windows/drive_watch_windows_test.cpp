// The system's message that devices have changed, sent by the test to a window of its own.
#include "device/drive_watch.h"

#include "test_class.h"

#include <QtTest>

#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <dbt.h>

class DriveWatchWindowsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_window =
            CreateWindowW(L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        QVERIFY(m_window != nullptr);
    }
    void cleanupTestCase() { DestroyWindow(m_window); }

    void init() { m_calls = 0; }

    void changesOfDrivesAreTold_data()
    {
        QTest::addColumn<uint>("event");
        QTest::newRow("arrival") << uint(DBT_DEVICEARRIVAL);
        QTest::newRow("removal") << uint(DBT_DEVICEREMOVECOMPLETE);
        QTest::newRow("any device") << uint(DBT_DEVNODES_CHANGED);
    }
    void changesOfDrivesAreTold()
    {
        QFETCH(uint, event);
        const DriveWatch watch([this] { ++m_calls; }, 0);
        post(WM_DEVICECHANGE, event);
        QTRY_COMPARE(m_calls, 1);
    }

    void noticesOfOneMomentAreOne()
    {
        const DriveWatch watch([this] { ++m_calls; });
        post(WM_DEVICECHANGE, DBT_DEVICEARRIVAL);
        post(WM_DEVICECHANGE, DBT_DEVNODES_CHANGED);
        QCoreApplication::processEvents();
        QCOMPARE(m_calls, 0);
        QTRY_COMPARE(m_calls, 1);
    }

    // The last message shows that those before it have been heard.
    void otherMessagesAreNotTold()
    {
        const DriveWatch watch([this] { ++m_calls; }, 0);
        post(WM_DEVICECHANGE, DBT_DEVICEQUERYREMOVE);
        post(WM_APP, DBT_DEVICEARRIVAL);
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
        QCOMPARE(m_calls, 0);
        post(WM_DEVICECHANGE, DBT_DEVICEARRIVAL);
        QTRY_COMPARE(m_calls, 1);
    }

private:
    void post(UINT message, WPARAM event) { PostMessageW(m_window, message, event, 0); }

    HWND m_window = nullptr;
    int m_calls = 0;
};

GBDRIVER_TEST(DriveWatchWindowsTest, core)
#include "drive_watch_windows_test.moc"
