#include "cli/cli_job.h"

#include "cli/interrupt.h"
#include "cli/progress_printer.h"
#include "device/device_link.h"
#include "worker/famicom_thread.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFileInfo>
#include <QTimer>

namespace
{

constexpr int kInterruptPollMs = 50;

void fillJobFields(FamicomThread *worker, const CliJob &job, const QString &scriptPath)
{
    worker->operate = job.operate;
    worker->file_name = job.fileName;
    worker->script_name = scriptPath;
    worker->rom_size = job.romSize;
    worker->ram_size = job.ramSize;
    worker->save_type = job.saveType;
    worker->flash_width = job.flashWidth;
}

qint64 bytesToMove(const CliJob &job)
{
    if (job.operate == GB_WRITE_FLASH || job.operate == GBA_WRITE_FLASH)
        return QFileInfo(job.fileName).size();
    return job.romSize > 0 ? job.romSize : job.ramSize;
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

// A job can only stop while it waits for an erase; anything else it finishes, because half a save
// or half a ROM is worth nothing. The flag is raised again and again, since a job that has only
// just been started clears it.
void passOnInterrupt(FamicomThread *worker, JobLog *log)
{
    if (!wasInterrupted())
        return;
    if (worker->cancel_flag.load(std::memory_order_relaxed) == 0)
        log->add(QStringLiteral("Asked to stop. A job stops only while it waits for an erase; else "
                                "it is finished first. Press Ctrl-C again to end at once, which "
                                "leaves the cartridge as it is at that moment."));
    worker->canceled();
}

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
    QTimer interruptPoll;
    QObject::connect(&interruptPoll, &QTimer::timeout, &loop,
                     [&] { passOnInterrupt(worker, log); });
    watchForInterrupt();
    interruptPoll.start(kInterruptPollMs);
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
    ProgressPrinter printer(stream, isTerminal, bytesToMove(job));
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
