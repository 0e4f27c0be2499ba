// The message with which Windows asks whether the session may end, as the system's windows pass it
// on. On other systems a session manager asks the real window.
#include "app/session_end.h"
#include "test_class.h"

#include <QAbstractEventDispatcher>
#include <QtTest>

#include <windows.h>

namespace
{

// Returns: whether anybody took the message; `*result` is then its answer.
bool pass(UINT message, long *result)
{
    MSG sent = {};
    sent.message = message;
    return QAbstractEventDispatcher::instance()->filterNativeEvent("windows_generic_MSG", &sent,
                                                                   result);
}

} // namespace

class SessionEndTest : public QObject
{
    Q_OBJECT

private slots:
    void answerIsTheWindows_data()
    {
        QTest::addColumn<bool>("mayEnd");
        QTest::newRow("it may end") << true;
        QTest::newRow("it is to go on") << false;
    }
    void answerIsTheWindows()
    {
        QFETCH(bool, mayEnd);
        int asked = 0;
        const SessionEnd sessionEnd([&asked, mayEnd] {
            ++asked;
            return mayEnd;
        });
        long result = -1;
        QVERIFY(pass(WM_QUERYENDSESSION, &result));
        QCOMPARE(result, long(mayEnd));
        QCOMPARE(asked, 1);
        QVERIFY(!pass(WM_NULL, &result));
        QCOMPARE(asked, 1);
    }

    void nobodyAnswersBehindItsEnd()
    {
        std::make_unique<SessionEnd>([] { return false; }).reset();
        long result = -1;
        QVERIFY(!pass(WM_QUERYENDSESSION, &result));
    }
};

GBDRIVER_TEST(SessionEndTest, gui)
#include "session_end_test.moc"
