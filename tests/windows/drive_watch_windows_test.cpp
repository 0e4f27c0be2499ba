// The system's message that devices have changed, given to the program's filters as the toolkit
// gives it to them: the system lets nobody post one about a single drive.
#include "device/drive_watch.h"

#include "test_class.h"

#include <QAbstractEventDispatcher>
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
        give(WM_DEVICECHANGE, event);
        QTRY_COMPARE(m_calls, 1);
    }

    void noticesOfOneMomentAreOne()
    {
        const DriveWatch watch([this] { ++m_calls; });
        give(WM_DEVICECHANGE, DBT_DEVICEARRIVAL);
        give(WM_DEVICECHANGE, DBT_DEVNODES_CHANGED);
        QCoreApplication::processEvents();
        QCOMPARE(m_calls, 0);
        QTRY_COMPARE(m_calls, 1);
    }

    // The last message shows that those before it have been heard.
    void otherMessagesAreNotTold()
    {
        const DriveWatch watch([this] { ++m_calls; }, 0);
        give(WM_DEVICECHANGE, DBT_DEVICEQUERYREMOVE);
        give(WM_APP, DBT_DEVICEARRIVAL);
        QCoreApplication::processEvents();
        QCOMPARE(m_calls, 0);
        give(WM_DEVICECHANGE, DBT_DEVICEARRIVAL);
        QTRY_COMPARE(m_calls, 1);
    }

private:
    void give(UINT message, WPARAM event)
    {
        MSG told = {};
        told.message = message;
        told.wParam = event;
        long result = 0;
        QCoreApplication::eventDispatcher()->filterNativeEvent("windows_generic_MSG", &told,
                                                               &result);
    }

    int m_calls = 0;
};

GBDRIVER_TEST(DriveWatchWindowsTest, core)
#include "drive_watch_windows_test.moc"
