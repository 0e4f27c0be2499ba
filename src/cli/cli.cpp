#include "cli/cli.h"

#include "cli/cli_job.h"
#include "cli/cli_options.h"
#include "cli/one_drive_backend.h"
#include "cli/terminal.h"
#include "device/device_link.h"
#include "virtual/backend_choice.h"

#include <QCoreApplication>

#include <cstdio>

namespace
{

constexpr int kSuccess = 0;
constexpr int kFailure = 1;

int runOn(DriveBackend &backend, const CliJob &job)
{
    OneDriveBackend oneDrive(backend, job.driveLetter != 0 ? job.driveLetter : 'A');
    setDriveBackend(job.driveLetter != 0 ? static_cast<DriveBackend *>(&oneDrive) : &backend);
    const bool succeeded = runCliJob(job, stderr, standardErrorIsTerminal());
    setDriveBackend(nullptr);
    return succeeded ? kSuccess : kFailure;
}

} // namespace

int runCli(int &argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const CliOptions options = parseCliOptions(QCoreApplication::arguments());
    if (options.request != CliRequest::RunJob) {
        const bool isHelp = options.request == CliRequest::ShowText;
        std::fputs(options.text.toLocal8Bit().constData(), isHelp ? stdout : stderr);
        return isHelp ? kSuccess : kFailure;
    }
    const ChosenBackend chosen = chooseDriveBackend(qgetenv(kVirtualReaderVariable).constData());
    if (chosen.backend() == nullptr) {
        std::fprintf(stderr, "gbdriver-cli: %s\n", chosen.error.c_str());
        return kFailure;
    }
    return runOn(*chosen.backend(), options.job);
}
