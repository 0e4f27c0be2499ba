#include "cli/cli_job.h"

#include "cli/progress_printer.h"
#include "device/device_link.h"
#include "worker/famicom_thread.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFileInfo>

namespace
{

void fillJobFields(FamicomThread *worker, const CliJob &job, const QString &scriptPath)
{
    worker->operate = job.operate;
    worker->file_name = job.fileName;
    worker->script_name = scriptPath;
    worker->rom_size = job.romSize;
    worker->ram_size = job.ramSize;
    worker->save_type = job.saveType;
}

// Blocks until the job has ended. Returns: its result flag.
int runWorker(FamicomThread *worker, ProgressPrinter *printer)
{
    int result = 0;
    QEventLoop loop;
    QObject::connect(worker, &FamicomThread::log, &loop,
                     [&](const QString &line) { printer->printLine(line); });
    QObject::connect(worker, &FamicomThread::set_progress, &loop, [&](int done, int maximum) {
        // The job ends with a full bar of 1 of 1; those are no bytes.
        if (maximum != 1)
            printer->showProgress(done);
    });
    QObject::connect(worker, &FamicomThread::error, &loop, [&](int flag) { result = flag; });
    QObject::connect(worker, &QThread::finished, &loop, &QEventLoop::quit);
    worker->start();
    loop.exec();
    return result;
}

// The job itself does not look whether reads failed; the cursor tells.
bool everyByteMoved(const FamicomThread &worker, ProgressPrinter *printer)
{
    const int expected = jobBufferSize(worker);
    if (worker.data_pos == expected)
        return true;
    printer->printLine(QStringLiteral("Only %1 of %2 bytes were transferred. Do not trust the "
                                      "result; check the reader's connection and try again.")
                           .arg(qMax(0, worker.data_pos))
                           .arg(expected));
    return false;
}

} // namespace

bool runCliJob(const CliJob &job, std::FILE *stream, bool isTerminal)
{
    const QString scriptPath =
        QCoreApplication::applicationDirPath() + QStringLiteral("/mapper/") + job.scriptName;
    ProgressPrinter printer(stream, isTerminal, job.romSize > 0 ? job.romSize : job.ramSize);
    if (!QFileInfo::exists(scriptPath)) {
        printer.printLine(QStringLiteral("There is no mapper script \"%1\". Install the mapper "
                                         "folder beside the program.")
                              .arg(scriptPath));
        return false;
    }
    FamicomThread worker;
    fillJobFields(&worker, job, scriptPath);
    clearLastDriveError();
    const int result = runWorker(&worker, &printer);
    printer.finish();
    const bool succeeded = result == 1 && everyByteMoved(worker, &printer);
    if (!succeeded && !lastDriveError().empty())
        printer.printLine(QString::fromLocal8Bit(lastDriveError().c_str()));
    printer.printLine(succeeded ? QStringLiteral(">Success!")
                                : QStringLiteral(">Operation failure."));
    return succeeded;
}
