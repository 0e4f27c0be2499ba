// The command check-script: what a mapper script defines and how it does on virtual cartridges.
#include "cli/commands.h"

#include "trial/script_trial.h"

#include <QFileInfo>

namespace
{

const char *outcomeWord(TrialOutcome outcome)
{
    switch (outcome) {
    case TrialOutcome::NotDefined:
        return "not-defined";
    case TrialOutcome::Refused:
        return "refused";
    case TrialOutcome::Failed:
        return "failed";
    case TrialOutcome::Wrong:
        return "wrong";
    case TrialOutcome::Right:
        return "right";
    }
    return "";
}

QJsonObject objectOf(const ScriptTrial &trial)
{
    QJsonObject object{{"what", "script-trial"},
                       {"operation", trial.operation},
                       {"outcome", QLatin1String(outcomeWord(trial.outcome))},
                       {"movedBytes", trial.movedBytes},
                       {"expectedBytes", trial.expectedBytes},
                       {"commandFiles", trial.used.commandFiles},
                       {"reads", trial.used.reads}};
    if (trial.hasLeast) {
        object.insert("leastCommandFiles", trial.least.commandFiles);
        object.insert("leastReads", trial.least.reads);
    }
    return object;
}

void tellTrial(const ScriptTrial &trial, Reporter &reporter)
{
    reporter.event("detected", objectOf(trial));
    for (const QString &line : trialLines(trial))
        reporter.answer(line);
}

} // namespace

ExitCode runCheckScript(const CliOptions &options, Reporter &reporter)
{
    const QString &path = options.path;
    const ScriptKind *kind = findScriptKind(
        options.scriptKind.isEmpty() ? QFileInfo(path).fileName() : options.scriptKind);
    if (!QFileInfo(path).isFile()) {
        reporter.problem(path + QStringLiteral(": There is no such script file."));
        return ExitCode::FileError;
    }
    if (kind == nullptr) {
        reporter.problem(QStringLiteral("The file's name does not tell the kind of cartridge: give "
                                        "--mapper, or --system gba."));
        return ExitCode::Usage;
    }
    bool hasRight = false;
    ExitCode code = ExitCode::Done;
    FileUse files;
    files.isAllowed = options.allowsFiles;
    for (const ScriptTrial &trial : tryScript(path, *kind, &files)) {
        tellTrial(trial, reporter);
        hasRight = hasRight || trial.outcome == TrialOutcome::Right;
        if (trial.isScriptError)
            code = ExitCode::ScriptError;
        else if (trial.outcome == TrialOutcome::Wrong && code != ExitCode::ScriptError)
            code = ExitCode::DataMismatch;
        else if (trial.outcome == TrialOutcome::Failed && code == ExitCode::Done)
            code = ExitCode::TransferFailed;
    }
    if (files.wasRefused)
        reporter.problem(
            QStringLiteral("The script wants to use files, and was not let. Read it; if "
                           "it does no harm, try it with --allow-files."));
    return code == ExitCode::Done && !hasRight ? ExitCode::TransferFailed : code;
}
