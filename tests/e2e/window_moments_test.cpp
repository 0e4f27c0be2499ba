// Signals at exact moments of the window's jobs: no half file under a good name, no lost save or
// ROM, nobody left behind on the drive; and a suspended program goes on as if nothing had been.
#include "driven_window.h"
#include "ending_bench.h"
#include "test_class.h"

#include <QFile>
#include <QtTest>

#include <csignal>
#include <memory>

namespace
{

constexpr int kStepMs = 60000;
const QVector<int> kSignals = {SIGINT, SIGTERM, SIGHUP, SIGKILL, SIGSTOP};

struct WindowJob {
    WindowButton button = WindowButton::Dump;
    QString caption;
    QString file; // below the folder of the test
    QString end;  // that the log names
    EndedJob job;
};

bool sendSignal(qint64 process, int number)
{
    return process > 0 && ::kill(static_cast<pid_t>(process), number) == 0;
}

bool isSuspended(qint64 process)
{
    QFile status(QString("/proc/%1/status").arg(process));
    return status.open(QIODevice::ReadOnly) && status.readAll().contains("\nState:\tT");
}

// One window with one job, from its begin to the drive that is free again.
class WindowRun
{
public:
    WindowRun(const std::shared_ptr<Desktop> &desktop, const WindowJob &job, const Ending &ending)
        : m_job(job), m_bench(job.job, ending), m_window(desktop)
    {
    }

    QStringList run()
    {
        QString problem = m_bench.prepare();
        if (problem.isEmpty())
            problem = startJob();
        if (problem.isEmpty())
            problem = waitForEnd();
        if (!problem.isEmpty())
            return {problem};
        return m_bench.problemsBehind({m_isWhole, m_window.backupFolder()});
    }

    int operations() const { return m_bench.operations(); }

private:
    QString startJob()
    {
        QString problem = m_window.start(m_bench.reader());
        if (problem.isEmpty() && !readInfo())
            problem = "Info does nothing";
        if (problem.isEmpty())
            problem = m_window.openDialog(m_job.button, m_job.caption);
        if (!problem.isEmpty())
            return problem;
        m_bench.aim(m_window.processId());
        return m_window.answerDialog(m_job.caption, m_bench.path(m_job.file));
    }

    // Fills in the settings. A window that has just come may miss the key.
    bool readInfo()
    {
        return QTest::qWaitFor(
            [&] {
                m_window.press(WindowButton::Info);
                return countCommandRuns(m_bench.reader().operations()) > 0;
            },
            kStepMs);
    }

    QString waitForEnd()
    {
        if (m_bench.isKilled())
            return m_window.waitForEnd().isEmpty() ? "it was not killed" : QString();
        const qint64 process = m_window.processId();
        if (m_bench.ending().signal == SIGSTOP &&
            !(QTest::qWaitFor([&] { return isSuspended(process); }, kStepMs) &&
              sendSignal(process, SIGCONT)))
            return "it was not suspended";
        m_isWhole = m_bench.ending().moment == 0 || m_bench.ending().signal == SIGSTOP;
        if (m_isWhole) {
            const QString log = m_window.logWith('\n' + m_job.end);
            if (!log.contains('\n' + m_job.end) || !log.contains("\n>Success!"))
                return "it says: " + log;
        }
        return m_isWhole ? m_window.close() : m_window.waitForEnd();
    }

    WindowJob m_job;
    EndingBench m_bench;
    DrivenWindow m_window;
    bool m_isWhole = false; // the job came to its end, and so said
};

} // namespace

Q_DECLARE_METATYPE(WindowJob)

class WindowMomentsTest : public QObject
{
    Q_OBJECT

private slots:
    void nothingIsHalfOrLost_data();
    void nothingIsHalfOrLost();

private:
    std::shared_ptr<Desktop> m_desktop = std::make_shared<Desktop>();
};

void WindowMomentsTest::nothingIsHalfOrLost_data()
{
    QTest::addColumn<WindowJob>("job");
    QTest::addColumn<int>("first"); // of the moments
    QTest::newRow("dump") << WindowJob{WindowButton::Dump,
                                       "Read ROM to...",
                                       "made/game.gb",
                                       "unverified: ",
                                       {"made/game.gb"}}
                          << 0;
    QTest::newRow("read RAM") << WindowJob{WindowButton::ReadRam,
                                           "Read save to...",
                                           "made/game.sav",
                                           "unverified: ",
                                           {"made/game.sav", true}}
                              << 1;
    QTest::newRow("write RAM")
        << WindowJob{WindowButton::WriteRam, "Get Save File.", "new.sav", "written: ", {"", true}}
        << 2;
    QTest::newRow("flash")
        << WindowJob{WindowButton::Flash, "Get ROM File.", "new.gb", "written: ", {"", false, true}}
        << 3;
}

void WindowMomentsTest::nothingIsHalfOrLost()
{
    QFETCH(WindowJob, job);
    QFETCH(int, first);
    const bool takesAll = qEnvironmentVariableIsSet("GBDRIVER_ALL_FAULTS");
    constexpr int kUsualStep = 4; // a window takes two seconds
    WindowRun whole(m_desktop, job, {0, 0, false, true});
    QCOMPARE(whole.run().join("; "), QString());
    const QVector<int> moments = momentsOf(whole.operations());
    QVERIFY(moments.size() > kUsualStep);
    int count = 0;
    for (int i = takesAll ? 0 : first; i < moments.size(); i += takesAll ? 1 : kUsualStep) {
        for (const int signal : signalsAt(i, kSignals)) {
            WindowRun run(m_desktop, job, {moments[i], signal, false, true});
            const QStringList problems = run.run();
            QVERIFY2(problems.isEmpty(), qPrintable(QString("operation %1, signal %2: %3")
                                                        .arg(moments[i])
                                                        .arg(signal)
                                                        .arg(problems.join("; "))));
            ++count;
        }
    }
    qInfo("%d signals among %d operations", count, whole.operations());
}

GBDRIVER_TEST(WindowMomentsTest, core)
#include "window_moments_test.moc"
