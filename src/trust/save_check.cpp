#include "trust/save_check.h"

#include "cart/setting_tables.h"

namespace
{

constexpr int kSmallFlash = 64 * 1024;

} // namespace

Outcome findLargerSave(const CartridgeJob &writeJob, TrustListener &listener)
{
    if (writeJob.saveType != kSaveFlash || writeJob.ramSize != kSmallFlash)
        return {};
    CartridgeJob job = saveReadingJob(writeJob);
    job.ramSize = 2 * kSmallFlash;
    QByteArray bytes;
    Outcome outcome = runPhase(job, {}, Phase::Compare, listener, &bytes);
    if (!outcome.isDone())
        return outcome;
    const QByteArray upper = bytes.mid(kSmallFlash);
    if (upper != bytes.left(kSmallFlash) && upper.count(upper[0]) != upper.size())
        outcome.trouble = Trouble::SaveIsLarger;
    return outcome;
}

KeptBackup keepSaveBackup(const BackupPlan &plan, const CartridgeJob &writeJob,
                          TrustListener &listener)
{
    KeptBackup backup = keepBackup(plan, listener);
    if (!backup.outcome.isDone() && backup.outcome.trouble != Trouble::SaveIsBlank)
        return backup;
    const Outcome larger = findLargerSave(writeJob, listener);
    if (!larger.isDone())
        backup.outcome = larger;
    return backup;
}

bool isBlankSave(const QByteArray &save)
{
    return !save.isEmpty() && save.count(save[0]) == save.size();
}

QByteArray newSaveContent(const QByteArray &file, const QByteArray &old, int saveSize)
{
    const QByteArray content = file.left(saveSize);
    return content + old.mid(content.size());
}
