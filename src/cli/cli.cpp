#include "cli/cli.h"

#include "cli/check_script.h"
#include "cli/cli_detection.h"
#include "cli/cli_flash.h"
#include "cli/cli_info.h"
#include "cli/cli_job.h"
#include "cli/cli_options.h"
#include "cli/one_drive_backend.h"
#include "cli/terminal.h"
#include "device/device_link.h"
#include "virtual/backend_choice.h"
#include "worker/famicom_thread.h"

#include <QCoreApplication>

#include <cstdio>

namespace
{

constexpr int kSuccess = 0;
constexpr int kFailure = 1;

void printError(const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stderr);
}

// Ends a job that the report can not complete.
bool refuseJob(const CartridgeValues &found, const QString &problem)
{
    const QString values = describeValues(found);
    printError(QStringLiteral("Found: %1.\n%2\nTry \"gbdriver-cli --help\". The cartridge was only "
                              "looked at.\n")
                   .arg(values.isEmpty() ? QStringLiteral("nothing") : values, problem));
    return false;
}

// Looks at the cartridge and completes what the user said. Returns: false if something is missing
// still; it has been printed.
bool detectJob(const CliOptions &options, CliJob *job)
{
    const CartridgeReport report =
        detectCartridge([](const QString &line) { printError(line + QLatin1Char('\n')); });
    const CartridgeValues found = valuesFound(report);
    if (report.outcome == ReportOutcome::NoReader || report.outcome == ReportOutcome::NoMode ||
        report.outcome == ReportOutcome::ShortRead)
        return false;
    if (found.system && options.values.system && found.system != options.values.system)
        return refuseJob(found, QStringLiteral("The cartridge is of another system than --system "
                                               "says."));
    const QString danger = dangerOf(report, *options.command);
    if (!danger.isEmpty())
        return refuseJob(found, danger);
    const CartridgeValues values = mergeValues(options.values, found);
    QString problem;
    if (!completeJob(*options.command, options.path, values, job, &problem))
        return refuseJob(found, problem);
    printError(QStringLiteral("Using: %1.\n").arg(describeValues(values)));
    for (const QString &doubt : doubtsAbout(report, *options.command, values))
        printError(doubt + QLatin1Char('\n'));
    return true;
}

bool runRequest(const CliOptions &options)
{
    const bool isTerminal = standardErrorIsTerminal();
    if (options.request == CliRequest::Info)
        return runCliInfo(options.asJson, options.isQuick, isTerminal);
    CliJob job;
    QString problem;
    if (options.looks
            ? !detectJob(options, &job)
            : !completeJob(*options.command, options.path, options.values, &job, &problem))
        return false;
    const auto printLine = [](const QString &line) { printError(line + QLatin1Char('\n')); };
    if (job.operate == GB_WRITE_FLASH && !probeForFlashJob(&job, printLine))
        return false;
    return runCliJob(job, stderr, isTerminal);
}

int runOn(DriveBackend &backend, const CliOptions &options)
{
    const bool isOneDrive = options.driveLetter != 0;
    OneDriveBackend oneDrive(backend, isOneDrive ? options.driveLetter : 'A');
    setDriveBackend(isOneDrive ? static_cast<DriveBackend *>(&oneDrive) : &backend);
    const bool succeeded = runRequest(options);
    setDriveBackend(nullptr);
    return succeeded ? kSuccess : kFailure;
}

} // namespace

int runCli(int &argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const CliOptions options = parseCliOptions(QCoreApplication::arguments());
    const bool isHelp = options.request == CliRequest::ShowText;
    if (isHelp || options.request == CliRequest::Refuse) {
        std::fputs(options.text.toLocal8Bit().constData(), isHelp ? stdout : stderr);
        return isHelp ? kSuccess : kFailure;
    }
    if (options.request == CliRequest::CheckScript)
        return runCheckScript(options.path, options.scriptKind) ? kSuccess : kFailure;
    if (options.request != CliRequest::Info && options.command == nullptr) {
        std::fprintf(stderr, "gbdriver-cli: this build can not do that yet.\n");
        return kFailure;
    }
    const ChosenBackend chosen = chooseDriveBackend(qgetenv(kVirtualReaderVariable).constData());
    if (chosen.backend() == nullptr) {
        std::fprintf(stderr, "gbdriver-cli: %s\n", chosen.error.c_str());
        return kFailure;
    }
    return runOn(*chosen.backend(), options);
}
