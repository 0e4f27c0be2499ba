#include "cli/job_runner.h"

#include "cli/cartridge_look.h"
#include "cli/interrupt.h"
#include "cli/pending_file.h"
#include "cli/plain_text.h"
#include "cli/transfer_hash.h"
#include "device/device_link.h"
#include "worker/famicom_thread.h"
#include "worker/local_path.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QEventLoop>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTimer>

namespace
{

constexpr int kInterruptPollMs = 50;

bool isWriteJob(int operate)
{
    return (operate & GB_WRITE_FLASH) != 0;
}

qint64 bytesToMove(const CliJob &job)
{
    if (job.operate == GB_WRITE_FLASH)
        return QFileInfo(job.fileName).size();
    return job.romSize > 0 ? job.romSize : job.ramSize;
}

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

// One job with what it says.
class JobRun
{
public:
    JobRun(const CliJob &job, JobLog log, Reporter &reporter)
        : m_job(job), m_log(log), m_reporter(reporter)
    {
    }

    JobResult run(const QString &scriptPath)
    {
        fillJobFields(&m_worker, m_job, scriptPath);
        clearLastDriveError();
        JobResult result;
        if (isWriteJob(m_job.operate)) {
            work();
        } else {
            const TransferHash hash(&m_worker);
            work();
            result.sha1 = hash.sha1();
        }
        result.code = judge();
        return result;
    }

private:
    void work()
    {
        QEventLoop loop;
        QObject::connect(&m_worker, &FamicomThread::log, &loop,
                         [this](const QString &line) { hear(line); });
        QObject::connect(&m_worker, &FamicomThread::set_progress, &loop,
                         [this](int done, int maximum) {
                             // The job ends with a full bar of 1 of 1; those are no bytes.
                             if (maximum != 1)
                                 m_reporter.progress(done);
                         });
        QObject::connect(&m_worker, &FamicomThread::error, &loop,
                         [this](int flag) { m_flag = flag; });
        QObject::connect(&m_worker, &QThread::finished, &loop, &QEventLoop::quit);
        QTimer interruptPoll;
        QObject::connect(&interruptPoll, &QTimer::timeout, &loop, [this] { passOnInterrupt(); });
        interruptPoll.start(kInterruptPollMs);
        m_worker.start();
        loop.exec();
    }

    void hear(const QString &line)
    {
        m_lines << line.trimmed();
        if (m_log == JobLog::Told)
            m_reporter.log(line);
    }

    // A job can only stop while it waits for an erase; anything else it finishes, because half a
    // save or half a ROM is worth nothing. The flag is raised again and again, since a job that has
    // only just been started clears it.
    void passOnInterrupt()
    {
        if (!wasInterrupted())
            return;
        if (!m_isAsked)
            m_reporter.log(
                isWriteJob(m_job.operate)
                    ? QStringLiteral("Asked to stop. The cartridge is being written; only the wait "
                                     "for an erase can be cut short, anything else is finished "
                                     "first. Ctrl-C again ends at once and leaves the cartridge "
                                     "half written.")
                    : QStringLiteral("Asked to stop. The cartridge is only being read; the read is "
                                     "finished first, and nothing more is done. Ctrl-C again ends "
                                     "at once; the cartridge stays as it is."));
        m_isAsked = true;
        m_worker.canceled();
    }

    bool everyByteMoved() const { return m_worker.data_pos == jobBufferSize(m_worker); }

    bool said(const QString &line) const { return m_lines.contains(line); }

    bool saidAnywhere(const QString &words) const
    {
        return m_lines.join(QLatin1Char('\n')).contains(words);
    }

    ExitCode judge()
    {
        if (m_flag == 1 && everyByteMoved() && lastDriveError().empty())
            return ExitCode::Done;
        if (m_log == JobLog::ToldOnFailure)
            for (const QString &line : m_lines)
                m_reporter.log(line);
        const ExitCode code = failure();
        m_reporter.problem(describe(code));
        return code;
    }

    // The worker's own lines tell how far it came; before the script runs they are all there is.
    ExitCode failure() const
    {
        if (said(FamicomThread::tr("Can not found device.")))
            return ExitCode::NoReader;
        if (said(FamicomThread::tr("Initialize device error.")))
            return ExitCode::NoAnswer;
        for (const QString &line :
             {FamicomThread::tr("Open File error."), FamicomThread::tr("Read File error."),
              FamicomThread::tr("Save file error.")})
            if (said(line))
                return ExitCode::FileError;
        // The shipped scripts end every refusal with this.
        if (m_flag == 0 && (saidAnywhere(QStringLiteral("Nothing was sent to the cartridge.")) ||
                            said(QObject::tr("Unknow operate!"))))
            return ExitCode::Refused;
        return m_flag == 0 && m_isAsked && isErasing() ? ExitCode::Cancelled
                                                       : ExitCode::TransferFailed;
    }

    bool isErasing() const
    {
        return said(QObject::tr("Start erase flash chip...")) &&
               !said(QObject::tr("Erase flash chip finish."));
    }

    QString describe(ExitCode code) const
    {
        QStringList parts;
        const QString driveError = QString::fromLocal8Bit(lastDriveError().c_str());
        if (m_log == JobLog::Told && !m_lines.isEmpty() && code != ExitCode::TransferFailed)
            parts << tellingLine(m_lines);
        if (!driveError.isEmpty())
            parts << driveError;
        if (code == ExitCode::TransferFailed && !everyByteMoved())
            parts << QStringLiteral("Only %1 of %2 bytes were transferred.")
                         .arg(qMax(0, m_worker.data_pos))
                         .arg(jobBufferSize(m_worker));
        parts << advice(code);
        return parts.join(QLatin1Char('\n'));
    }

    QString advice(ExitCode code) const
    {
        switch (code) {
        case ExitCode::NoReader:
        case ExitCode::NoAnswer:
            return readerAdvice(code) + QStringLiteral(" This step sent nothing to the cartridge.");
        case ExitCode::TransferFailed:
            return isWriteJob(m_job.operate)
                       ? QStringLiteral("The transfer failed; the cartridge may be partly written.")
                       : QStringLiteral("The transfer failed; the cartridge was only read. Check "
                                        "plug and contacts and try again.");
        case ExitCode::FileError:
            return QStringLiteral("The file %1 failed; see the lines above.").arg(m_job.fileName);
        case ExitCode::Cancelled:
            return QStringLiteral(
                "Stopped while the chip was being erased. Its content may be lost.");
        default:
            return QStringLiteral("The cartridge was not touched.");
        }
    }

    const CliJob &m_job;
    JobLog m_log;
    Reporter &m_reporter;
    FamicomThread m_worker;
    QStringList m_lines;
    int m_flag = 0;
    bool m_isAsked = false;
};

// Seen before a long transfer and not after it.
bool isUsable(const QTemporaryDir &folder, Reporter &reporter)
{
    if (folder.isValid() && !localPath(folder.path()).isEmpty())
        return true;
    reporter.problem(
        QStringLiteral("There is no usable folder for temporary files (%1). Set TMPDIR, "
                       "on Windows TEMP, to another one. The cartridge was not "
                       "touched.")
            .arg(folder.isValid() ? folder.path() : folder.errorString()));
    return false;
}

} // namespace

JobResult runJob(const CliJob &job, const char *phase, JobLog log, Reporter &reporter)
{
    const QString scriptPath =
        QCoreApplication::applicationDirPath() + QStringLiteral("/mapper/") + job.scriptName;
    if (!QFileInfo::exists(scriptPath)) {
        reporter.problem(QStringLiteral("There is no mapper script \"%1\". Install the mapper "
                                        "folder beside the program. The cartridge was not touched.")
                             .arg(scriptPath));
        return {ExitCode::FileError, {}};
    }
    reporter.startPhase(phase, bytesToMove(job));
    const JobResult result = JobRun(job, log, reporter).run(scriptPath);
    reporter.endPhase();
    return result;
}

bool readTransferred(const QString &path, const QByteArray &sha1, QByteArray *bytes,
                     QString *problem)
{
    QByteArray found;
    if (!readUserFile(path, &found, problem))
        return false;
    if (QCryptographicHash::hash(found, QCryptographicHash::Sha1) == sha1) {
        *bytes = found;
        return true;
    }
    *problem = QStringLiteral("%1 does not hold what was read from the cartridge; the disk is not "
                              "to be trusted.")
                   .arg(path);
    return false;
}

JobResult readToMemory(const CliJob &job, const char *phase, JobLog log, Reporter &reporter,
                       QByteArray *bytes)
{
    const QTemporaryDir folder;
    if (!isUsable(folder, reporter))
        return {ExitCode::FileError, {}};
    CliJob toFolder = job;
    toFolder.fileName = folder.filePath(QStringLiteral("read"));
    const JobResult result = runJob(toFolder, phase, log, reporter);
    QString problem;
    if (result.code != ExitCode::Done ||
        readTransferred(toFolder.fileName, result.sha1, bytes, &problem))
        return result;
    reporter.problem(problem);
    return {ExitCode::FileError, {}};
}

JobResult writeFromMemory(const CliJob &job, const QByteArray &bytes, const char *phase, JobLog log,
                          Reporter &reporter)
{
    const QTemporaryDir folder;
    if (!isUsable(folder, reporter))
        return {ExitCode::FileError, {}};
    CliJob fromFolder = job;
    fromFolder.fileName = folder.filePath(QStringLiteral("write"));
    PendingFile file(fromFolder.fileName, ExistingFile::Keep);
    if (!file.problem().isEmpty() || !file.write(bytes) || !file.commit()) {
        reporter.problem(file.problem());
        return {ExitCode::FileError, {}};
    }
    return runJob(fromFolder, phase, log, reporter);
}
