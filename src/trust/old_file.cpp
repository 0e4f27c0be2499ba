#include "trust/old_file.h"

#include "trust/backup_store.h"
#include "trust/pending_file.h"

#include <QDir>
#include <QFileInfo>

namespace
{

OldFileCopy failed(Trouble trouble, const QString &detail)
{
    OldFileCopy kept;
    kept.outcome.trouble = trouble;
    kept.outcome.state = CartridgeState::NotRead;
    kept.outcome.detail = detail;
    return kept;
}

} // namespace

OldFileCopy keepOldFile(const QString &path, const QString &folder)
{
    const QFileInfo old(path);
    if (!old.isFile() || old.size() == 0)
        return {};
    QByteArray bytes;
    QString problem;
    if (!readUserFile(path, &bytes, &problem))
        return failed(Trouble::NoFile, problem);
    const QString target = folder.isEmpty() ? defaultBackupFolder() : folder;
    if (!QDir().mkpath(target))
        return failed(Trouble::NoFolder, target);
    OldFileCopy kept;
    kept.path = datedPath(target, old.completeBaseName(), QDateTime::currentDateTime(),
                          old.suffix().isEmpty() ? QString() : QLatin1Char('.') + old.suffix());
    PendingFile file(kept.path, ExistingFile::Keep);
    if (file.problem().isEmpty() && file.write(bytes) && file.commit())
        return kept;
    return failed(Trouble::NoFile, file.problem());
}

bool areEqualFiles(const QString &path, const QString &otherPath)
{
    QByteArray bytes;
    QByteArray otherBytes;
    QString problem;
    return readUserFile(path, &bytes, &problem) && readUserFile(otherPath, &otherBytes, &problem) &&
           bytes == otherBytes;
}
