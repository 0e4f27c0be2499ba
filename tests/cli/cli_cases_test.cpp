// The built program, case by case: exit code, answers, events and what is left on the computer.
#include "cli_cases.h"

#include "cli/command_table.h"
#include "test_class.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

class CliCasesTest : public QObject
{
    Q_OBJECT

private slots:
    void noReader_data() { addCases(noReaderCases()); }
    void noReader() { check(); }
    void usage_data() { addCases(usageCases()); }
    void usage() { check(); }
    void look_data() { addCases(lookCases()); }
    void look() { check(); }
    void read_data() { addCases(readCases()); }
    void read() { check(); }
    void use_data() { addCases(usingCases()); }
    void use() { check(); }
    void verdict_data() { addCases(verdictCases()); }
    void verdict() { check(); }
    void write_data() { addCases(writeCases()); }
    void write() { check(); }
    void script_data() { addCases(scriptCases()); }
    void script() { check(); }
    void everyCodeHasARow();
#ifdef VALIDATOR
    void codesAreDocumented();
    void eventsAreDescribed();
#endif

private:
    void check()
    {
        QFETCH(CliCase, row);
        const QStringList problems = problemsOf(row, &m_runs);
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join('\n')));
        m_codes << row.code;
        m_ends << qMakePair(row.arguments.section(' ', 0, 0), row.code);
    }

    QVector<EventRun> m_runs;
    QList<ExitCode> m_codes;
    QVector<QPair<QString, ExitCode>> m_ends; // of commands
};

// cli_flash_test provokes Cancelled, cli_faulty_reader_test what a reader does that does not
// answer, reader_refusal_test another program that uses it.
void CliCasesTest::everyCodeHasARow()
{
    for (const ExitCodeRow &row : kExitCodes)
        QVERIFY2(row.code == ExitCode::Cancelled || row.code == ExitCode::NoAnswer ||
                     row.code == ExitCode::InUse || m_codes.contains(row.code),
                 row.word);
}

#ifdef VALIDATOR
// A command's help and manual page name all codes that it was seen to end with.
void CliCasesTest::codesAreDocumented()
{
    int commands = 0;
    for (const auto &end : m_ends) {
        const CommandRow *row = findCommand(end.first);
        if (row == nullptr) // a case of usage
            continue;
        ++commands;
        const bool isListed = std::find(row->exitCodes.begin(), row->exitCodes.end(), end.second) !=
                              row->exitCodes.end();
        QVERIFY2(isListed, qPrintable(end.first + ' ' + rowOf(end.second).word));
    }
    QVERIFY(commands > 0);
}

void CliCasesTest::eventsAreDescribed()
{
    QStringList seen;
    const QStringList problems = problemsOfEvents(m_runs, &seen);
    for (const QString &problem : problems)
        qWarning("%s", qPrintable(problem));
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join('\n')));
    // What nobody has ever seen may be wrong.
    const QJsonObject schema = QJsonDocument::fromJson(contentOf(SCHEMA)).object();
    const QJsonArray events = schema["oneOf"].toArray();
    QVERIFY(!events.isEmpty());
    for (const QJsonValue &event : events) {
        const QString name = event.toObject()["$ref"].toString().section('/', -1);
        QVERIFY2(seen.contains(name), qPrintable(name));
    }
}
#endif

GBDRIVER_TEST(CliCasesTest, core)
#include "cli_cases_test.moc"
