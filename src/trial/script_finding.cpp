#include "trial/script_finding.h"

#include "cart/setting_tables.h"
#include "trial/script_look.h"

#include <QDir>
#include <QFileInfo>

namespace
{

// What the compiler says, or the first line of the report of an error.
QString firstLine(const QStringList &log)
{
    for (const QString &line : log) {
        if (!line.trimmed().isEmpty())
            return line.trimmed();
    }
    return QStringLiteral("The file cannot be read.");
}

// A script may refuse one operation from its top level, but one that refuses all is broken.
void lookAtOperations(const QString &path, bool isGba, ScriptFinding *finding)
{
    bool hasRun = false;
    FileUse noFiles;
    for (const ScriptOperation &operation : scriptOperations(isGba)) {
        QStringList log;
        const ScriptLook look = lookAtScript(path, operation, &noFiles, &log);
        if (look == ScriptLook::Defined)
            finding->operations << QLatin1String(operation.name);
        hasRun = hasRun || look == ScriptLook::Defined || look == ScriptLook::NotDefined;
        if (hasRun || finding->state != ScriptState::Sound)
            continue;
        finding->state =
            look == ScriptLook::NotCompiled ? ScriptState::NotCompiled : ScriptState::Threw;
        finding->problem = firstLine(log);
    }
    if (!hasRun)
        return;
    finding->state = ScriptState::Sound;
    finding->problem.clear();
}

ScriptFinding examineNamed(const QDir &folder, const QString &file, const QString &usedBy)
{
    const QString path = folder.filePath(file);
    ScriptFinding finding;
    finding.file = file;
    finding.usedBy = usedBy;
    if (QFileInfo(path).isFile())
        lookAtOperations(path, file == QLatin1String(kGbaScript), &finding);
    else
        finding.state = ScriptState::Missing;
    return finding;
}

// Nothing says which system it is for; the GB has all operations. A helper may need another one
// before itself, so only that it compiles is asked of it.
ScriptFinding examineOther(const QDir &folder, const QString &file)
{
    ScriptFinding finding = examineNamed(folder, file, QString());
    finding.role = finding.operations.isEmpty() ? ScriptRole::Helper : ScriptRole::Other;
    if (finding.state != ScriptState::Threw)
        return finding;
    finding.state = ScriptState::Sound;
    finding.problem.clear();
    return finding;
}

} // namespace

QVector<ScriptFinding> examineScripts(const QString &folder)
{
    const QDir scripts(folder);
    QStringList others = scriptFiles(folder);
    QVector<ScriptFinding> findings;
    for (const MapperRow &row : kMappers)
        findings << examineNamed(scripts, QLatin1String(row.script), QLatin1String(row.label));
    findings << examineNamed(scripts, QLatin1String(kGbaScript),
                             QLatin1String(kSystems[kSystemGba].label));
    for (const ScriptFinding &named : findings)
        others.removeAll(named.file);
    for (const QString &file : others)
        findings << examineOther(scripts, file);
    return findings;
}

QStringList scriptFiles(const QString &folder)
{
    return QDir(folder).entryList({QStringLiteral("*.nut")}, QDir::Files, QDir::Name);
}

QString purposeText(const ScriptFinding &finding)
{
    switch (finding.role) {
    case ScriptRole::Mapper:
        return finding.file == QLatin1String(kGbaScript)
                   ? finding.usedBy
                   : QStringLiteral("mapper ") + finding.usedBy;
    case ScriptRole::Helper:
        return QStringLiteral("helper, with no operation of its own");
    case ScriptRole::Other:
        return QStringLiteral("not used: no mapper names it");
    }
    return QString();
}

QString stateText(const ScriptFinding &finding)
{
    switch (finding.state) {
    case ScriptState::Sound:
        return finding.operations.join(QStringLiteral(", "));
    case ScriptState::Missing:
        return QStringLiteral("MISSING");
    case ScriptState::NotCompiled:
        return QStringLiteral("DOES NOT COMPILE: ") + finding.problem;
    case ScriptState::Threw:
        return QStringLiteral("DOES NOT LOAD: ") + finding.problem;
    }
    return QString();
}
