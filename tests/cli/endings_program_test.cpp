// Signals at exact moments of every kind of job, to the program and to the mounted reader: no half
// file under a good name, no lost save, nobody left behind on the drive.
#include "../e2e/ending_bench.h"
#include "program_run.h"
#include "running_program.h"
#include "test_class.h"

#include <QtTest>

#include <csignal>

namespace
{

constexpr int kStepMs = 60000;
constexpr int kCancelled = static_cast<int>(ExitCode::Cancelled);
const QVector<int> kSignals = {SIGINT, SIGTERM, SIGHUP, SIGKILL};

struct EndedCommand {
    QString words; // DIR stands for the folder of the test
    EndedJob job;
    bool waits = false; // without a reader, until it is asked to stop
};

// One command in a folder of its own, from its begin to the drive that is free again.
class EndingRun
{
public:
    EndingRun(const EndedCommand &command, const Ending &ending)
        : m_command(command), m_ending(ending), m_bench(command.job, ending)
    {
    }

    QStringList run()
    {
        const QString refusal = m_bench.prepare();
        if (!refusal.isEmpty())
            return {refusal};
        if (!runProgram())
            return {"it does not end"};
        return programProblems() +
               m_bench.problemsBehind({m_program.exitCode() == 0, m_bench.path("backups")});
    }

    int operations() const { return m_bench.operations(); }

private:
    bool runProgram()
    {
        QString words = m_command.words;
        m_program.start(words.replace("DIR", m_bench.path()).split(' '), "GBDRIVER_DRIVES",
                        m_bench.reader().declaration());
        m_bench.aim(m_program.processId());
        if (m_command.waits && m_ending.isReaders && m_ending.moment != 0 &&
            m_bench.reader().waitForEnd())
            m_program.interrupt();
        return QTest::qWaitFor([&] { return m_program.hasEnded(); }, kStepMs);
    }

    // A signal may come too late for what it asks, and a write is finished first.
    QStringList programProblems()
    {
        QStringList problems;
        const int code = m_program.exitCode();
        if (m_ending.moment == 0 ? code != 0
            : m_ending.isReaders ? code < 0
            : m_bench.isKilled() ? code != -1
                                 : code != 0 && code != kCancelled)
            problems << QString("exit code %1").arg(code);
        if (!m_bench.isKilled() && code != 0 && m_program.messages().isEmpty())
            problems << "it says nothing";
        return problems;
    }

    EndedCommand m_command;
    Ending m_ending;
    EndingBench m_bench;
    RunningProgram m_program;
};

} // namespace

Q_DECLARE_METATYPE(EndedCommand)

class EndingsProgramTest : public QObject
{
    Q_OBJECT

private slots:
    void nothingIsHalfOrLost_data();
    void nothingIsHalfOrLost();
};

void EndingsProgramTest::nothingIsHalfOrLost_data()
{
    QTest::addColumn<EndedCommand>("command");
    QTest::addColumn<bool>("isReaders");
    const QVector<QPair<const char *, EndedCommand>> commands = {
        {"dump", {"dump DIR/made/game.gb --overwrite", {"made/game.gb"}}},
        {"read-ram", {"read-ram DIR/made/game.sav --overwrite", {"made/game.sav", true}}},
        {"backup", {"backup DIR/made --count 1", {"made/other.txt"}, true}},
        {"write-ram", {"write-ram DIR/new.sav --backup DIR/backups", {"", true}}},
        {"flash", {"flash DIR/new.gb --backup DIR/backups", {"", false, true}}},
    };
    for (const bool isReaders : {false, true}) {
        for (const auto &command : commands)
            QTest::addRow("%s, signal to the %s", command.first, isReaders ? "reader" : "program")
                << command.second << isReaders;
    }
}

void EndingsProgramTest::nothingIsHalfOrLost()
{
    QFETCH(EndedCommand, command);
    QFETCH(bool, isReaders);
    EndingRun whole(command, {});
    QCOMPARE(whole.run().join("; "), QString());
    const QVector<int> moments = momentsOf(whole.operations());
    QCOMPARE(moments.size(), 15);
    int count = 0;
    for (int i = 0; i < moments.size(); ++i) {
        for (const int signal : signalsAt(i, kSignals)) {
            EndingRun run(command, {moments[i], signal, isReaders});
            const QStringList problems = run.run();
            QVERIFY2(problems.isEmpty(), qPrintable(QString("operation %1, signal %2: %3")
                                                        .arg(moments[i])
                                                        .arg(signal)
                                                        .arg(problems.join("; "))));
            ++count;
        }
    }
    qInfo("%d signals at %d moments", count, static_cast<int>(moments.size()));
}

GBDRIVER_TEST(EndingsProgramTest, core)
#include "endings_program_test.moc"
