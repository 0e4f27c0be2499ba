#include "ui/backup_task.h"

#include "trust/dat_folder.h"
#include "trust/judgement_words.h"
#include "ui/judgement_text.h"

#include <QCoreApplication>

namespace
{

struct Backup {
    Q_DECLARE_TR_FUNCTIONS(Backup)
};

// How the two memories are spoken of.
struct MemoryWords {
    const char *line;
    const char *none;
};
constexpr MemoryWords kRomWords = {
    QT_TRANSLATE_NOOP("Backup", "ROM, %1"),
    QT_TRANSLATE_NOOP("Backup", "The cartridge has no ROM that can be read.")};
constexpr MemoryWords kSaveWords = {
    QT_TRANSLATE_NOOP("Backup", "save, %1"),
    QT_TRANSLATE_NOOP("Backup", "The cartridge has no save that can be read.")};

JudgementKind kindOf(const BackedUpMemory &memory)
{
    switch (memory.end) {
    case MemoryEnd::Kept:
        return judgementOf(memory.verdict.kind);
    case MemoryEnd::NotKnown:
    case MemoryEnd::Dangerous:
    case MemoryEnd::Locked:
    case MemoryEnd::UnknownGame:
        return JudgementKind::Refused;
    case MemoryEnd::NoMemory:
    case MemoryEnd::Swapped:
        return JudgementKind::Failed;
    case MemoryEnd::NotRead:
    case MemoryEnd::NotReadTwice:
    case MemoryEnd::NotWritten:
        break;
    }
    return judgementOf(memory.outcome);
}

// "consistent: save, 2 equal reads"
QString lineOf(const MemoryWords &words, const BackedUpMemory &memory)
{
    return judgedText(kindOf(memory), Backup::tr(words.line).arg(memoryGrounds(memory)));
}

void append(const MemoryWords &words, const BackedUpMemory &memory, QStringList *entries)
{
    if (memory.end == MemoryEnd::NoMemory) {
        *entries << adviceEntry(Backup::tr(words.none));
        return;
    }
    *entries << judgementEntry(kindOf(memory), lineOf(words, memory));
    if (!memory.path.isEmpty())
        *entries << adviceEntry(memory.path);
}

Outcome notRecognised(const CartridgeReport &report)
{
    Outcome outcome;
    outcome.trouble = Trouble::JobFailed;
    outcome.state = CartridgeState::LookedAt;
    outcome.job.end = readerFaultOf(report);
    outcome.job.driveError = report.driveError;
    return outcome;
}

} // namespace

CartridgeBackupResult backUpCartridge(const QString &folder, TrustListener &listener)
{
    CartridgeBackupResult result;
    result.report = detectCartridge([](const QString &) {});
    if (!isRecognised(result.report))
        return result;
    const DatFolder own = readDatFolder(datFolder());
    result.tableProblems = own.problems;
    CartridgeBackupPlan plan;
    plan.folder = folder;
    plan.tables = own.tables;
    plan.program = QStringLiteral("gbdriver " GBDRIVER_VERSION);
    CartridgeBackup backup(result.report, plan, listener);
    result.rom = backup.backUpRom();
    const bool isStopped = result.rom.outcome.trouble == Trouble::Stopped;
    if (!isStopped && !listener.isStopWanted())
        result.save = backup.backUpSave();
    else
        result.written.trouble = Trouble::Stopped;
    if (result.written.isDone())
        result.written = backup.writeReport();
    return result;
}

QStringList backupEntries(const CartridgeBackupResult &result)
{
    if (!isRecognised(result.report)) {
        const Outcome outcome = notRecognised(result.report);
        if (outcome.job.end != JobEnd::Done)
            return outcomeEntries(outcome);
        return {judgementEntry(JudgementKind::Refused,
                               judgedText(JudgementKind::Refused,
                                          Backup::tr("No cartridge was recognised. Push it in "
                                                     "again, clean its contacts, or choose the "
                                                     "settings and use Dump."))),
                QString::fromLatin1(kLogRule)};
    }
    QStringList entries;
    append(kRomWords, result.rom, &entries);
    for (const QString &problem : result.tableProblems)
        entries << tableProblemEntry(problem);
    if (result.written.trouble == Trouble::Stopped) {
        if (result.rom.outcome.trouble != Trouble::Stopped)
            entries << judgementEntry(
                JudgementKind::Stopped,
                judgedText(JudgementKind::Stopped, Backup::tr("The save was not read.")));
        return entries << QString::fromLatin1(kLogRule);
    }
    append(kSaveWords, result.save, &entries);
    if (!result.written.isDone())
        return entries + outcomeEntries(result.written);
    return entries << QString::fromLatin1(kLogRule);
}
