// Progress as a line of text, and what the printer writes to a terminal and to anything else.
#include "cli/progress_printer.h"

#include "output_file.h"
#include "test_class.h"

#include <QtTest>

namespace
{

constexpr qint64 kKiB = 1024;
constexpr qint64 kMiB = 1024 * 1024;

constexpr bool kTerminal = true;
constexpr bool kFile = false;
constexpr char kClearLine[] = "\033[K";

} // namespace

class ProgressPrinterTest : public QObject
{
    Q_OBJECT

private slots:
    void percentOfTheTotal_data()
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
    void percentOfTheTotal()
    {
        QFETCH(qint64, done);
        QFETCH(qint64, total);
        QTEST(progressPercent(done, total), "percent");
    }

    void progressAsText_data()
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
    void progressAsText()
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

    void linesEndWithOneLineBreak_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("printed");
        QTest::newRow("plain") << "Start dump rom..."
                               << "Start dump rom...\n";
        QTest::newRow("one break") << "dump core script error\n"
                                   << "dump core script error\n";
        QTest::newRow("several") << "end\n\n\n"
                                 << "end\n";
        QTest::newRow("inside") << "\nCALLSTACK\n"
                                << "\nCALLSTACK\n";
        QTest::newRow("empty") << ""
                               << "\n";
        QTest::newRow("percent signs") << "100% %s %n"
                                       << "100% %s %n\n";
    }
    void linesEndWithOneLineBreak()
    {
        QFETCH(QString, line);
        const OutputFile output;
        ProgressPrinter printer(output.stream(), kFile, 100);
        printer.printLine(line);
        QTEST(output.text(), "printed");
    }

    void fileGetsALineForEveryTenth()
    {
        const OutputFile output;
        ProgressPrinter printer(output.stream(), kFile, 1000);
        for (int done = 0; done <= 1000; ++done)
            printer.showProgress(done);
        printer.finish();

        const QStringList lines = output.text().split('\n');
        QCOMPARE(lines.size(), 12); // 0 %, 10 %, ... 100 %, and nothing behind the last break
        for (int tenth = 0; tenth <= 10; ++tenth)
            QVERIFY2(lines[tenth].contains(QString("] %1%  ").arg(tenth * 10, 3)),
                     qPrintable(lines[tenth]));
        QCOMPARE(lines.last(), QString());
    }

    void fileGetsNoTerminalCodes()
    {
        const OutputFile output;
        ProgressPrinter printer(output.stream(), kFile, 100);
        printer.showProgress(50);
        printer.printLine("text");
        printer.finish();
        QVERIFY(!output.text().contains('\r'));
        QVERIFY(!output.text().contains('\033'));
    }

    void terminalIsDrawnOver()
    {
        const OutputFile output;
        ProgressPrinter printer(output.stream(), kTerminal, 100);
        printer.showProgress(0);
        printer.showProgress(100);
        printer.finish();

        const QString text = output.text();
        QCOMPARE(text.count('\r'), 2);
        QCOMPARE(text.count(kClearLine), 2);
        QCOMPARE(text.count('\n'), 1);
        QVERIFY(text.startsWith("\r["));
        QVERIFY(text.endsWith(QString(kClearLine) + '\n'));
        QVERIFY(text.indexOf("  0%") < text.indexOf("100%"));
    }

    void logLineEndsTheBarFirst()
    {
        const OutputFile output;
        ProgressPrinter printer(output.stream(), kTerminal, 100);
        printer.showProgress(100);
        printer.printLine("Dump rom finish.");
        printer.finish();
        QVERIFY2(output.text().endsWith(QString(kClearLine) + "\nDump rom finish.\n"),
                 qPrintable(output.text()));
    }

    void finishWithoutABarPrintsNothing()
    {
        const OutputFile output;
        ProgressPrinter printer(output.stream(), kTerminal, 100);
        printer.finish();
        printer.finish();
        QCOMPARE(output.text(), QString());
    }

    void nothingIsShownOfNothing_data()
    {
        QTest::addColumn<bool>("isTerminal");
        QTest::newRow("terminal") << kTerminal;
        QTest::newRow("file") << kFile;
    }
    void nothingIsShownOfNothing()
    {
        QFETCH(bool, isTerminal);
        const OutputFile output;
        ProgressPrinter printer(output.stream(), isTerminal, 0);
        printer.showProgress(0);
        printer.showProgress(10);
        printer.finish();
        QCOMPARE(output.text(), QString());
    }

    void otherLettersArePrinted()
    {
        const OutputFile output;
        ProgressPrinter printer(output.stream(), kFile, 0);
        const QString line = QString::fromUtf8("Read file :/home/jo/Spiele/Übung.sav");
        printer.printLine(line);
        QCOMPARE(output.text(), line + '\n');
    }
};

GBDRIVER_TEST(ProgressPrinterTest, core)
#include "progress_printer_test.moc"
