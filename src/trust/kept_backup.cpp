#include "trust/kept_backup.h"

#include "cart/dump_checks.h"
#include "trust/backup_store.h"
#include "trust/pending_file.h"

#include <QDateTime>
#include <QDir>

namespace
{

const std::uint8_t *bytesOf(const QByteArray &bytes)
{
    return reinterpret_cast<const std::uint8_t *>(bytes.constData());
}

bool isRefusedBlank(const BackupPlan &plan, const QByteArray &bytes)
{
    return movesSave(plan.readJob.operate) && !plan.acceptsEqualBytes &&
           allBytesEqual(bytesOf(bytes), static_cast<std::uint32_t>(bytes.size()));
}

QByteArray contentOf(const QByteArray &bytes, const BackupPlan &plan)
{
    return plan.cutsRepetitions ? bytes.left(static_cast<int>(repeatedContentSize(
                                      bytesOf(bytes), static_cast<std::uint32_t>(bytes.size()))))
                                : bytes;
}

void fail(Trouble trouble, const QString &detail, Outcome *outcome)
{
    outcome->trouble = trouble;
    outcome->state = unwritten(outcome->state);
    outcome->detail = detail;
}

QString pathOf(const BackupPlan &plan, const QString &folder)
{
    return datedPath(folder, plan.title, QDateTime::currentDateTime(),
                     movesSave(plan.readJob.operate) ? QStringLiteral(".sav")
                                                     : QStringLiteral(".gb"));
}

void failFile(const PendingFile &file, Outcome *outcome)
{
    fail(Trouble::NoFile, {}, outcome);
    outcome->file = file.trouble();
}

// The file is there and has room before the first byte is read.
KeptBackup readIntoFile(const BackupPlan &plan, const QString &path, TrustListener &listener)
{
    KeptBackup backup;
    PendingFile file(path, ExistingFile::Keep);
    if (!file.trouble().isNone() || !file.reserve(bytesToMove(plan.readJob))) {
        failFile(file, &backup.outcome);
        return backup;
    }
    backup = readTwice(plan.readJob, listener);
    if (!backup.outcome.isDone())
        return backup;
    backup.isErased =
        !movesSave(plan.readJob.operate) && backup.bytes.count('\xFF') == backup.bytes.size();
    if (isRefusedBlank(plan, backup.bytes))
        fail(Trouble::SaveIsBlank, {}, &backup.outcome);
    else if (backup.isErased)
        return backup;
    else if (file.write(contentOf(backup.bytes, plan)) && file.commit())
        backup.path = path;
    else
        failFile(file, &backup.outcome);
    return backup;
}

} // namespace

KeptBackup readTwice(const CartridgeJob &readJob, TrustListener &listener)
{
    CheckedRead read = readOnce(readJob, Phase::Backup, listener);
    if (read.outcome.isDone())
        readAgain(readJob, 1, listener, &read);
    if (read.outcome.isDone() && !read.differences.isEmpty())
        fail(Trouble::ReadsDiffer, read.differences, &read.outcome);
    KeptBackup backup;
    backup.outcome = read.outcome;
    backup.bytes = read.bytes;
    return backup;
}

KeptBackup keepBackup(const BackupPlan &plan, TrustListener &listener)
{
    const QString folder = plan.folder.isEmpty() ? defaultBackupFolder() : plan.folder;
    if (QDir().mkpath(folder))
        return readIntoFile(plan, pathOf(plan, folder), listener);
    KeptBackup backup;
    fail(Trouble::NoFolder, folder, &backup.outcome);
    return backup;
}
