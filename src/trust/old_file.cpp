#include "trust/old_file.h"

#include "trust/backup_store.h"
#include "trust/pending_file.h"

#include <QDir>
#include <QFileInfo>

namespace
{

OldFileCopy failed(Trouble trouble)
{
    OldFileCopy copy;
    copy.outcome.trouble = trouble;
    copy.outcome.state = CartridgeState::NotRead;
    return copy;
}

OldFileCopy failedFile(const FileTrouble &trouble)
{
    OldFileCopy copy = failed(Trouble::NoFile);
    copy.outcome.file = trouble;
    return copy;
}

} // namespace

Outcome targetTrouble(const QString &path, int bytes)
{
    const FileTrouble trouble = troubleOfWriting(path, bytes);
    return trouble.isNone() ? Outcome() : failedFile(trouble).outcome;
}

OldFileCopy keepOldFile(const QString &path, const QString &folder)
{
    const QFileInfo old(path);
    if (!old.isFile() || old.size() == 0)
        return {};
    QByteArray bytes;
    const FileTrouble unread = readUserFile(path, &bytes);
    if (!unread.isNone())
        return failedFile(unread);
    const QString target = folder.isEmpty() ? defaultBackupFolder() : folder;
    if (!QDir().mkpath(target)) {
        OldFileCopy copy = failed(Trouble::NoFolder);
        copy.outcome.detail = target;
        return copy;
    }
    const QString suffix = old.suffix().isEmpty() ? QString() : QLatin1Char('.') + old.suffix();
    OldFileCopy copy;
    copy.path = datedPath(target, old.completeBaseName(), QDateTime::currentDateTime(), suffix);
    PendingFile file(copy.path, ExistingFile::Keep);
    if (file.trouble().isNone() && file.write(bytes) && file.commit())
        return copy;
    return failedFile(file.trouble());
}

bool areEqualFiles(const QString &path, const QString &otherPath)
{
    QByteArray bytes;
    QByteArray otherBytes;
    return readUserFile(path, &bytes).isNone() && readUserFile(otherPath, &otherBytes).isNone() &&
           bytes == otherBytes;
}
