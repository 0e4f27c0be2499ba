// Runs one job of the command line: the same worker as the window's, in an event loop of its own,
// with what it says and how far it is told to the reporter.
//
// Thread: the main thread, which needs a QCoreApplication; blocks until the job has ended. The
// drive backend of the process must be set.
#pragma once

#include "cli/cli_options.h"
#include "cli/exit_code.h"
#include "cli/reporter.h"

#include <QByteArray>

enum class JobLog {
    Told,
    ToldOnFailure // steps around the job that the user asked for
};

struct JobResult {
    ExitCode code = ExitCode::Done; // never Cancelled unless the job itself was cut short
    QByteArray sha1;                // of a dump, 20 bytes
};

// `phase`: see Reporter::startPhase().
// A job is a success only if every byte was moved and the drive reported no error; the worker alone
// does not look at either. What failed is told as a problem.
JobResult runJob(const CliJob &job, const char *phase, JobLog log, Reporter &reporter);

// The file that a dump has left at `path`. Returns: false with the reason in `*problem` if it can not
// be read or is not what was transferred, whose SHA-1 the job's result has.
bool readTransferred(const QString &path, const QByteArray &sha1, QByteArray *bytes,
                     QString *problem);

// runJob() into a temporary file. `*bytes` becomes what was read; unchanged if the job failed.
JobResult readToMemory(const CliJob &job, const char *phase, JobLog log, Reporter &reporter,
                       QByteArray *bytes);

// runJob() with `bytes` as the file that is written.
JobResult writeFromMemory(const CliJob &job, const QByteArray &bytes, const char *phase, JobLog log,
                          Reporter &reporter);
