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

// Where the lines of a job go: to the printer at once, or nowhere unless the job fails.
class JobLog
{
public:
    JobLog(ProgressPrinter *printer, CliJobOutput output) : m_printer(printer), m_output(output) {}

    void add(const QString &line)
    {
        if (m_output == CliJobOutput::LogAndProgress)
            m_printer->printLine(line);
        else
            m_kept << line;
    }

    void finish(bool succeeded)
    {
        m_printer->finish();
        if (succeeded)
            return;
        for (const QString &line : m_kept)
            m_printer->printLine(line);
    }

private:
    ProgressPrinter *m_printer;
    CliJobOutput m_output;
    QStringList m_kept;
};

// Blocks until the job has ended. Returns: its result flag.
int runWorker(FamicomThread *worker, ProgressPrinter *printer, JobLog *log)
{
    int result = 0;
    QEventLoop loop;
    QObject::connect(worker, &FamicomThread::log, &loop,
                     [&](const QString &line) { log->add(line); });
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

// The job itself does not look whether reads failed; the cursor tells. Failed writes leave it
// where it belongs, but they leave their error with the device link.
bool everyByteMoved(const FamicomThread &worker, JobLog *log)
{
    const int expected = jobBufferSize(worker);
    if (worker.data_pos == expected)
        return true;
    log->add(QStringLiteral("Only %1 of %2 bytes were transferred. Do not trust the result; check "
                            "the reader's connection and try again.")
                 .arg(qMax(0, worker.data_pos))
                 .arg(expected));
    return false;
}

} // namespace

bool runCliJob(const CliJob &job, std::FILE *stream, bool isTerminal, CliJobOutput output)
{
    const QString scriptPath =
        QCoreApplication::applicationDirPath() + QStringLiteral("/mapper/") + job.scriptName;
    ProgressPrinter printer(stream, isTerminal, job.romSize > 0 ? job.romSize : job.ramSize);
    JobLog log(&printer, output);
    bool succeeded = false;
    if (!QFileInfo::exists(scriptPath)) {
        log.add(QStringLiteral("There is no mapper script \"%1\". Install the mapper folder "
                               "beside the program.")
                    .arg(scriptPath));
    } else {
        FamicomThread worker;
        fillJobFields(&worker, job, scriptPath);
        clearLastDriveError();
        const int result = runWorker(&worker, &printer, &log);
        succeeded = result == 1 && everyByteMoved(worker, &log) && lastDriveError().empty();
        if (!lastDriveError().empty())
            log.add(QString::fromLocal8Bit(lastDriveError().c_str()));
        log.add(succeeded ? QStringLiteral(">Success!") : QStringLiteral(">Operation failure."));
    }
    log.finish(succeeded);
    return succeeded;
}
