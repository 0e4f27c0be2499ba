// The command tidy: removes what a program that was ended before its time has left in a folder.
#include "cli/commands.h"

#include "device/local_path.h"
#include "device/user_file.h"
#include "trust/backup_store.h"
#include "trust/left_behind.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace
{

// Returns: whether it is gone.
bool removeOne(const QString &path, Reporter &reporter)
{
    const DriveStatus status = removeTemporary(localPath(path).toStdString());
    reporter.event("left-behind",
                   {{QStringLiteral("file"), path}, {QStringLiteral("removed"), status.ok()}});
    if (status.ok())
        reporter.answer(QStringLiteral("removed: ") + path);
    else
        reporter.problem(QStringLiteral("kept: ") + QString::fromLocal8Bit(status.message.c_str()));
    return status.ok();
}

// Of the command's files; empty if it writes none.
QString folderToWrite(const CliOptions &options)
{
    switch (options.request) {
    case CliRequest::Dump:
    case CliRequest::ReadRam:
        return QFileInfo(options.path).path();
    case CliRequest::Backup:
        return options.path;
    case CliRequest::WriteRam:
    case CliRequest::Flash:
        return options.backupFolder.isEmpty() ? defaultBackupFolder() : options.backupFolder;
    default:
        return {};
    }
}

} // namespace

ExitCode runTidy(const CliOptions &options, Reporter &reporter)
{
    if (!QDir(options.path).exists()) {
        reporter.problem(QStringLiteral("There is no folder %1.").arg(options.path));
        return ExitCode::FileError;
    }
    const QStringList found = temporariesIn(options.path);
    if (found.isEmpty())
        reporter.answer(QStringLiteral("Nothing was left behind in %1.").arg(options.path));
    const auto isRemoved = [&reporter](const QString &path) { return removeOne(path, reporter); };
    const auto removed = std::count_if(found.begin(), found.end(), isRemoved);
    return removed == found.size() ? ExitCode::Done : ExitCode::FileError;
}

void tellLeftBehind(const CliOptions &options, Reporter &reporter)
{
    const QString folder = folderToWrite(options);
    const QStringList found = folder.isEmpty() ? QStringList() : leftBehindIn(folder);
    for (const QString &path : found)
        reporter.log(QStringLiteral("Left by a program that was ended: ") + path);
    if (!found.isEmpty())
        reporter.log(QStringLiteral("The command tidy removes such files."));
}
