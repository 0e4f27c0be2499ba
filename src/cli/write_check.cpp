#include "cli/write_check.h"

#include "cart/setting_tables.h"
#include "cli/cli_command.h"
#include "cli/cli_detection.h"
#include "cli/interrupt.h"
#include "cli/pending_file.h"
#include "cli/repeated_read.h"
#include "worker/famicom_thread.h"

namespace
{

constexpr int kMostListed = 8;

bool isFlash(const CliJob &job)
{
    return job.operate == GB_WRITE_FLASH;
}

QString mapperOf(const QString &script)
{
    for (const MapperRow &row : kMappers) {
        if (script == QLatin1String(row.script))
            return QString::fromLatin1(row.label).toLower();
    }
    return QString();
}

QString optionsOf(const CliJob &job)
{
    if (job.scriptName == kGbaScript)
        return QStringLiteral("--system gba --save-type %1 --ram-size %2 --force")
            .arg(labelOf(kGbaSaveTypes, job.saveType))
            .arg(job.ramSize);
    const QString mapper = QStringLiteral("--system gb --mapper ") + mapperOf(job.scriptName);
    return isFlash(job) ? mapper + QStringLiteral(" --no-backup")
                        : mapper + QStringLiteral(" --ram-size %1 --force").arg(job.ramSize);
}

// What the user can do with the backup. All is said, because the header may be gone or another's,
// and what is in the cartridge now is not worth a backup.
QString wayBack(const CliJob &job, const KeptBackup &backup)
{
    if (backup.path.isEmpty())
        return QStringLiteral("There is no backup.");
    return QStringLiteral("What the cartridge held before is in\n  %1\nTo put it back:\n  "
                          "gbdriver-cli %2 \"%1\" --no-auto %3")
        .arg(backup.path, isFlash(job) ? QLatin1String("flash") : QLatin1String("write-ram"),
             optionsOf(job));
}

// A refusal comes before the first byte; the backup was then for nothing.
QString stateAfter(ExitCode code, const CliJob &job, const KeptBackup &backup)
{
    if (code == ExitCode::Refused || code == ExitCode::NoReader || code == ExitCode::NoAnswer ||
        code == ExitCode::FileError)
        return QStringLiteral("Nothing was written; the cartridge is as it was.");
    return QStringLiteral("The write did not come to its end. ") + wayBack(job, backup);
}

// "\n  0x0123: FF instead of 12", a line each.
QString firstDifferences(const QByteArray &wanted, const QByteArray &found)
{
    QString lines;
    int listed = 0;
    for (int at = 0; at < wanted.size() && listed < kMostListed; ++at) {
        if (wanted[at] == found[at])
            continue;
        lines += QStringLiteral("\n  0x%1: %2 instead of %3")
                     .arg(at, 4, 16, QLatin1Char('0'))
                     .arg(static_cast<std::uint8_t>(found[at]), 2, 16, QLatin1Char('0'))
                     .arg(static_cast<std::uint8_t>(wanted[at]), 2, 16, QLatin1Char('0'));
        ++listed;
    }
    return lines;
}

QString mismatchText(const QByteArray &wanted, const QByteArray &found, const MemoryShape &shape)
{
    const QByteArray a = keptBits(wanted, shape);
    const QByteArray b = keptBits(found, shape);
    const auto size = static_cast<std::uint32_t>(a.size());
    const ByteDifferences differences =
        differingBytes(reinterpret_cast<const std::uint8_t *>(a.constData()),
                       reinterpret_cast<const std::uint8_t *>(b.constData()), size);
    return QStringLiteral("The cartridge does not hold what was written: %1 differ (%2).%3")
        .arg(describeBytes(differences, size), differencesOf(wanted, found, shape),
             firstDifferences(a, b));
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
