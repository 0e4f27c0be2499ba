#include "process_run.h"

#include <QOperatingSystemVersion>
#include <QProcess>

namespace
{

constexpr int kDeadlineMs = 120 * 1000;

} // namespace

QString printedText(const QByteArray &bytes)
{
    QString text = QString::fromLocal8Bit(bytes);
    if (QOperatingSystemVersion::currentType() == QOperatingSystemVersion::Windows)
        text.replace("\r\n", "\n");
    return text;
}

ProcessRun runProcess(const QString &program, const QStringList &arguments,
                      const QProcessEnvironment &environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    ProcessRun run;
    if (!process.waitForFinished(kDeadlineMs)) {
        run.errors = (program + ": " + process.errorString()).toLocal8Bit();
        process.kill();
        process.waitForFinished();
        return run;
    }
    run.crashed = process.exitStatus() != QProcess::NormalExit;
    run.exitCode = run.crashed ? -1 : process.exitCode();
    run.output = process.readAllStandardOutput();
    run.errors = process.readAllStandardError();
    return run;
}
