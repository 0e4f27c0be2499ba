#include "cli/script_list.h"

#include "cli/cli_command.h"
#include "cli/script_finding.h"

#include <QDir>
#include <QJsonArray>

namespace
{

QLatin1String roleWord(ScriptRole role)
{
    switch (role) {
    case ScriptRole::Mapper:
        return QLatin1String("mapper");
    case ScriptRole::Helper:
        return QLatin1String("helper");
    case ScriptRole::Other:
        return QLatin1String("other");
    }
    return QLatin1String();
}

QLatin1String stateWord(ScriptState state)
{
    switch (state) {
    case ScriptState::Sound:
        return QLatin1String("sound");
    case ScriptState::Missing:
        return QLatin1String("missing");
    case ScriptState::NotCompiled:
        return QLatin1String("not-compiled");
    case ScriptState::Threw:
        return QLatin1String("error");
    }
    return QLatin1String();
}

QJsonObject scriptObject(const ScriptFinding &finding)
{
    QJsonObject object{
        {QStringLiteral("what"), QStringLiteral("script")},
        {QStringLiteral("file"), finding.file},
        {QStringLiteral("role"), roleWord(finding.role)},
        {QStringLiteral("state"), stateWord(finding.state)},
        {QStringLiteral("operations"), QJsonArray::fromStringList(finding.operations)}};
    const struct {
        QString key;
        QString value;
    } texts[] = {{QStringLiteral("usedBy"), finding.usedBy},
                 {QStringLiteral("sha1"), finding.sha1},
                 {QStringLiteral("problem"), finding.problem}};
    for (const auto &text : texts) {
        if (!text.value.isEmpty())
            object.insert(text.key, text.value);
    }
    return object;
}

QString purpose(const ScriptFinding &finding)
{
    switch (finding.role) {
    case ScriptRole::Mapper:
        return finding.file == kGbaScript ? finding.usedBy
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

void printFinding(Reporter &reporter, const ScriptFinding &finding)
{
    reporter.event("detected", scriptObject(finding));
    reporter.answer(finding.file + QStringLiteral(": ") + purpose(finding));
    const QStringList lines = {stateText(finding), finding.sha1.isEmpty()
                                                       ? QString()
                                                       : QStringLiteral("SHA-1 ") + finding.sha1};
    for (const QString &line : lines) {
        if (!line.isEmpty())
            reporter.answer(QStringLiteral("   ") + line);
    }
}

} // namespace

ExitCode runScripts(Reporter &reporter, const QString &folder)
{
    QStringList faults;
    for (const ScriptFinding &finding : examineScripts(folder)) {
        printFinding(reporter, finding);
        if (finding.isFault())
            faults << finding.file;
    }
    if (faults.isEmpty())
        return ExitCode::Done;
    reporter.problem(QStringLiteral("Cartridges that need %1 cannot be used.\nThe scripts belong "
                                    "into \"%2\"; install the program anew, or mend them.")
                         .arg(faults.join(QStringLiteral(", ")), QDir::toNativeSeparators(folder)));
    return ExitCode::FileError;
}
