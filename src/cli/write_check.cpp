#include "cli/write_check.h"

#include "cli/interrupt.h"
#include "cli/pending_file.h"
#include "cli/repeated_read.h"
#include "worker/famicom_thread.h"

namespace
{

bool isFlash(const CliJob &job)
{
    return job.operate == GB_WRITE_FLASH;
}

// What the user can do with the backup.
QString wayBack(const CliJob &job, const KeptBackup &backup)
{
    if (backup.path.isEmpty())
        return QStringLiteral("There is no backup.");
    return QStringLiteral("What the cartridge held before is in\n  %1\nTo put it back:\n  "
                          "gbdriver-cli %2 \"%1\"")
        .arg(backup.path, isFlash(job) ? QLatin1String("flash") : QLatin1String("write-ram"));
}

// A refusal comes before the first byte; the backup was then for nothing.
QString stateAfter(ExitCode code, const CliJob &job, const KeptBackup &backup)
{
    if (code == ExitCode::Refused || code == ExitCode::NoReader || code == ExitCode::NoAnswer ||
        code == ExitCode::FileError)
        return QStringLiteral("Nothing was written; the cartridge is as it was.");
    return QStringLiteral("The write did not come to its end. ") + wayBack(job, backup);
}

QString mismatchText(const QByteArray &wanted, const QByteArray &found, const MemoryShape &shape)
{
    const QByteArray a = keptBits(wanted, shape);
    const QByteArray b = keptBits(found, shape);
    const auto size = static_cast<std::uint32_t>(a.size());
    const ByteDifferences differences =
        differingBytes(reinterpret_cast<const std::uint8_t *>(a.constData()),
                       reinterpret_cast<const std::uint8_t *>(b.constData()), size);
    return QStringLiteral("The cartridge does not hold what was written: %1 differ (%2).")
        .arg(describeBytes(differences, size), differencesOf(wanted, found, shape));
}

// The user's own file if that is what is written, so that the job speaks of it; else a copy.
JobResult write(const CliJob &job, const QByteArray &content, Reporter &reporter)
{
    QByteArray file;
    QString ignored;
    const bool isFile = readUserFile(job.fileName, &file, &ignored) && file == content;
    return isFile ? runJob(job, "write", JobLog::Told, reporter)
                  : writeFromMemory(job, content, "write", JobLog::Told, reporter);
}

ExitCode checkWritten(const CliJob &writeJob, const CliJob &readJob, const QByteArray &content,
                      const KeptBackup &backup, Reporter &reporter)
{
    QByteArray found;
    const JobResult read = readToMemory(readJob, "check", JobLog::ToldOnFailure, reporter, &found);
    if (read.code != ExitCode::Done) {
        reporter.problem(QStringLiteral("It was written, but it could not be read back, so nobody "
                                        "knows whether it is right. ") +
                         wayBack(writeJob, backup));
        return read.code;
    }
    found.truncate(content.size());
    const MemoryShape shape = shapeOf(readJob);
    if (differencesOf(content, found, shape).isEmpty())
        return ExitCode::Done;
    reporter.problem(mismatchText(content, found, shape) + QLatin1Char('\n') +
                     wayBack(writeJob, backup));
    return ExitCode::DataMismatch;
}

} // namespace

ExitCode writeAndCheck(const CliJob &writeJob, const CliJob &readJob, const QByteArray &content,
                       const KeptBackup &backup, Reporter &reporter)
{
    if (wasInterrupted()) {
        reporter.problem(QStringLiteral("Stopped before the write. The cartridge is as it was."));
        return ExitCode::Cancelled;
    }
    const JobResult written = write(writeJob, content, reporter);
    if (written.code != ExitCode::Done) {
        reporter.problem(stateAfter(written.code, writeJob, backup));
        return written.code;
    }
    // Also after Ctrl-C: what was written in full deserves its check, which changes nothing.
    const ExitCode code = checkWritten(writeJob, readJob, content, backup, reporter);
    if (code == ExitCode::Done) {
        reporter.event("verdict", {{QStringLiteral("verdict"), QStringLiteral("written")},
                                   {QStringLiteral("size"), content.size()},
                                   {QStringLiteral("backup"), backup.path}});
        reporter.answer(
            QStringLiteral("written: %1 bytes, read back and equal").arg(content.size()));
        if (!backup.path.isEmpty())
            reporter.answer(QStringLiteral("backup: ") + backup.path);
    }
    return code;
}
