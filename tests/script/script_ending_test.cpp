// Scripts that never come to an end, and jobs that the user leaves: what is ended, when, and what
// never is.
#include "script_bench.h"

#include "script/script_limits.h"
#include "test_class.h"

#include <QElapsedTimer>
#include <QtTest>

#include <memory>
#include <vector>

namespace
{
constexpr int kShortSilenceMs = 100;
}

class ScriptEndingTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_bench = std::make_unique<ScriptBench>();
        setSilence(kShortSilenceMs);
    }
    void cleanup()
    {
        setSilence(kSilenceMs);
        m_bench.reset();
    }

    void endlessScriptsAreEndedWhereWanted_data();
    void endlessScriptsAreEndedWhereWanted();
    void endlessScriptGoesOnUnlessItsEndIsWanted();
    void nativeCallsKeepAScriptRunning();
    void readThatIsLeftReadsNoMore();
    void writeIsNeverLeft();

private:
    std::unique_ptr<ScriptBench> m_bench;
};

void ScriptEndingTest::endlessScriptsAreEndedWhereWanted_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("while") << QByteArray("while (true);");
    QTest::newRow("for") << QByteArray("for (;;);");
    QTest::newRow("behind attributes that begin with a comment")
        << QByteArray("class C <//**/ x = 1 /> {} while (true);");
    QTest::newRow("do") << QByteArray("do {} while (true)");
    QTest::newRow("do behind something") << QByteArray("local n = 0; do n++ while (true)");
    QTest::newRow("do in a branch")
        << QByteArray("if (dev == null) do {} while (true); else do {} while (true);");
    QTest::newRow("all in one line") << QByteArray("local n = 0; while (true) { n++; } return n;");
    QTest::newRow("compiled, in one line") << QByteArray("compilestring(\"for (;;) {}\")();");
    QTest::newRow("after enabledebuginfo")
        << QByteArray("enabledebuginfo(false); compilestring(\"for (;;) {}\")();");
    QTest::newRow("tail calls") << QByteArray("local f; f = @() f(); f();");
    QTest::newRow("caught") << QByteArray("while (true) try { throw 1; } catch (e) {}");
    QTest::newRow("in a coroutine")
        << QByteArray("newthread(function() { while (true); }).call();");
    QTest::newRow("generator") << QByteArray(
        "local g = function() { for (;;) yield 1; }; foreach (x in g()) {}");
    QTest::newRow("metamethod") << QByteArray(
        "local t = {}; t.setdelegate({_add = function(x) { while (true); }}); t + 1;");
    QTest::newRow("comparison") << QByteArray("[1, 2].sort(function(x, y) { while (true); });");
    QTest::newRow("operations that are refused")
        << QByteArray("while (true) try { cpu_read(null, 0, 1); } catch (e) {}");
}

void ScriptEndingTest::endlessScriptsAreEndedWhereWanted()
{
    QFETCH(QByteArray, body);
    m_bench->recorder.isStopped = true;
    QElapsedTimer timer;
    timer.start();
    m_bench->runDump(body);
    QCOMPARE(m_bench->end, JobEnd::ScriptStopped);
    QCOMPARE(m_bench->scriptError,
             QString("the script did nothing with the cartridge for 3 seconds"));
    QCOMPARE(m_bench->scriptPlace.section(", ", 1),
             body.contains("compile") ? QString("line 1") : QString("line 3"));
    QVERIFY(timer.elapsed() >= kShortSilenceMs);
    QCOMPARE(m_bench->logs().last(), QString("Dump rom finish."));
}

void ScriptEndingTest::endlessScriptGoesOnUnlessItsEndIsWanted()
{
    m_bench->recorder.looksUntilStopped = 500;
    m_bench->runDump("while (true);");
    // The 500th question was answered with yes; the user's own wish is asked for once more.
    QCOMPARE(m_bench->end, JobEnd::ScriptError);
    QCOMPARE(m_bench->recorder.looksUntilStopped, -1);
}

// Not their number counts, but what has happened since the last.
void ScriptEndingTest::nativeCallsKeepAScriptRunning()
{
    m_bench->recorder.isStopped = true;
    m_bench->job.romSize = 0;
    QElapsedTimer timer;
    for (int calls = 10000; !timer.isValid() || timer.elapsed() <= 2 * kShortSilenceMs;
         calls *= 2) {
        timer.start();
        m_bench->runDump("for (local i = 0; i < " + QByteArray::number(calls) +
                         "; i++) cpu_write(dev, 0x2000, 1);");
        QCOMPARE(m_bench->end, JobEnd::Done);
    }
}

// It may bring the cartridge to rest, and nothing more is read whatever the script catches.
void ScriptEndingTest::readThatIsLeftReadsNoMore()
{
    std::vector<unsigned char> buffer(1024 + kTransferSlack);
    m_bench->data = buffer.data();
    m_bench->job.romSize = 1024;
    m_bench->drive.setContent(kDumpPath, QByteArray(1024, '\x01'));
    m_bench->recorder.operationsUntilLeft = 3;
    m_bench->runDump(
        "for (local i = 0; i < 64; i++)\n"
        "    try { cpu_read(dev, 0, 16); } catch (error) { print(error); break; }\n"
        "cpu_write(dev, 0x2000, 1); print(\"at rest\"); try { cpu_read(dev, 0, 16); } catch (e) "
        "{}");
    QCOMPARE(m_bench->end, JobEnd::Left);
    QCOMPARE(m_bench->drive.reads.size(), 2);
    QCOMPARE(m_bench->drive.runs.size(), 1);
    QVERIFY(m_bench->logs().contains("the job was left"));
    QVERIFY(m_bench->logs().contains("at rest"));
    // A script that goes on for ever at rest does nothing that counts.
    m_bench->recorder.isStopped = true;
    m_bench->recorder.operationsUntilLeft = 3;
    m_bench->runDump("while (true) cpu_write(dev, 0x2000, 1);");
    QCOMPARE(m_bench->end, JobEnd::ScriptStopped);
}

void ScriptEndingTest::writeIsNeverLeft()
{
    std::vector<unsigned char> buffer(1024 + kTransferSlack);
    m_bench->data = buffer.data();
    m_bench->job.ramSize = 1024;
    m_bench->recorder.operationsUntilLeft = 1;
    m_bench->setScript("function save_write(dev, a, b) { ram_write(dev, 0, 512); "
                       "ram_write(dev, 0, 512); }");
    QVERIFY(m_bench->run(GB_WRITE_RAM));
    QCOMPARE(m_bench->recorder.operationsUntilLeft, 1); // nobody asked
}

GBDRIVER_TEST(ScriptEndingTest, core)
#include "script_ending_test.moc"
