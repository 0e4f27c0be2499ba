// What "drives" says about the variables that choose the drives, on Linux.
#include "cli/commands.h"

#include "device/device_link.h"
#include "device/drive_advice.h"
#include "report_capture.h"
#include "test_class.h"

#include <QTemporaryDir>
#include <QtTest>

class DriveListLinuxTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        qunsetenv("GBDRIVER_DRIVES");
        qunsetenv("GBDRIVER_VIRTUAL_READER");
    }

    void declaredFolderIsShown()
    {
        const QTemporaryDir folder;
        qputenv("GBDRIVER_DRIVES", "E=" + folder.path().toLocal8Bit() + ":MY LABEL");
        ReportCapture capture(OutputStyle::Text);
        QCOMPARE(drives(&capture), ExitCode::Done);
        QVERIFY(capture.answers().startsWith("E: removable drive, label \"MY LABEL\", " +
                                             folder.path() +
                                             "\n   taken, though it has no "
                                             "identity file: is it a reader?\n"));
        QCOMPARE(capture.messages(), QString("GBDRIVER_DRIVES is set: only the drives that it "
                                             "declares are looked at.\n"));
    }

    void declarationThatLeadsNowhereIsNamed()
    {
        const QTemporaryDir folder;
        qputenv("GBDRIVER_DRIVES", "E=" + folder.filePath("nothing").toLocal8Bit());
        ReportCapture capture(OutputStyle::Text);
        QCOMPARE(drives(&capture), ExitCode::NoReader);
        QVERIFY(capture.messages().endsWith('\n' + noReaderAdvice().join('\n') + '\n'));
        QVERIFY(capture.messages().contains("Unset GBDRIVER_DRIVES"));
    }

    void virtualReaderIsNamedInstead()
    {
        const QTemporaryDir folder;
        qputenv("GBDRIVER_DRIVES", "E=" + folder.path().toLocal8Bit());
        qputenv("GBDRIVER_VIRTUAL_READER", "demo");
        ReportCapture capture(OutputStyle::Text);
        QCOMPARE(drives(&capture), ExitCode::Done);
        QCOMPARE(
            capture.messages(),
            QString("GBDRIVER_VIRTUAL_READER is set: only the virtual reader is looked at.\n"));
    }

private:
    static ExitCode drives(ReportCapture *capture)
    {
        const auto backend = createPlatformBackend();
        setDriveBackend(backend.get());
        const ExitCode code = runDrives(capture->reporter());
        setDriveBackend(nullptr);
        return code;
    }
};

GBDRIVER_TEST(DriveListLinuxTest, core)
#include "drive_list_linux_test.moc"
