// What a user on Linux is told when no reader is found, with and without declared drives.
#include "device/drive_advice.h"
#include "test_class.h"

#include <QtTest>

class DriveAdviceLinuxTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { qunsetenv("GBDRIVER_DRIVES"); }

    void mountedDrivesAreLookedAtUnlessSomeAreDeclared_data()
    {
        QTest::addColumn<bool>("isSet");
        QTest::newRow("unset") << false;
        QTest::newRow("empty") << true;
    }
    void mountedDrivesAreLookedAtUnlessSomeAreDeclared()
    {
        QFETCH(bool, isSet);
        if (isSet)
            qputenv("GBDRIVER_DRIVES", "");
        else
            qunsetenv("GBDRIVER_DRIVES");
        const QString advice = noReaderAdvice().join('\n');
        QVERIFY2(advice.contains("lsblk"), qPrintable(advice));
        QVERIFY2(!advice.contains("Unset"), qPrintable(advice));
        QCOMPARE(scanNotes(), QStringList());
    }

    void declaredDrivesAreNamedAsTheReason()
    {
        qputenv("GBDRIVER_DRIVES", "E=/mnt/reader");
        const QString advice = noReaderAdvice().join('\n');
        QVERIFY2(advice.contains("Unset GBDRIVER_DRIVES"), qPrintable(advice));
        QVERIFY2(!advice.contains("lsblk"), qPrintable(advice));
        QCOMPARE(scanNotes(), QStringList("GBDRIVER_DRIVES is set: only the drives that it "
                                          "declares are looked at."));
    }
};

GBDRIVER_TEST(DriveAdviceLinuxTest, core)
#include "drive_advice_linux_test.moc"
