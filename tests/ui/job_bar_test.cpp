// What the main tab's progress bar says: a percentage behind what the job is at, or for how long it
// has waited where there is none.
#include "ui/job_bar.h"

#include "test_class.h"

#include <QtTest>

class JobBarTest : public QObject
{
    Q_OBJECT

private slots:
    void percentageStandsBehindTheStep();
    void waitingTellsItsTime();
    void maximumEndsTheWaiting();
    void everyWaitingBeginsAnew();
};

void JobBarTest::percentageStandsBehindTheStep()
{
    JobBar bar(nullptr);
    bar.setRange(0, 8192);
    bar.setValue(4096);
    QCOMPARE(bar.text(), QString("50%"));
    bar.showStep("Keeping a backup");
    QCOMPARE(bar.text(), QString("Keeping a backup 50%"));
    bar.setValue(8192);
    QCOMPARE(bar.text(), QString("Keeping a backup 100%"));
    bar.showStep(QString());
    QCOMPARE(bar.text(), QString("100%"));
}

void JobBarTest::waitingTellsItsTime()
{
    JobBar bar(nullptr);
    bar.showWaiting("Erasing");
    QCOMPARE(bar.minimum(), 0);
    QCOMPARE(bar.maximum(), 0); // so the style shows it busy
    QVERIFY2(QRegularExpression("^Erasing 0:0\\d$").match(bar.text()).hasMatch(),
             qPrintable(bar.text()));
    QTRY_VERIFY(QRegularExpression("^Erasing 0:0[1-9]$").match(bar.text()).hasMatch());
}

void JobBarTest::maximumEndsTheWaiting()
{
    JobBar bar(nullptr);
    bar.showWaiting("Erasing");
    bar.setRange(0, 4);
    bar.setValue(1);
    QCOMPARE(bar.text(), QString("25%"));
}

void JobBarTest::everyWaitingBeginsAnew()
{
    JobBar bar(nullptr);
    bar.showWaiting("Erasing");
    QTRY_VERIFY(!bar.text().endsWith("0:00"));
    bar.showWaiting("Looking");
    QCOMPARE(bar.text(), QString("Looking 0:00"));
}

GBDRIVER_TEST(JobBarTest, gui)
#include "job_bar_test.moc"
