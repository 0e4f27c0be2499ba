// The command selftest: jobs on virtual cartridges, on the user's own computer.
#include "cli/commands.h"

#include "trial/plain_text.h"
#include "trial/script_finding.h"
#include "trial/self_test_jobs.h"
#include "trust/file_sha1.h"

#include <QDir>
#include <QElapsedTimer>
#include <QSysInfo>
#include <QTextCodec>

namespace
{

void report(Reporter &reporter, const char *part, QJsonObject object)
{
    object.insert(QStringLiteral("what"), QStringLiteral("selftest"));
    object.insert(QStringLiteral("part"), QLatin1String(part));
    reporter.event("detected", object);
}

struct SystemFact {
    const char *key;
    const char *label;
    QString value;
};

QVector<SystemFact> systemFacts(const QString &scriptFolder)
{
    return {
        {"program", "Program", QStringLiteral("gbdriver-cli " GBDRIVER_VERSION)},
        {"qt", "Qt",
         QStringLiteral("%1 (built with %2)")
             .arg(QLatin1String(qVersion()), QLatin1String(QT_VERSION_STR))},
        {"os", "System", QSysInfo::prettyProductName()},
        {"kernel", "Kernel", QSysInfo::kernelType() + QLatin1Char(' ') + QSysInfo::kernelVersion()},
        {"cpu", "Processor",
         QStringLiteral("%1 (built for %2)")
             .arg(QSysInfo::currentCpuArchitecture(), QSysInfo::buildAbi())},
        {"codec", "8-bit text", QString::fromLatin1(QTextCodec::codecForLocale()->name())},
        {"scripts", "Scripts", folderText(scriptFolder)}};
}

void describeSystem(Reporter &reporter, const QString &scriptFolder)
{
    QJsonObject object;
    for (const SystemFact &fact : systemFacts(scriptFolder)) {
        object.insert(QLatin1String(fact.key), fact.value);
        reporter.answer(
            QStringLiteral("%1 %2").arg(QLatin1String(fact.label), -10).arg(fact.value));
    }
    report(reporter, "system", object);
}

void describeScripts(Reporter &reporter, const QString &scriptFolder)
{
    for (const QString &file : scriptFiles(scriptFolder)) {
        const QString sha1 = fileSha1(QDir(scriptFolder).filePath(file));
        QJsonObject object{{QStringLiteral("file"), file}};
        if (!sha1.isEmpty())
            object.insert(QStringLiteral("sha1"), sha1);
        report(reporter, "script", object);
        reporter.answer(QStringLiteral("  %1 %2").arg(file, -14).arg(
            sha1.isEmpty() ? QStringLiteral("cannot be read") : sha1));
    }
}

void describeJob(Reporter &reporter, const QString &name, const SelfTestResult &result)
{
    const bool hasPassed = result.problem.isEmpty();
    QJsonObject object{{QStringLiteral("name"), name},
                       {QStringLiteral("bytes"), result.bytes},
                       {QStringLiteral("ms"), result.timeMs},
                       {QStringLiteral("passed"), hasPassed}};
    if (!hasPassed)
        object.insert(QStringLiteral("problem"), result.problem);
    report(reporter, "job", object);
    reporter.answer(
        QStringLiteral("%1 %2 bytes %3 ms  %4")
            .arg(name, -28)
            .arg(result.bytes, 8)
            .arg(result.timeMs, 5)
            .arg(hasPassed ? QStringLiteral("pass") : QStringLiteral("FAILED: ") + result.problem));
}

void describeTotal(Reporter &reporter, int failed, qint64 timeMs)
{
    const int jobs = static_cast<int>(kSelfTestRows.size());
    report(reporter, "total",
           {{QStringLiteral("jobs"), jobs},
            {QStringLiteral("failed"), failed},
            {QStringLiteral("ms"), timeMs}});
    reporter.answer(QStringLiteral("%1 of %2 as they should be, in %3 ms")
                        .arg(jobs - failed)
                        .arg(jobs)
                        .arg(timeMs));
}

} // namespace

ExitCode runSelfTest(Reporter &reporter, const QString &scriptFolder)
{
    describeSystem(reporter, scriptFolder);
    describeScripts(reporter, scriptFolder);
    QElapsedTimer timer;
    timer.start();
    int failed = 0;
    for (const SelfTestRow &row : kSelfTestRows) {
        const SelfTestResult result = runSelfTestRow(row, scriptFolder);
        describeJob(reporter, QLatin1String(row.name), result);
        failed += result.problem.isEmpty() ? 0 : 1;
    }
    describeTotal(reporter, failed, timer.elapsed());
    return failed == 0 ? ExitCode::Done : ExitCode::DataMismatch;
}
