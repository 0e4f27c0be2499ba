// A thousand jobs of all kinds and ends in one process: no more memory, descriptors or threads than
// a few of them take.
#include "job_bench.h"
#include "test_class.h"

#include "worker/job_run.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <malloc.h>

// Of the sanitizer, if there is one: its memory stays in use for a while after it was freed.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace
{

// Eight codes of jobs with each of four scripts. What is compared ends with the same job.
constexpr int kRound = 32;
constexpr int kJobs = 32 * kRound;
constexpr int kWarmUp = 3 * kRound;       // what is made once and kept is there by then
constexpr qint64 kSlackBytes = 16 * 1024; // a thousandth of it a job would show

struct Usage {
    qint64 memory = 0;
    int descriptors = 0;
    int threads = 0;
};

Usage currentUsage()
{
    Usage usage;
    usage.memory = static_cast<qint64>(__sanitizer_get_current_allocated_bytes != nullptr
                                           ? __sanitizer_get_current_allocated_bytes()
                                           : mallinfo2().uordblks);
    const auto entries = [](const QString &folder) {
        return static_cast<int>(QDir(folder).entryList(QDir::AllEntries | QDir::System).size());
    };
    usage.descriptors = entries("/proc/self/fd");
    usage.threads = entries("/proc/self/task");
    return usage;
}

class SilentListener : public JobListener
{
public:
    void onLine(const QString & /*line*/) override {}
    void onProgress(int /*doneBytes*/, int /*maximum*/) override {}
    bool isStopWanted() override { return false; }
};

} // namespace

class ManyJobsTest : public QObject
{
    Q_OBJECT

private slots:
    void nothingGrows_data();
    void nothingGrows();

private:
    static void runOne(JobBench *bench, int number, bool onThread);
};

// Every kind of job, and ends other than the good one.
void ManyJobsTest::runOne(JobBench *bench, int number, bool onThread)
{
    static const QByteArray kScripts[] = {kMovingScript, "throw \"not here\";", "no program {",
                                          "local all = []; while (true) all.append(array(1000));"};
    const int operate = number % 8;
    bench->setScript(kScripts[number / 8 % 4]);
    bench->job.operate = operate;
    bench->job.file_name = bench->path(operate % 2 == 0 ? "out" : "in");
    if (onThread) {
        bench->run(operate);
        return;
    }
    SilentListener listener;
    runJob(bench->job.job(), QByteArray(8192, 'i'), listener);
}

void ManyJobsTest::nothingGrows_data()
{
    QTest::addColumn<bool>("onThread");
    QTest::newRow("window") << true;
    QTest::newRow("command line") << false;
}

void ManyJobsTest::nothingGrows()
{
    QFETCH(bool, onThread);
    JobBench bench;
    bench.cartridge().looksUntilErased = 0;
    bench.addFile("in", QByteArray(8192, 'i'));
    bench.job.rom_size = bench.job.ram_size = 8192;
    Usage begin;
    for (int number = 0; number < kJobs; ++number) {
        if (number == kWarmUp)
            begin = currentUsage();
        runOne(&bench, number, onThread);
        bench.events.clear();
        bench.reader().clearOperations();
        bench.cartridge().written.clear();
        bench.cartridge().programmed.clear();
    }
    // A thread that has ended stays in the list for a moment.
    QTRY_VERIFY(currentUsage().threads <= begin.threads);
    const Usage end = currentUsage();
    QCOMPARE(end.descriptors, begin.descriptors);
    qInfo("%lld bytes more after %d jobs", end.memory - begin.memory, kJobs - kWarmUp);
    QVERIFY(end.memory - begin.memory < kSlackBytes);
}

GBDRIVER_TEST(ManyJobsTest, core)
#include "many_jobs_test.moc"
