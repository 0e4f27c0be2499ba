// What the printer writes to a terminal and to anything else.
#include "cli/progress_printer.h"

#include "output_file.h"
#include "test_class.h"

#include <QtTest>

namespace
{

constexpr bool kTerminal = true;
constexpr bool kFile = false;
constexpr char kClearLine[] = "\033[K";

} // namespace

class ProgressPrinterTest : public QObject
{
    Q_OBJECT

private slots:
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
