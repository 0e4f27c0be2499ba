#include "cli/kept_backup.h"

#include "cart/dump_checks.h"
#include "cli/backup_store.h"
#include "cli/interrupt.h"
#include "cli/pending_file.h"
#include "cli/repeated_read.h"
#include "worker/famicom_thread.h"

#include <QDateTime>
#include <QDir>

namespace
{

const QString kNothingWritten = QStringLiteral(" Nothing was written; the cartridge is as it was.");

bool movesSave(const CliJob &job)
{
    return job.operate == GB_READ_RAM || job.operate == GBA_READ_RAM;
}

ExitCode fail(ExitCode code, const QString &problem, Reporter &reporter)
{
    reporter.problem(problem + kNothingWritten);
    return code;
}

// An erased chip, or a save that never was, needs no file.
bool isWorthKeeping(const QByteArray &bytes)
{
    return bytes.count('\xFF') != bytes.size();
}

// A ROM that was read beyond the end of its chip holds the chip several times.
QByteArray contentOf(const QByteArray &bytes, const CliJob &job)
{
    if (movesSave(job))
        return bytes;
    const auto *first = reinterpret_cast<const std::uint8_t *>(bytes.constData());
    return bytes.left(
        static_cast<int>(repeatedContentSize(first, static_cast<std::uint32_t>(bytes.size()))));
}

ExitCode store(const QString &folder, const QString &title, const CliJob &job, Reporter &reporter,
               KeptBackup *backup)
{
    if (!QDir().mkpath(folder))
        return fail(ExitCode::FileError,
                    QStringLiteral("Can not make the folder %1 for the backup.").arg(folder),
                    reporter);
    const QString path = datedPath(folder, title, QDateTime::currentDateTime(),
                                   movesSave(job) ? QStringLiteral(".sav") : QStringLiteral(".gb"));
    PendingFile file(path, ExistingFile::Keep);
    if (!file.problem().isEmpty() || !file.write(contentOf(backup->bytes, job)) || !file.commit())
        return fail(ExitCode::FileError, file.problem(), reporter);
    backup->path = path;
    reporter.log(QStringLiteral("Backup: ") + path);
    return ExitCode::Done;
}

} // namespace

KeptBackup keepBackup(const CliJob &readJob, const QString &folder, const QString &title,
                      Reporter &reporter)
{
    KeptBackup backup;
    backup.code =
        readToMemory(readJob, "backup", JobLog::ToldOnFailure, reporter, &backup.bytes).code;
    QString differences;
    if (backup.code == ExitCode::Done)
        backup.code = readAgain(readJob, backup.bytes, 1, reporter, &differences);
    if (backup.code != ExitCode::Done)
        return backup;
    if (!differences.isEmpty()) {
        backup.code = fail(ExitCode::DataMismatch,
                           QStringLiteral("Two reads of the cartridge differ (%1), so there can be "
                                          "no backup of it. Clean the contacts, push the cartridge "
                                          "in again.")
                               .arg(differences),
                           reporter);
        return backup;
    }
    if (isWorthKeeping(backup.bytes))
        backup.code = store(folder.isEmpty() ? defaultBackupFolder() : folder, title, readJob,
                            reporter, &backup);
    else
        reporter.log(QStringLiteral("The cartridge holds only FF: there is nothing to back up."));
    return backup;
}
