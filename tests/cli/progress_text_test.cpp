// Progress as a line of text.
#include "cli/progress_text.h"

#include "test_class.h"

#include <QtTest>

namespace
{
constexpr qint64 kKiB = 1024;
constexpr qint64 kMiB = 1024 * 1024;
} // namespace

class ProgressTextTest : public QObject
{
    Q_OBJECT

private slots:
    void percent_data()
    {
        QTest::addColumn<qint64>("done");
        QTest::addColumn<qint64>("total");
        QTest::addColumn<int>("percent");
        const auto add = [](const char *name, qint64 done, qint64 total, int percent) {
            QTest::newRow(name) << done << total << percent;
        };
        add("nothing", 0, 100, 0);
        add("half", 50, 100, 50);
        add("rounded down", 999, 1000, 99);
        add("all", 1000, 1000, 100);
        add("more than all", 1001, 1000, 100);
        add("below zero", -1, 1000, 0);
        add("no total", 0, 0, 0);
        add("done of no total", 5, 0, 0);
        add("total below zero", 5, -1, 0);
        add("largest cartridge", 64 * kMiB - 1, 64 * kMiB, 99);
        add("beyond 32 bits", 3000 * kMiB, 6000 * kMiB, 50);
    }
    void percent()
    {
        QFETCH(qint64, done);
        QFETCH(qint64, total);
        QTEST(progressPercent(done, total), "percent");
    }

    void text_data()
    {
        QTest::addColumn<qint64>("done");
        QTest::addColumn<qint64>("total");
        QTest::addColumn<qint64>("elapsedMs");
        QTest::addColumn<QString>("text");
        const auto add = [](const char *name, qint64 done, qint64 total, qint64 elapsedMs,
                            const char *text) {
            QTest::newRow(name) << done << total << elapsedMs << text;
        };
        add("start", 0, kMiB, 0, "[............]   0%  0 B of 1.00 MiB");
        add("nothing after a while", 0, kMiB, 5000, "[............]   0%  0 B of 1.00 MiB");
        add("no time passed", kKiB, 2 * kKiB, 0, "[######......]  50%  1.0 KiB of 2.0 KiB");
        add("bytes", 100, 1000, 1000, "[#...........]  10%  100 B of 1000 B  100 B/s  0:09 left");
        add("kibibytes", 512 * kKiB, 1024 * kKiB, 1000,
            "[######......]  50%  512.0 KiB of 1.00 MiB  512.0 KiB/s  0:01 left");
        add("mebibytes", 2 * kMiB, 8 * kMiB, 1000,
            "[###.........]  25%  2.00 MiB of 8.00 MiB  2.00 MiB/s  0:03 left");
        add("minutes", 1 * kKiB, 126 * kKiB, 1000,
            "[............]   0%  1.0 KiB of 126.0 KiB  1.0 KiB/s  2:05 left");
        add("started second counts whole", 10 * kKiB, 15 * kKiB, 1000,
            "[#######.....]  66%  10.0 KiB of 15.0 KiB  10.0 KiB/s  0:01 left");
        add("end", 8 * kMiB, 8 * kMiB, 4000,
            "[############] 100%  8.00 MiB of 8.00 MiB  2.00 MiB/s  0:00 left");
        add("more than all", 9 * kMiB, 8 * kMiB, 4000,
            "[############] 100%  8.00 MiB of 8.00 MiB  2.00 MiB/s  0:00 left");
        add("below zero", -1, 8 * kMiB, 4000, "[............]   0%  0 B of 8.00 MiB");
        add("no total", 5, 0, 1000, "[............]   0%  0 B of 0 B");
    }
    void text()
    {
        QFETCH(qint64, done);
        QFETCH(qint64, total);
        QFETCH(qint64, elapsedMs);
        QTEST(progressText(done, total, elapsedMs), "text");
    }

    void barGrowsWithoutGoingBack()
    {
        int before = 0;
        for (qint64 done = 0; done <= 1000; ++done) {
            const int filled = progressText(done, 1000, 0).count('#');
            QVERIFY(filled == before || filled == before + 1);
            before = filled;
        }
        QCOMPARE(before, 12);
    }
};

GBDRIVER_TEST(ProgressTextTest, core)
#include "progress_text_test.moc"
