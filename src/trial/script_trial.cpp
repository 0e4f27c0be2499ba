#include "trial/script_trial.h"

#include "trial/trial_bench.h"
#include "worker/job_words.h"

#include <algorithm>

using namespace virtual_reader;

namespace
{

// What every job does beside its script: the mode's two commands and the identity's read; a flash
// job also asks for its key.
DeviceOperations overheadOf(int operate)
{
    return operate == GB_WRITE_FLASH ? DeviceOperations{3, 2} : DeviceOperations{2, 1};
}

TrialCartridge cartridgeOf(const ScriptKind &kind, int operate)
{
    TrialCartridge cartridge;
    cartridge.isGba = kind.isGba;
    cartridge.headerType = kind.headerType;
    cartridge.romSize = kind.romSize;
    cartridge.ramSize = kind.ramSize;
    if (kind.isGba)
        cartridge.options.saveType = GbaSaveType::Sram;
    if (operate == GB_WRITE_FLASH)
        cartridge.options.flash = FlashWidth::Byte;
    return cartridge;
}

CartridgeJob jobOf(const ScriptOperation &operation, const QString &scriptPath,
                   const ScriptKind &kind)
{
    CartridgeJob job;
    job.operate = operation.operate;
    job.scriptPath = scriptPath;
    job.romSize = static_cast<int>(kind.romSize);
    job.ramSize = static_cast<int>(kind.ramSize);
    return job;
}

// What the job is to move: to the cartridge noise or the game itself, from it what is in there.
QByteArray movedContent(TrialBench &bench, const CartridgeJob &job)
{
    if (!movesSave(job.operate))
        return bench.image();
    return isWriteJob(job.operate) ? trialNoise(job.ramSize) : bench.save();
}

// What arrived, in the cartridge or from it.
QByteArray arrivedBytes(TrialBench &bench, int operate, const TrialRun &run)
{
    if (!isWriteJob(operate))
        return run.result.bytes;
    return movesSave(operate) ? bench.save() : bench.rom();
}

bool isSame(const QByteArray &found, const QByteArray &moved, char bits)
{
    return found.size() == moved.size() &&
           std::equal(found.begin(), found.end(), moved.begin(),
                      [&](char left, char right) { return ((left ^ right) & bits) == 0; });
}

void measure(TrialBench &bench, int operate, const ScriptKind &kind, ScriptTrial *trial)
{
    const OperationCounters &counters = bench.reader().counters();
    const DeviceOperations overhead = overheadOf(operate);
    trial->used.commandFiles = static_cast<qint64>(counters.commandRuns) - overhead.commandFiles;
    trial->used.reads = static_cast<qint64>(counters.reads) - overhead.reads;
    // How often an erase is looked at depends on the chip.
    trial->hasLeast = operate != GB_WRITE_FLASH;
    trial->least = leastOperations(operate, kind);
}

// The looks at a chip that is being erased are reads of the program's own.
bool nothingWasSent(int operate, const DeviceOperations &used)
{
    return used.commandFiles == 0 && (used.reads == 0 || operate == GB_WRITE_FLASH);
}

// One job on one cartridge.
void runTrial(const ScriptOperation &operation, const QString &scriptPath, const ScriptKind &kind,
              FileUse *files, ScriptTrial *trial)
{
    const int operate = operation.operate;
    TrialBench bench(cartridgeOf(kind, operate));
    CartridgeJob job = jobOf(operation, scriptPath, kind);
    job.mayUseFiles = files->isAllowed;
    const QByteArray moved = movedContent(bench, job);
    const TrialRun run = bench.run(job, isWriteJob(operate) ? moved : QByteArray());
    files->wasRefused = files->wasRefused || run.result.hasWantedFiles;
    trial->log += run.log;
    trial->isScriptError = run.result.end == JobEnd::ScriptError;
    if (trial->isScriptError)
        trial->log << reasonOf(run.result);
    trial->movedBytes = run.result.movedBytes;
    trial->expectedBytes = run.result.wantedBytes;
    measure(bench, operate, kind, trial);
    const char bits = movesSave(operate) ? kind.saveBits : '\xFF';
    if (run.result.end != JobEnd::Done)
        trial->outcome =
            nothingWasSent(operate, trial->used) ? TrialOutcome::Refused : TrialOutcome::Failed;
    else if (isSame(arrivedBytes(bench, operate, run), moved, bits))
        trial->outcome = TrialOutcome::Right;
    else
        trial->outcome = TrialOutcome::Wrong;
}

TrialOutcome outcomeOf(ScriptLook look)
{
    switch (look) {
    case ScriptLook::NotCompiled:
    case ScriptLook::Threw:
        return TrialOutcome::Refused;
    case ScriptLook::NotDefined:
        return TrialOutcome::NotDefined;
    case ScriptLook::Defined:
        return TrialOutcome::Right;
    }
    return TrialOutcome::Refused;
}

QString verdict(const ScriptTrial &trial)
{
    switch (trial.outcome) {
    case TrialOutcome::NotDefined:
        return QStringLiteral("not defined");
    case TrialOutcome::Refused:
        return QStringLiteral("refused, nothing was sent:");
    case TrialOutcome::Failed:
        return QStringLiteral("FAILED on the way:");
    case TrialOutcome::Wrong:
        return QStringLiteral("WRONG: the bytes are not where they belong");
    case TrialOutcome::Right:
        return QStringLiteral("right");
    }
    return QString();
}

QString movedText(const ScriptTrial &trial)
{
    const int difference = trial.movedBytes - trial.expectedBytes;
    QString text =
        QStringLiteral("  %1 of %2 bytes moved").arg(trial.movedBytes).arg(trial.expectedBytes);
    if (difference != 0)
        text += QStringLiteral(", %1 bytes too %2")
                    .arg(qAbs(difference))
                    .arg(difference < 0 ? QLatin1String("few") : QLatin1String("many"));
    return text;
}

QString operationsText(const ScriptTrial &trial)
{
    QString text = QStringLiteral("  %1 command files, %2 reads")
                       .arg(trial.used.commandFiles)
                       .arg(trial.used.reads);
    if (trial.hasLeast)
        text += QStringLiteral("; the least are %1 and %2")
                    .arg(trial.least.commandFiles)
                    .arg(trial.least.reads);
    return text;
}

} // namespace

QList<ScriptTrial> tryScript(const QString &scriptPath, const ScriptKind &kind, FileUse *files)
{
    QList<ScriptTrial> trials;
    for (const ScriptOperation &operation : scriptOperations(kind.isGba)) {
        ScriptTrial trial;
        trial.operation = entryNames(operation);
        const ScriptLook look = lookAtScript(scriptPath, operation, files, &trial.log);
        trial.outcome = outcomeOf(look);
        trial.isScriptError = look == ScriptLook::NotCompiled;
        if (trial.outcome == TrialOutcome::Right)
            runTrial(operation, scriptPath, kind, files, &trial);
        trials << trial;
    }
    return trials;
}

QStringList trialLines(const ScriptTrial &trial)
{
    QStringList lines{trial.operation + QStringLiteral(": ") + verdict(trial)};
    if (trial.outcome == TrialOutcome::NotDefined)
        return lines;
    if (trial.expectedBytes != 0)
        lines << movedText(trial) << operationsText(trial);
    if (trial.outcome == TrialOutcome::Right)
        return lines;
    for (const QString &line : trial.log) {
        if (!line.trimmed().isEmpty())
            lines << QStringLiteral("  | ") + line.trimmed();
    }
    return lines;
}
