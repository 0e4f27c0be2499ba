#include "cli/check_script.h"

#include "cli/script_trial.h"

#include <QFileInfo>

#include <cstdio>

namespace
{

void printLine(const QString &line)
{
    std::printf("%s\n", line.toLocal8Bit().constData());
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

void printTrial(const ScriptTrial &trial)
{
    printLine(trial.operation + QStringLiteral(": ") + verdict(trial));
    if (trial.outcome == TrialOutcome::NotDefined)
        return;
    if (trial.expectedBytes != 0) {
        printLine(movedText(trial));
        printLine(operationsText(trial));
    }
    if (trial.outcome == TrialOutcome::Right)
        return;
    for (const QString &line : trial.log) {
        if (!line.trimmed().isEmpty())
            printLine(QStringLiteral("  | ") + line.trimmed());
    }
}

} // namespace

bool runCheckScript(const QString &path, const QString &kindName)
{
    const ScriptKind *kind =
        findScriptKind(kindName.isEmpty() ? QFileInfo(path).fileName() : kindName);
    if (kind == nullptr || !QFileInfo(path).isFile()) {
        std::fprintf(stderr, "%s\n",
                     kind == nullptr
                         ? "The file's name does not tell the kind of cartridge: give --mapper, or "
                           "--system gba."
                         : "There is no such script file.");
        return false;
    }
    bool hasRight = false;
    bool hasFault = false;
    for (const ScriptTrial &trial : tryScript(path, *kind)) {
        printTrial(trial);
        hasRight = hasRight || trial.outcome == TrialOutcome::Right;
        hasFault = hasFault || trial.outcome == TrialOutcome::Wrong ||
                   trial.outcome == TrialOutcome::Failed;
    }
    return hasRight && !hasFault;
}
