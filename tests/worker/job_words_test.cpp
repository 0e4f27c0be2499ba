// The one line that tells why a job failed.
#include "worker/job_words.h"

#include "test_class.h"

#include <QtTest>

Q_DECLARE_METATYPE(JobEnd)

class JobWordsTest : public QObject
{
    Q_OBJECT

private slots:
    void endsOfTheHostHaveALine()
    {
        const QMap<JobEnd, QString> lines = {{JobEnd::NoReader, "Can not found device."},
                                             {JobEnd::NoMode, "Initialize device error."},
                                             {JobEnd::ReaderInUse, "Initialize device error."},
                                             {JobEnd::NotTheReader, "Initialize device error."},
                                             {JobEnd::NoMemory, "Not enough memory."},
                                             {JobEnd::InputNotOpened, "Open File error."},
                                             {JobEnd::InputNotRead, "Read File error."},
                                             {JobEnd::OutputNotWritten, "Save file error."}};
        for (int end = int(JobEnd::Done); end <= int(JobEnd::OutputNotWritten); ++end)
            QCOMPARE(jobEndLine(static_cast<JobEnd>(end)), lines.value(static_cast<JobEnd>(end)));
    }

    void reasonIsWhatTellsMost_data()
    {
        QTest::addColumn<JobEnd>("end");
        QTest::addColumn<QString>("scriptError");
        QTest::addColumn<QString>("driveError");
        QTest::addColumn<QString>("failedOperation");
        QTest::addColumn<QString>("reason");
        const auto add = [](const char *name, JobEnd end, const char *scriptError,
                            const char *driveError, const char *reason,
                            const char *failedOperation = "") {
            QTest::newRow(name) << end << QString(scriptError) << QString(driveError)
                                << QString(failedOperation) << QString(reason);
        };
        add("nothing", JobEnd::Done, "", "", "");
        add("error of a script", JobEnd::Refused, "no bank", "", "no bank");
        add("error of a script, and of the drive", JobEnd::ScriptFailed, "no bank", "drive E: full",
            "no bank");
        add("error of a script over several lines", JobEnd::Refused, " no bank\n", "", "no bank");
        add("error of the drive", JobEnd::ScriptFailed, "", "drive E: full", "drive E: full");
        add("compiler", JobEnd::ScriptFailed,
            "/home/a b/x.nut line = (3) column = (5) : error expected ';'", "",
            "x.nut line = (3) column = (5) : error expected ';'");
        add("compiler, Windows", JobEnd::ScriptFailed,
            "C:\\Users\\a b\\x.nut line = (3) column = (5) : error no", "",
            "x.nut line = (3) column = (5) : error no");
        add("slash in what a script says", JobEnd::Refused, "give 1/2 or 2/2", "",
            "give 1/2 or 2/2");
        add("no reader", JobEnd::NoReader, "", "", "Can not found device.");
        add("error that the script caught", JobEnd::Done, "", "drive E: full", "cpu_write: no",
            "cpu_write: no");
        // A scan asks drives that are no readers.
        add("no reader, other drives", JobEnd::NoReader, "", "drive D: no medium",
            "Can not found device.");
    }
    void reasonIsWhatTellsMost()
    {
        QFETCH(JobEnd, end);
        QFETCH(QString, scriptError);
        QFETCH(QString, driveError);
        QFETCH(QString, failedOperation);
        JobResult result;
        result.end = end;
        result.scriptError = scriptError;
        result.driveError = driveError;
        result.failedOperation = failedOperation;
        QTEST(reasonOf(result), "reason");
    }
};

GBDRIVER_TEST(JobWordsTest, none)
#include "job_words_test.moc"
