// The signals that want the program to end reach the event loop, and nothing else.
#include "app/end_signals.h"

#include "test_class.h"

#include <QThread>
#include <QtTest>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <memory>

#include <unistd.h>

class EndSignalsTest : public QObject
{
    Q_OBJECT

private slots:
    void everySignalIsHeard_data()
    {
        QTest::addColumn<int>("number");
        QTest::newRow("SIGINT") << SIGINT;
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGHUP") << SIGHUP;
    }
    void everySignalIsHeard()
    {
        QFETCH(int, number);
        int calls = 0;
        const EndSignals watch([&] {
            ++calls;
            QCOMPARE(QThread::currentThread(), qApp->thread());
        });
        QCOMPARE(::raise(number), 0);
        QCOMPARE(calls, 0); // from the event loop only
        QTRY_COMPARE(calls, 1);
        QCOMPARE(::raise(number), 0);
        QTRY_COMPARE(calls, 2);
    }

    void manySignalsDoNoHarm()
    {
        int calls = 0;
        const EndSignals watch([&] { ++calls; });
        for (int i = 0; i < 100000; ++i) // more than a pipe holds
            QCOMPARE(::raise(SIGTERM), 0);
        QTRY_VERIFY(calls >= 1);
    }

    void brokenPipeEndsNothing()
    {
        const EndSignals watch([] {});
        int ends[2];
        QCOMPARE(::pipe(ends), 0);
        ::close(ends[0]);
        QCOMPARE(::write(ends[1], "x", 1), ssize_t(-1));
        QCOMPARE(errno, EPIPE);
        ::close(ends[1]);
    }

    // A thread that waits for the reader goes on waiting.
    void waitingCallsAreNotDisturbed()
    {
        int calls = 0;
        const EndSignals watch([&] { ++calls; });
        int ends[2];
        QCOMPARE(::pipe(ends), 0);
        ssize_t count = 0;
        int problem = 0;
        const std::unique_ptr<QThread> reader(QThread::create([&] {
            char byte = 0;
            count = ::read(ends[0], &byte, 1);
            problem = errno;
        }));
        errno = 0;
        reader->start();
        while (calls < 100) {
            QCOMPARE(::kill(::getpid(), SIGTERM), 0); // to any thread
            QCoreApplication::processEvents();
        }
        QVERIFY(reader->isRunning());
        QCOMPARE(::write(ends[1], "x", 1), ssize_t(1));
        QVERIFY(reader->wait(60000));
        QVERIFY2(count == 1, std::strerror(problem));
        for (const int end : ends)
            ::close(end);
    }
};

GBDRIVER_TEST(EndSignalsTest, gui)
#include "end_signals_test.moc"
