// The built program on a drive that has the reader's files but answers wrongly, too little or not
// at all.
#include "cli_cases.h"

#include "test_class.h"

#include <QtTest>

class CliFaultyReaderTest : public QObject
{
    Q_OBJECT

private slots:
    void endsAsItShould_data() { addCases(faultyReaderCases()); }
    void endsAsItShould()
    {
        QFETCH(CliCase, row);
        const QStringList problems = problemsOf(row, &m_runs);
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join('\n')));
        m_isUnanswered |= row.code == ExitCode::NoAnswer;
    }

    void everyCodeHasARow() { QVERIFY(m_isUnanswered); }

#ifdef VALIDATOR
    void eventsAreDescribed()
    {
        QStringList seen;
        const QStringList problems = problemsOfEvents(m_runs, &seen);
        for (const QString &problem : problems)
            qWarning("%s", qPrintable(problem));
        QVERIFY(problems.isEmpty());
    }
#endif

private:
    QVector<EventRun> m_runs;
    bool m_isUnanswered = false;
};

GBDRIVER_TEST(CliFaultyReaderTest, core)
#include "cli_faulty_reader_test.moc"
