#include "cli/check_script.h"

#include "cli/script_trial.h"

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

// The same for a program.
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
    reporter.answer(trial.operation + QStringLiteral(": ") + verdict(trial));
    if (trial.outcome == TrialOutcome::NotDefined)
        return;
    if (trial.expectedBytes != 0) {
        reporter.answer(movedText(trial));
        reporter.answer(operationsText(trial));
    }
    if (trial.outcome == TrialOutcome::Right)
        return;
    for (const QString &line : trial.log) {
        if (!line.trimmed().isEmpty())
            reporter.answer(QStringLiteral("  | ") + line.trimmed());
    }
}

} // namespace

ExitCode runCheckScript(const QString &path, const QString &kindName, Reporter &reporter)
{
    const ScriptKind *kind =
        findScriptKind(kindName.isEmpty() ? QFileInfo(path).fileName() : kindName);
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
    for (const ScriptTrial &trial : tryScript(path, *kind)) {
        tellTrial(trial, reporter);
        hasRight = hasRight || trial.outcome == TrialOutcome::Right;
        if (trial.outcome == TrialOutcome::Wrong)
            code = ExitCode::DataMismatch;
        else if (trial.outcome == TrialOutcome::Failed && code == ExitCode::Done)
            code = ExitCode::TransferFailed;
    }
    return code == ExitCode::Done && !hasRight ? ExitCode::TransferFailed : code;
}
