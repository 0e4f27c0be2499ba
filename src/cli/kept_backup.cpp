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

bool isErasedRom(const QByteArray &bytes, const CliJob &job)
{
    return !movesSave(job) && bytes.count('\xFF') == bytes.size();
}

const std::uint8_t *bytesOf(const QByteArray &bytes)
{
    return reinterpret_cast<const std::uint8_t *>(bytes.constData());
}

QByteArray contentOf(const QByteArray &bytes, const BackupPlan &plan)
{
    return plan.cutsRepetitions ? bytes.left(static_cast<int>(repeatedContentSize(
                                      bytesOf(bytes), static_cast<std::uint32_t>(bytes.size()))))
                                : bytes;
}

ExitCode store(const BackupPlan &plan, Reporter &reporter, KeptBackup *backup)
{
    const QString folder = plan.folder.isEmpty() ? defaultBackupFolder() : plan.folder;
    if (!QDir().mkpath(folder))
        return fail(ExitCode::FileError,
                    QStringLiteral("Can not make the folder %1 for the backup. Name another with "
                                   "--backup.")
                        .arg(folder),
                    reporter);
    const QString path =
        datedPath(folder, plan.title, QDateTime::currentDateTime(),
                  movesSave(plan.readJob) ? QStringLiteral(".sav") : QStringLiteral(".gb"));
    PendingFile file(path, ExistingFile::Keep);
    if (!file.problem().isEmpty() || !file.write(contentOf(backup->bytes, plan)) || !file.commit())
        return fail(ExitCode::FileError, file.problem(), reporter);
    backup->path = path;
    reporter.log(QStringLiteral("Backup: ") + path);
    return ExitCode::Done;
}

// What two reads of the cartridge are worth as a backup.
ExitCode judge(const BackupPlan &plan, const QByteArray &bytes, const QString &differences,
               Reporter &reporter)
{
    if (!differences.isEmpty())
        return fail(ExitCode::DataMismatch,
                    QStringLiteral("Two reads of the cartridge differ (%1), so there can be no "
                                   "backup of it. Clean the contacts, push the cartridge in again.")
                        .arg(differences),
                    reporter);
    if (movesSave(plan.readJob) && !plan.acceptsEqualBytes &&
        allBytesEqual(bytesOf(bytes), static_cast<std::uint32_t>(bytes.size())))
        return fail(ExitCode::Refused,
                    QStringLiteral("All bytes of the save are equal. So reads an empty save, but "
                                   "also a wrong --save-type or --ram-size and a bad contact, and "
                                   "then the write would destroy a save of which there is no "
                                   "backup. If the save is empty, give --force."),
                    reporter);
    return ExitCode::Done;
}

} // namespace

KeptBackup keepBackup(const BackupPlan &plan, Reporter &reporter)
{
    KeptBackup backup;
    backup.code =
        readToMemory(plan.readJob, "backup", JobLog::ToldOnFailure, reporter, &backup.bytes).code;
    QString differences;
    if (backup.code == ExitCode::Done)
        backup.code = readAgain(plan.readJob, backup.bytes, 1, reporter, &differences);
    if (backup.code == ExitCode::Done)
        backup.code = judge(plan, backup.bytes, differences, reporter);
    if (backup.code != ExitCode::Done)
        return backup;
    if (isErasedRom(backup.bytes, plan.readJob))
        reporter.log(QStringLiteral("The flash chip is erased: there is nothing to back up."));
    else
        backup.code = store(plan, reporter, &backup);
    return backup;
}
