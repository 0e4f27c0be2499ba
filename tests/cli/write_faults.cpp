#include "write_faults.h"

namespace
{

bool holds(const BenchCase &bench, const BenchRun &run, const QByteArray &content)
{
    return isSameContent(bench, run.found, content);
}

bool isBackupTold(const BenchRun &run)
{
    return !run.backups.isEmpty() && run.told.contains(run.backups.firstKey());
}

bool saysUntouched(const BenchRun &run)
{
    for (const char *words : {"the cartridge is as it was", "The cartridge was not touched",
                              "The cartridge was only looked at", "The cartridge was only read",
                              "The cartridge was not changed", "The write was not begun",
                              "The cartridge was read, which"}) {
        if (run.told.contains(words))
            return true;
    }
    return false;
}

} // namespace

bool hasBackup(const BenchCase &bench, const BenchRun &run)
{
    return !run.backups.isEmpty() && isSameContent(bench, run.backups.first(), run.old);
}

QStringList problemsOfWrite(const BenchCase &bench, const BenchRun &run)
{
    QStringList problems;
    const bool isTouched = !holds(bench, run, run.old);
    if (isTouched && !hasBackup(bench, run))
        problems << "what the chip held is LOST";
    if (run.code == ExitCode::Done && !holds(bench, run, run.wanted))
        problems << "called done, but the chip holds something else";
    if (run.backups.size() > 1 || (!run.backups.isEmpty() && !hasBackup(bench, run)))
        problems << "a backup that is none";
    if (!run.leftovers.isEmpty())
        problems << "temporary files are left: " + run.leftovers.join(", ");
    if (isTouched && run.code != ExitCode::Done && !isBackupTold(run))
        problems << "the backup's name is not told: " + run.told;
    if (isTouched && saysUntouched(run))
        problems << "it says that the cartridge is as it was: " + run.told;
    if (run.code != ExitCode::Done && run.told.isEmpty())
        problems << "it says nothing";
    return problems;
}
